#include "platform/qt/activation.h"

#include <QGuiApplication>
#include <utility>

namespace platform::qt {

Activation::Activation() {
  QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &context_,
                   [this](Qt::ApplicationState state) {
                     if (state == Qt::ApplicationActive && handler_) handler_();
                   });
}

void Activation::setOnBecameActive(std::function<void()> handler) {
  handler_ = std::move(handler);
}

}  // namespace platform::qt
