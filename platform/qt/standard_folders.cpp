#include "platform/qt/standard_folders.h"

#include <QFile>
#include <QStandardPaths>

namespace platform::qt {

std::optional<std::filesystem::path> StandardFolders::movies() const {
  const QStringList folders = QStandardPaths::standardLocations(QStandardPaths::MoviesLocation);
  if (folders.isEmpty()) return std::nullopt;
  return QFile::encodeName(folders.first()).toStdString();
}

}  // namespace platform::qt
