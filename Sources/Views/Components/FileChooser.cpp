#include "Views/Components/FileChooser.h"

#include "Views/Components/FolderChooser.h"
#include "Views/Components/Popup.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
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

} // namespace

void chooseFileToSave(QWidget &asking, const QString &title, const QString &name, const QString &suffix,
                      std::function<void(const std::string &path)> chosen) {
    QFileDialog *dialog = makeDialog(asking, title, std::move(chosen));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(suffix);
    dialog->selectFile(name);
    dialog->open();
}

void chooseFileToOpen(QWidget &asking, const QString &title, const QString &filter,
                      std::function<void(const std::string &path)> chosen) {
    QFileDialog *dialog = makeDialog(asking, title, std::move(chosen));
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilter(filter);
    dialog->open();
}

} // namespace brimvale
