#pragma once

#include <QObject>
#include <functional>

#include "platform/activation.h"

namespace platform::qt {

/// The application becomes active when one of its windows gets the keyboard from another program.
class Activation final : public platform::Activation {
 public:
  /// Needs the QGuiApplication.
  Activation();
  void setOnBecameActive(std::function<void()> handler) override;

 private:
  std::function<void()> handler_;
  QObject context_;  // Ends the connection.
};

}  // namespace platform::qt
