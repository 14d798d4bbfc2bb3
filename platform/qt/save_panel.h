#pragma once

#include <QPointer>
#include <QWidget>

#include "platform/save_panel.h"

namespace platform::qt {

/// `path` with the extension of `kind`, unless it has it already in any case of letters.
std::filesystem::path withExtension(std::filesystem::path path, FileKind kind);

/// The desktop's own save dialog where there is one, else Qt's.
class SavePanel final : public platform::SavePanel {
 public:
  SavePanel();

  /// The window that the dialog belongs to.
  void setWindow(QWidget* window) { window_ = window; }

  std::optional<std::filesystem::path> choose(const SavePanelRequest& request) override;

 private:
  /// True when there is nothing at `path` or the person agrees to replace it.
  bool mayWrite(const std::filesystem::path& path) const;

  QPointer<QWidget> window_;
};

}  // namespace platform::qt
