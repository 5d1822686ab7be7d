#include "Views/Components/FolderChooser.h"

#include "Views/Components/DesktopDialog.h"
#include "Views/Components/Popup.h"

#include <QFile>
#include <QFileDialog>
#include <QSettings>
#include <utility>

namespace brimvale {

namespace {

void chooseFolderInQt(QWidget &asking, const QString &title, const std::string &start,
                      std::function<void(const std::string &path)> chosen) {
    keepNoDialogSettings();
    auto *dialog =
        new QFileDialog(asking.window(), title, QFile::decodeName(QByteArray::fromStdString(start)));
    dialog->setObjectName(QStringLiteral("folderChooser"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    usePaletteOfParent(*dialog);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    QObject::connect(dialog, &QFileDialog::fileSelected, &asking,
                     [chosen = std::move(chosen)](const QString &folder) {
                         chosen(QFile::encodeName(folder).toStdString());
                     });
    dialog->open();
}

} // namespace

void keepNoDialogSettings() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
}

void chooseFolder(QWidget &asking, const QString &title, const std::string &start,
                  std::function<void(const std::string &path)> chosen) {
    const auto otherwise = [&asking, title, start, chosen] {
        chooseFolderInQt(asking, title, start, chosen);
    };
    openInDesktop(asking, {.kind = DesktopDialog::Kind::chooseFolder,
                           .title = title,
                           .start = start,
                           .chosen = std::move(chosen),
                           .otherwise = otherwise});
}

} // namespace brimvale
