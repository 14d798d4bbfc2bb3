#include "platform/qt/save_panel.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <system_error>

namespace platform::qt {
namespace {

struct KindTexts {
  const char* title;
  const char* filter;
  const char* extension;
};

KindTexts textsOf(FileKind kind) {
  switch (kind) {
    case FileKind::png:
      return {"Save Image", "PNG image (*.png)", ".png"};
    case FileKind::mpeg4:
      return {"Record Video", "MPEG-4 video (*.mp4)", ".mp4"};
  }
  Q_UNREACHABLE();
}

QString toQt(const std::filesystem::path& path) {
  return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

std::filesystem::path fromQt(const QString& path) {
  return QFile::encodeName(path).toStdString();
}

/// A folder that is there: the proposed one, else the person's pictures, else their home.
QString firstFolder(const std::optional<std::filesystem::path>& proposed) {
  if (proposed && QFileInfo(toQt(*proposed)).isDir()) return toQt(*proposed);
  const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
  return QFileInfo(pictures).isDir() ? pictures : QDir::homePath();
}

}  // namespace

std::filesystem::path withExtension(std::filesystem::path path, FileKind kind) {
  const QString extension = QString::fromLatin1(textsOf(kind).extension);
  if (!toQt(path.filename()).endsWith(extension, Qt::CaseInsensitive) ||
      path.filename() == extension.toStdString()) {
    path += extension.toStdString();
  }
  return path;
}

SavePanel::SavePanel() {
  // Qt's own dialog would keep its look and its last folders in a file of the person's.
  QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
}

std::optional<std::filesystem::path> SavePanel::choose(const SavePanelRequest& request) {
  const KindTexts texts = textsOf(request.kind);
  QFileDialog dialog(window_, texts.title);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setFileMode(QFileDialog::AnyFile);
  dialog.setNameFilter(texts.filter);
  // We ask about replacing ourselves: dialogs ask about the name as typed, before the extension.
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  dialog.setDirectory(firstFolder(request.proposedFolder));
  dialog.selectFile(QString::fromStdString(request.proposedName));

  while (dialog.exec() == QDialog::Accepted) {
    const QStringList chosen = dialog.selectedFiles();
    if (chosen.isEmpty()) break;
    const std::filesystem::path path = withExtension(fromQt(chosen.first()), request.kind);
    if (mayWrite(path)) return path;
    dialog.selectFile(toQt(path));
  }
  return std::nullopt;
}

bool SavePanel::mayWrite(const std::filesystem::path& path) const {
  const QFileInfo file(toQt(path));
  if (!file.exists() && !file.isSymLink()) return true;
  QMessageBox question(QMessageBox::Warning, QStringLiteral("Replace File"),
                       QStringLiteral("“%1” already exists. Replace it?").arg(file.fileName()),
                       QMessageBox::Cancel, window_);
  QPushButton* replace = question.addButton(QStringLiteral("Replace"), QMessageBox::AcceptRole);
  question.setDefaultButton(QMessageBox::Cancel);
  question.exec();
  return question.clickedButton() == replace;
}

}  // namespace platform::qt
