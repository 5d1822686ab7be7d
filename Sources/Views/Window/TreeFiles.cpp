#include "Views/Window/TreeFiles.h"

#include "Base/Background.h"
#include "Base/FileURL.h"
#include "Core/Export/SavedScan.h"
#include "Core/Model/ScanSession.h"
#include "Platform/AtomicFile.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Browse/Treemap/TreemapView.h"
#include "Views/Components/FileChooser.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Popup.h"
#include "Views/Components/Text.h"
#include "Views/Components/WindowServices.h"
#include "Views/Removing/ConfirmationSheet.h"
#include "Views/Window/TreeText.h"

#include <QAction>
#include <QBuffer>
#include <QMainWindow>
#include <QMenu>
#include <QPixmap>
#include <QPointer>
#include <cerrno>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

/// Twice as many dots as on the screen, for printing.
std::string pngOf(QWidget &map) {
    constexpr int scale = 2;
    QPixmap picture(map.size() * scale);
    picture.setDevicePixelRatio(scale);
    map.render(&picture);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return bytes.toStdString();
}

std::vector<OfferedFiles> kindsOfFiles() {
    return {{u"Lists and saved scans"_s, {u"*.json"_s, u"*.ncdu"_s, u"*.scan"_s}},
            {u"All files"_s, {u"*"_s}}};
}

} // namespace

TreeFiles::TreeFiles(ScanSession &scan, QMainWindow &window)
    : QObject(&window), scan_(scan), window_(window) {
    connect(&scan, &ScanSession::nodeAboutToBeDetached, this, &TreeFiles::finishTexts);
    connect(&scan, &ScanSession::contentsAboutToBeReplaced, this, &TreeFiles::finishTexts);
    connect(&scan, &ScanSession::treeChanged, this,
            [this] { texts_.clear(); }); // an earlier tree stays as it is
}

void TreeFiles::addActions(QMenu &file, std::function<BrowseView *()> browse) {
    browse_ = std::move(browse);
    QMenu *menu = file.addMenu(u"&Export"_s);
    menu->setObjectName(QStringLiteral("export"));
    usePaletteOfParent(*menu);
    const auto add = [&](const QString &title, const char *name, auto run) {
        menu->addAction(title, this, run)->setObjectName(QLatin1String(name));
    };
    add(u"&Picture of the Map (PNG)…"_s, "exportPng", [this] { exportPicture(Picture::png); });
    add(u"Picture of the Map (&SVG)…"_s, "exportSvg", [this] { exportPicture(Picture::svg); });
    menu->addSeparator();
    add(u"&Table (CSV)…"_s, "exportCsv", [this] { exportList(ListingFormat::csv); });
    add(u"&List (JSON)…"_s, "exportJson", [this] { exportList(ListingFormat::json); });
    add(u"List for &ncdu…"_s, "exportNcdu", [this] { exportList(ListingFormat::ncdu); });
    file.addAction(u"&Import…"_s, this, &TreeFiles::askForList)->setObjectName(QStringLiteral("import"));
    QAction *saving = file.addAction(u"Sa&ve Scan…"_s, this, &TreeFiles::saveScan);
    saving->setObjectName(QStringLiteral("saveScan"));
    comparing_ = file.addAction(u"Co&mpare With…"_s, this, &TreeFiles::askForEarlierScan);
    comparing_->setObjectName(QStringLiteral("compareWith"));
    stopping_ = file.addAction(u"S&top Comparing"_s, this, [this] {
        if (BrowseView *page = browse_())
            page->stopComparing();
    });
    stopping_->setObjectName(QStringLiteral("stopComparingInMenu"));
    stopping_->setEnabled(false);
    const auto enable = [this, menu, saving] {
        menu->setEnabled(scan_->tree != nullptr);
        saving->setEnabled(scan_->tree != nullptr);
        comparing_->setEnabled(scan_->tree != nullptr);
    };
    connect(&scan_, &ScanSession::changed, menu, enable);
    connect(&scan_, &ScanSession::treeChanged, menu, enable);
    enable();
}

void TreeFiles::showComparing() {
    const BrowseView *page = browse_();
    stopping_->setEnabled(page != nullptr && page->isComparing());
}

void TreeFiles::exportPicture(Picture picture) {
    BrowseView *page = browse_();
    if (page == nullptr || page->mapFolder() == nullptr)
        return;
    if (picture == Picture::png)
        savePicture(u"png"_s,
                    [page = QPointer(page)] { return page != nullptr ? pngOf(page->map()) : std::string(); });
    else
        savePicture(u"svg"_s,
                    [page = QPointer(page)] { return page != nullptr ? page->map().svg() : std::string(); });
}

void TreeFiles::exportList(ListingFormat format) {
    const QString suffix = format == ListingFormat::csv ? u"csv"_s : u"json"_s;
    const QString remark =
        u"Files under 1 MiB are grouped into one row per folder. “brimvalectl scan --export” "
        "lists every file."_s;
    saveTree(u"Export the Scan"_s, suffix, remark,
             [format](TextSink &sink, const FSNode &tree, const ScanOrigin &origin) {
                 writeListing(sink, tree, origin, format);
             });
}

/// For a comparison, or to look at it later.
void TreeFiles::saveScan() {
    saveTree(u"Save the Scan"_s, u"scan"_s,
             u"Import opens it again. Compare With shows what has changed since then."_s, writeSavedScan);
}

ScanOrigin TreeFiles::origin() const {
    return scan_->importedFrom ? scan_->importedFrom->origin : ScanOrigin::here(scan_->scanUnreadable);
}

void TreeFiles::chooseFile(const QString &title, const QString &suffix,
                           std::function<void(const std::string &)> use) {
    const std::string root = scan_->tree->path();
    const QString name = root == "/" ? u"scan"_s : displayedText(FileURL(root).fileName());
    chooseFileToSave(window_, title, name + u'.' + suffix, suffix, std::move(use));
}

/// The picture is drawn on this thread; only the disk is waited for elsewhere.
void TreeFiles::savePicture(const QString &suffix, std::function<std::string()> content) {
    chooseFile(u"Export a Picture of the Map"_s, suffix,
               [this, content = std::move(content)](const std::string &path) {
                   writeInBackground(path, [bytes = content()]() -> const std::string & { return bytes; },
                                     {});
               });
}

void TreeFiles::saveTree(const QString &title, const QString &suffix, const QString &remark,
                         std::function<void(TextSink &, const FSNode &, const ScanOrigin &)> write) {
    chooseFile(title, suffix, [this, remark, write = std::move(write)](const std::string &path) {
        auto text = std::make_shared<TreeText>([write, tree = scan_->tree, origin = origin()] {
            TextInMemory sink;
            if (tree != nullptr)
                write(sink, *tree, origin);
            return std::move(sink.text);
        });
        std::erase_if(texts_, [](const auto &one) { return one.expired(); });
        texts_.push_back(text);
        writeInBackground(
            path, [text]() -> const std::string & { return text->get(); }, remark);
    });
}

void TreeFiles::writeInBackground(const std::string &path, std::function<const std::string &()> content,
                                  const QString &remark) {
    inBackground(
        *QThreadPool::globalInstance(), this,
        [path, content = std::move(content)]() -> std::optional<FileError> {
            if (const std::string &bytes = content(); !bytes.empty())
                return replaceFileAtomically(path, bytes);
            return FileError::posix(ENOENT); // the tree has gone
        },
        [this, path, remark](const std::optional<FileError> &failure) {
            const QString file = displayedText(FileURL(path).fileName());
            if (failure)
                showNoticeSheet(window_, u"“%1” could not be written"_s.arg(file),
                                text(failure->localizedDescription));
            else
                WindowServices::notify(window_, u"“%1” was written. %2"_s.arg(file, remark).trimmed());
        });
}

/// The tree is about to change.
void TreeFiles::finishTexts() {
    for (const std::weak_ptr<TreeText> &one : std::exchange(texts_, {}))
        if (const std::shared_ptr<TreeText> text = one.lock())
            text->get();
}

void TreeFiles::askForList() {
    chooseFileToOpen(window_, u"Import a List"_s, kindsOfFiles(),
                     [this](const std::string &path) { import(path); });
}

void TreeFiles::import(const std::string &path) {
    read(path, u"“%1” could not be imported"_s, [this, path](ImportedTree found) {
        scan_.showImported(std::move(found.root), {path, std::move(found.origin)});
        emit imported();
    });
}

void TreeFiles::askForEarlierScan() {
    chooseFileToOpen(window_, u"Compare With an Earlier Scan"_s, kindsOfFiles(),
                     [this](const std::string &path) { compareWith(path); });
}

void TreeFiles::compareWith(const std::string &path) {
    read(path, u"“%1” could not be compared"_s, [this, path](ImportedTree found) {
        if (scan_->tree == nullptr)
            return; // another scan has begun
        emit imported();
        BrowseView *page = browse_();
        connect(page, &BrowseView::comparingChanged, this, &TreeFiles::showComparing, Qt::UniqueConnection);
        page->compareWith(
            {std::move(found.root), displayedText(FileURL(path).fileName()), std::move(found.origin)});
    });
}

/// Reads a tree in the background. What is wrong with the file is told under `failure`.
void TreeFiles::read(const std::string &path, const QString &failure, std::function<void(ImportedTree)> use) {
    using Read = std::shared_ptr<Result<ImportedTree, ImportFault>>;
    inBackground(
        *QThreadPool::globalInstance(), this,
        [path]() -> Read { return std::make_shared<Result<ImportedTree, ImportFault>>(readTreeAt(path)); },
        [this, path, failure, use = std::move(use)](const Read &read) {
            if (const auto *fault = std::get_if<ImportFault>(read.get()))
                return showNoticeSheet(window_, failure.arg(displayedText(FileURL(path).fileName())),
                                       displayedText(fault->sentence));
            use(std::move(std::get<ImportedTree>(*read)));
        });
}

} // namespace brimvale
