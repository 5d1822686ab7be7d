#include "Views/Components/FileChooser.h"

#include "Views/Components/FolderChooser.h"
#include "Views/Components/Popup.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QStringList>
#include <utility>

namespace brimvale {

namespace {

QFileDialog *makeDialog(QWidget &asking, const QString &title,
                        std::function<void(const std::string &path)> chosen) {
    keepNoDialogSettings();
    auto *dialog = new QFileDialog(asking.window(), title, QDir::homePath());
    dialog->setObjectName(QStringLiteral("fileChooser"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    usePaletteOfParent(*dialog);
    QObject::connect(
        dialog, &QFileDialog::fileSelected, &asking,
        [chosen = std::move(chosen)](const QString &file) { chosen(QFile::encodeName(file).toStdString()); });
    return dialog;
}

/// "Pictures (*.png *.svg)"
QStringList nameFilters(const std::vector<OfferedFiles> &files) {
    QStringList filters;
    for (const OfferedFiles &kind : files)
        filters.append(QStringLiteral("%1 (%2)").arg(kind.title, kind.patterns.join(u' ')));
    return filters;
}

std::string homePath() {
    return QFile::encodeName(QDir::homePath()).toStdString();
}

} // namespace

void chooseFileToSave(QWidget &asking, const QString &title, const QString &name, const QString &suffix,
                      std::function<void(const std::string &path)> chosen) {
    const auto inQt = [&asking, title, name, suffix, chosen] {
        QFileDialog *dialog = makeDialog(asking, title, chosen);
        dialog->setAcceptMode(QFileDialog::AcceptSave);
        dialog->setDefaultSuffix(suffix);
        dialog->selectFile(name);
        dialog->open();
    };
    openInDesktop(asking, {.kind = DesktopDialog::Kind::saveFile,
                           .title = title,
                           .start = homePath(),
                           .name = name,
                           .chosen = std::move(chosen),
                           .otherwise = inQt});
}

void chooseFileToOpen(QWidget &asking, const QString &title, const std::vector<OfferedFiles> &files,
                      std::function<void(const std::string &path)> chosen) {
    const auto inQt = [&asking, title, files, chosen] {
        QFileDialog *dialog = makeDialog(asking, title, chosen);
        dialog->setFileMode(QFileDialog::ExistingFile);
        dialog->setNameFilters(nameFilters(files));
        dialog->open();
    };
    openInDesktop(asking, {.kind = DesktopDialog::Kind::openFile,
                           .title = title,
                           .start = homePath(),
                           .files = files,
                           .chosen = std::move(chosen),
                           .otherwise = inQt});
}

} // namespace brimvale
