#include "Views/Window/TreeFiles.h"

#include "Base/Background.h"
#include "Base/FileURL.h"
#include "Core/Export/ListingReader.h"
#include "Core/Export/SavedScan.h"
#include "Core/Model/ScanSession.h"
#include "Core/Treemap/TreemapSvg.h"
#include "Platform/AtomicFile.h"
#include "Views/Browse/BrowseView.h"
#include "Views/Components/FileChooser.h"
#include "Views/Components/NodeName.h"
#include "Views/Components/Popup.h"
#include "Views/Components/Text.h"
#include "Views/Components/WindowServices.h"
#include "Views/Removing/ConfirmationSheet.h"

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

using namespace Qt::StringLiterals;

namespace brimvale {

namespace {

class InMemory final : public TextSink {
public:
    void write(std::string_view more) override { text += more; }
    std::string text;
};

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

std::string svgOf(FSNode &folder, QSize size) {
    const std::vector<TreemapTile> tiles =
        Treemap(folder, Treemap::usualMaxTiles)
            .layout({0, 0, static_cast<double>(size.width()), static_cast<double>(size.height())});
    const std::string path = folder.path();
    return treemapSvg({path, size.width(), size.height(), tiles});
}

} // namespace

TreeFiles::TreeFiles(ScanSession &scan, QMainWindow &window)
    : QObject(&window), scan_(scan), window_(window) {}

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
    const auto enable = [this, menu, saving] {
        menu->setEnabled(scan_->tree != nullptr);
        saving->setEnabled(scan_->tree != nullptr);
    };
    connect(&scan_, &ScanSession::changed, menu, enable);
    connect(&scan_, &ScanSession::treeChanged, menu, enable);
    enable();
}

void TreeFiles::exportPicture(Picture picture) {
    BrowseView *page = browse_();
    if (page == nullptr || page->mapFolder() == nullptr)
        return;
    if (picture == Picture::png)
        save(u"Export a Picture of the Map"_s, u"png"_s, {},
             [page = QPointer(page)] { return page != nullptr ? pngOf(page->map()) : std::string(); });
    else
        save(u"Export a Picture of the Map"_s, u"svg"_s, {}, [page = QPointer(page)] {
            const bool hasMap = page != nullptr && page->mapFolder() != nullptr;
            return hasMap ? svgOf(*page->mapFolder(), page->map().size()) : std::string();
        });
}

void TreeFiles::exportList(ListingFormat format) {
    const QString suffix = format == ListingFormat::csv ? u"csv"_s : u"json"_s;
    const QString remark =
        u"Files under 1 MiB are grouped into one row per folder. “brimvalectl scan --export” "
        "lists every file."_s;
    save(u"Export the Scan"_s, suffix, remark, [this, format] {
        InMemory sink;
        if (scan_->tree != nullptr)
            writeListing(sink, *scan_->tree, origin(), format);
        return std::move(sink.text);
    });
}

/// For a comparison, or to look at it later.
void TreeFiles::saveScan() {
    const QString remark =
        u"Import opens it again. “brimvalectl compare” shows what has changed between two such files."_s;
    save(u"Save the Scan"_s, u"scan"_s, remark, [this] {
        InMemory sink;
        if (scan_->tree != nullptr)
            writeSavedScan(sink, *scan_->tree, origin());
        return std::move(sink.text);
    });
}

ScanOrigin TreeFiles::origin() const {
    return scan_->importedFrom ? scan_->importedFrom->origin : ScanOrigin::here(scan_->scanUnreadable);
}

/// The tree belongs to this thread, so its text is made here; only the disk is waited for elsewhere.
void TreeFiles::save(const QString &title, const QString &suffix, const QString &remark,
                     std::function<std::string()> content) {
    const std::string root = scan_->tree->path();
    const QString name = root == "/" ? u"scan"_s : displayedText(FileURL(root).fileName());
    chooseFileToSave(window_, title, name + u'.' + suffix, suffix,
                     [this, remark, content = std::move(content)](const std::string &path) {
                         inBackground(
                             *QThreadPool::globalInstance(), this,
                             [path, bytes = content()]() -> std::optional<FileError> {
                                 if (!bytes.empty())
                                     return replaceFileAtomically(path, bytes);
                                 return FileError::posix(ENOENT); // the tree has gone
                             },
                             [this, path, remark](const std::optional<FileError> &failure) {
                                 const QString file = displayedText(FileURL(path).fileName());
                                 if (failure)
                                     showNoticeSheet(window_, u"“%1” could not be written"_s.arg(file),
                                                     text(failure->localizedDescription));
                                 else
                                     WindowServices::notify(
                                         window_, u"“%1” was written. %2"_s.arg(file, remark).trimmed());
                             });
                     });
}

void TreeFiles::askForList() {
    chooseFileToOpen(
        window_, u"Import a List"_s,
        {{u"Lists and saved scans"_s, {u"*.json"_s, u"*.ncdu"_s, u"*.scan"_s}}, {u"All files"_s, {u"*"_s}}},
        [this](const std::string &path) { import(path); });
}

void TreeFiles::import(const std::string &path) {
    struct Read {
        std::shared_ptr<FSNode> tree;
        ScanOrigin origin;
        std::string fault;
    };
    inBackground(
        *QThreadPool::globalInstance(), this,
        [path]() -> Read {
            Result<ImportedTree, ImportFault> read = readTreeAt(path);
            if (const auto *fault = std::get_if<ImportFault>(&read))
                return {.tree = nullptr, .origin = {}, .fault = fault->sentence};
            auto &tree = std::get<ImportedTree>(read);
            return {.tree = std::move(tree.root), .origin = std::move(tree.origin), .fault = {}};
        },
        [this, path](Read read) {
            if (read.tree == nullptr)
                return showNoticeSheet(
                    window_, u"“%1” could not be imported"_s.arg(displayedText(FileURL(path).fileName())),
                    displayedText(read.fault));
            scan_.showImported(std::move(read.tree), {path, std::move(read.origin)});
            emit imported();
        });
}

} // namespace brimvale
