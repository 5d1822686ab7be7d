#include "Catalogs/Catalog.h"
#include "Core/Model/Apps.h"
#include "Core/Model/Cleanup.h"
#include "Core/Model/CorvelModel.h"
#include "Core/Model/ModelSources.h"
#include "Core/Model/Removals.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Storage.h"
#include "Core/Model/Volumes.h"
#include "Support/RealRemovals.h"
#include "Support/SampleApps.h"
#include "Support/SampleHome.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>
#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

// Random sequences of what a user does. After every step, each figure that the model publishes is compared
// with what a plain count on the disk gives.

namespace brimvale {

namespace {

namespace fs = std::filesystem;
using Sizes = std::map<std::string, std::int64_t>;

struct Count {
    std::int64_t bytes = 0;  ///< allocated, once a name
    std::int64_t length = 0; ///< the same for the length
    std::int64_t files = 0;
    std::int64_t folders = 0; ///< without the item itself
};

/// What is on the disk at one moment; each folder is read once.
class Counts {
public:
    const Count &of(const std::string &path) {
        const auto [known, isNew] = counts_.try_emplace(path);
        Count &count = known->second;
        struct stat record {};
        if (!isNew || lstat(path.c_str(), &record) != 0)
            return count;
        if (!S_ISDIR(record.st_mode))
            return count = {.bytes = record.st_blocks * 512, .length = record.st_size, .files = 1};
        for (const fs::directory_entry &entry : fs::directory_iterator(path)) {
            const Count &inside = of(entry.path());
            count.bytes += inside.bytes;
            count.length += inside.length;
            count.files += inside.files;
            count.folders += inside.folders + (entry.is_directory() ? 1 : 0);
        }
        return count;
    }

private:
    std::map<std::string, Count> counts_;
};

/// The bytes of all files, those with several names once.
std::int64_t usedBy(const fs::path &path) {
    std::map<ino_t, std::int64_t> files;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(path)) {
        struct stat record {};
        if (lstat(entry.path().c_str(), &record) == 0 && !S_ISDIR(record.st_mode))
            files[record.st_ino] = record.st_blocks * 512;
    }
    std::int64_t bytes = 0;
    for (const auto &[inode, size] : files)
        bytes += size;
    return bytes;
}

std::vector<std::string> childrenOf(const std::string &folder) {
    std::vector<std::string> paths;
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder, error))
        if (entry.path().filename() != ".DS_Store")
            paths.push_back(entry.path());
    return paths;
}

class FiguresFollow : public ::testing::Test {
protected:
    static constexpr std::int64_t usedElsewhere = 40'000'000;
    static constexpr std::int64_t capacity = std::int64_t{1} << 40;

    [[nodiscard]] std::int64_t used() const { return usedElsewhere + usedBy(home.path()); }

    [[nodiscard]] ModelSources sources() const {
        ModelSources sources;
        sources.volumes = [this](std::chrono::milliseconds) {
            return std::vector{VolumeInfo{.url = FileURL(home.path()),
                                          .name = "Disk",
                                          .totalCapacity = capacity,
                                          .trueFree = capacity - reported,
                                          .isRootVolume = true}};
        };
        sources.categories = [this] { return definitions(); };
        return sources;
    }

    /// The categories of the catalog, as far as they lie in the home folder.
    [[nodiscard]] std::vector<StorageCategory> definitions() const {
        std::vector<StorageCategory> all = StorageCategories::all();
        for (StorageCategory &one : all)
            std::erase_if(one.roots,
                          [this](const std::string &root) { return !root.starts_with(home.path()); });
        return all;
    }

    std::size_t below(std::size_t count) { return random() % count; }
    bool oneIn(std::size_t count) { return below(count) == 0; }
    template<class T>
    const T &any(const std::vector<T> &all) {
        return all[below(all.size())];
    }

    // What happens:

    void makeSome();
    void makeFile(const std::string &place, std::int64_t bytes);
    void begin();
    void measureAll();
    void remove();
    [[nodiscard]] bool removeNodes();
    [[nodiscard]] std::vector<CleanupEntry> someRows();
    [[nodiscard]] std::vector<std::vector<CleanupEntry>> lists() const;

    // What is compared:

    [[nodiscard]] std::string differences();
    void compareRows(std::ostream &out, const std::string &name, const std::vector<CleanupEntry> &rows,
                     const Sizes &expected) const;
    void compareApps(std::ostream &out);
    void compareTree(std::ostream &out);
    void compareNode(std::ostream &out, const FSNode &node);
    [[nodiscard]] Sizes sizesIn(const std::vector<std::string> &paths);
    [[nodiscard]] Sizes systemDataRows();
    [[nodiscard]] bool isIdle() const;
    void settle(const std::string &step);

    testing::SampleHome home;
    testing::RealRemovals actions{home.path(".Trash")};
    std::atomic<std::int64_t> reported = usedElsewhere; ///< as the volume says
    std::mt19937 random{20'261'122};
    std::optional<CorvelModel> model;
    Sizes appsAtLoad;
    Counts counts; ///< of the present comparison
    std::int64_t usedAtBegin = 0;
    std::int64_t made = 0; ///< bytes made since
};

/// Space is reserved instead of written, which is fast.
void FiguresFollow::makeFile(const std::string &place, std::int64_t bytes) {
    const std::string path = home.path(place);
    if (fs::exists(path))
        return;
    fs::create_directories(fs::path(path).parent_path());
    const int file = open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
    ASSERT_EQ(posix_fallocate(file, 0, bytes), 0);
    close(file);
}

void FiguresFollow::makeSome() {
    static const std::vector<std::string> folders{
        "Documents",
        "Documents/Project/src",
        "Desktop",
        "Downloads/old",
        "Music/Album",
        "Pictures",
        "Library/Caches/com.example.Beta",
        "Library/Caches/Homebrew/downloads",
        "Library/Caches/pip/http",
        "Library/Logs/Beta",
        "Library/Application Support/Beta",
        "Library/Application Support/OneDrive",
        "Library/Preferences",
        "Library/Developer/Xcode/DerivedData/A",
        "Library/Developer/Xcode/Archives",
        "Library/Containers/com.apple.mail/Data/Library/Mail Downloads",
        ".cache/uv",
        ".npm/_cacache/x",
        ".tool/deep/er",
        ".Trash/thrown",
        "Applications/Gone.app/Contents/Resources",
    };
    static const std::vector<std::int64_t> sizes{1, 4'000, 9'000, 70'000, 1'100'000, 2'500'000, 11'000'000};
    const std::int64_t before = usedBy(home.path());
    for (std::size_t i = 0; i < 14; ++i)
        makeFile(any(folders) + "/" + std::to_string(below(6)), any(sizes));
    if (oneIn(2)) { // one file by two names
        const std::string file = "Movies/linked/" + std::to_string(below(3));
        makeFile(file, 200'000);
        std::error_code error;
        fs::create_hard_link(home.path(file), home.path(file + (oneIn(2) ? " too" : ".copy")), error);
    }
    testing::makeBundle(home, "Applications/Beta.app", {"com.example.Beta", "Beta", {}, {}, {}});
    testing::makeBundle(home, "Applications/Gone.app", {"com.example.Gone", "Gone", {}, {}, {}});
    made += usedBy(home.path()) - before;
}

void FiguresFollow::begin() {
    makeSome();
    made = 0;
    usedAtBegin = usedBy(home.path());
    reported = used();
    model.emplace(actions, sources());
    measureAll();
}

void FiguresFollow::measureAll() {
    model->scan.startScan(home.path());
    model->cleanup.measureCleanup();
    model->storage.measureCategories();
    model->apps.loadApps();
}

std::vector<std::vector<CleanupEntry>> FiguresFollow::lists() const {
    std::vector<std::vector<CleanupEntry>> lists;
    for (const CleanupTarget &target : model->cleanup->cleanupTargets)
        lists.push_back(target.entries);
    for (const MeasuredCategory &one : model->storage->categories)
        lists.push_back(one.entries);
    std::erase_if(lists, [](const auto &list) { return list.empty(); });
    return lists;
}

/// Rows of several lists: some lie in others.
std::vector<CleanupEntry> FiguresFollow::someRows() {
    const std::vector<std::vector<CleanupEntry>> all = lists();
    std::vector<CleanupEntry> rows;
    if (!all.empty())
        for (std::size_t i = 0; i <= below(3); ++i)
            rows.push_back(any(any(all)));
    return rows;
}

bool FiguresFollow::removeNodes() {
    if (model->scan->tree == nullptr)
        return false;
    std::vector<FSNode *> all, chosen;
    std::vector<FSNode *> waiting{model->scan->tree.get()};
    while (!waiting.empty()) {
        FSNode *node = waiting.back();
        waiting.pop_back();
        for (const auto &child : node->children()) {
            if (child->name == ".Trash") // may have been filled since it was scanned
                continue;
            all.push_back(child.get());
            waiting.push_back(child.get());
        }
    }
    for (std::size_t i = 0; i <= below(3) && !all.empty(); ++i)
        chosen.push_back(any(all));
    model->removals.removeNodes(chosen, oneIn(2) ? RemovalMode::trash : RemovalMode::deleteNow);
    return true;
}

void FiguresFollow::remove() {
    actions.plan(oneIn(4) ? testing::RealRemovals::Plan::failHalfWay : testing::RealRemovals::Plan::succeed);
    const RemovalMode mode = oneIn(2) ? RemovalMode::trash : RemovalMode::deleteNow;
    const std::vector<CleanupEntry> rows = someRows();
    switch (below(5)) {
    case 0:
        if (removeNodes())
            break;
        [[fallthrough]];
    case 1:
        model->removals.removeCleanupEntries(rows, mode);
        break;
    case 2:
        model->removals.removeCategoryEntries(rows, mode);
        break;
    case 3: {
        const std::vector<AppRow> &apps = model->apps->apps;
        if (apps.empty())
            break;
        const AppRow app = any(apps);
        std::vector<LeftoverItem> leftovers = app.leftovers;
        std::erase_if(leftovers, [this](const LeftoverItem &) { return oneIn(2); });
        model->apps.uninstall(app.app, leftovers, oneIn(2), mode);
        break;
    }
    default:
        if (model->removals->lastResult && !model->removals->lastResult->needsAdmin.empty()) {
            model->removals.escalate(model->removals->lastResult->needsAdmin, *model->removals->lastResult);
        } else {
            std::vector<FileURL> urls;
            for (const CleanupEntry &row : rows)
                urls.push_back(row.url);
            model->removals.escalate(urls);
        }
    }
}

bool FiguresFollow::isIdle() const {
    return !model->removals.isRemoving() && !model->scan->isScanning && !model->cleanup->isMeasuringCleanup &&
           !model->storage->isMeasuringCategories && !model->apps->isLoadingApps;
}

Sizes FiguresFollow::sizesIn(const std::vector<std::string> &paths) {
    Sizes sizes;
    for (const std::string &path : paths)
        if (const std::int64_t bytes = counts.of(path).bytes; bytes > 0)
            sizes[path] = bytes;
    return sizes;
}

Sizes FiguresFollow::systemDataRows() {
    std::vector<std::string> paths = childrenOf(home.path("Library"));
    for (const std::string &path : childrenOf(home.path()))
        if (path.starts_with(home.path(".")) && path != home.path(".Trash"))
            paths.push_back(path);
    for (const StorageCategory &category : definitions())
        for (const std::string &root : category.roots)
            std::erase(paths, root);
    Sizes sizes = sizesIn(paths);
    std::erase_if(sizes, [](const auto &row) { return row.second < 10'000'000; });
    return sizes;
}

void FiguresFollow::compareRows(std::ostream &out, const std::string &name,
                                const std::vector<CleanupEntry> &rows, const Sizes &expected) const {
    Sizes shown;
    for (const CleanupEntry &row : rows)
        if (!shown.emplace(row.url.path(), row.size).second)
            out << name << " shows twice " << row.url.path() << "\n";
    for (const auto &[path, size] : shown)
        if (!expected.contains(path))
            out << name << " still shows " << path << "\n";
        else if (expected.at(path) != size)
            out << name << " shows " << size << " not " << expected.at(path) << " for " << path << "\n";
    for (const auto &[path, size] : expected)
        if (!shown.contains(path))
            out << name << " lacks " << path << "\n";
    if (!std::is_sorted(rows.begin(), rows.end(),
                        [](const auto &a, const auto &b) { return a.size > b.size; }))
        out << name << " is not sorted\n";
}

void FiguresFollow::compareApps(std::ostream &out) {
    Sizes shown, expected;
    for (const AppRow &row : model->apps->apps) {
        shown[row.app.url.path()] = row.bundleSize;
        for (const LeftoverItem &item : row.leftovers)
            shown[row.app.url.path() + " > " + item.url.path()] = item.size;
    }
    for (const auto &[row, size] : appsAtLoad) {
        const std::size_t arrow = row.find(" > ");
        const std::string app = row.substr(0, arrow);
        const std::string item = arrow == std::string::npos ? app : row.substr(arrow + 3);
        if (fs::exists(app) && fs::exists(item))
            expected[row] = counts.of(item).bytes;
    }
    for (const auto &[row, size] : shown)
        if (!expected.contains(row) || expected.at(row) != size)
            out << "apps show " << size << " for " << row << " not "
                << (expected.contains(row) ? expected.at(row) : -1) << "\n";
    if (shown.size() < expected.size())
        out << "apps lack rows\n";
}

void FiguresFollow::compareNode(std::ostream &out, const FSNode &node) {
    std::int64_t files = 0;
    for (const auto &child : node.children()) {
        if (child->isAggregate) {
            files += child->fileCount;
            continue;
        }
        if (!fs::exists(child->path()))
            out << "the tree still has " << child->path() << "\n";
        else
            compareNode(out, *child);
        files += child->fileCount;
    }
    const Count &count = counts.of(node.path());
    const auto compare = [&](const char *what, std::int64_t shown, std::int64_t expected) {
        if (shown != expected)
            out << "the tree shows " << shown << " " << what << " not " << expected << " in " << node.path()
                << "\n";
    };
    compare("bytes", node.size, count.bytes);
    compare("files", node.fileCount, count.files);
    compare("of length", node.logicalSizeLeft(), count.length);
    compare("folders", node.dirCountLeft(), count.folders);
    if (node.isDirectory)
        compare("files below", files, count.files);
}

/// What the Trash and files of two names have in the tree depends on what was scanned when.
void FiguresFollow::compareTree(std::ostream &out) {
    if (model->scan->tree == nullptr)
        return;
    const FSNode &root = *model->scan->tree;
    std::int64_t size = 0, files = 0;
    for (const auto &child : root.children()) {
        size += child->size;
        files += child->fileCount;
        if (child->name != ".Trash" && child->name != "Movies")
            compareNode(out, *child);
    }
    if (root.size != size || model->scan->scanBytes != size)
        out << "the root shows " << root.size << ", the header " << model->scan->scanBytes << " not " << size
            << "\n";
    if (root.fileCount != files || model->scan->scanFiles != files)
        out << "the root shows " << root.fileCount << " files, the header " << model->scan->scanFiles
            << " not " << files << "\n";
}

std::string FiguresFollow::differences() {
    std::ostringstream out;
    counts = {};
    for (const CleanupTarget &target : model->cleanup->cleanupTargets) {
        std::vector<std::string> paths;
        for (const std::string &root : target.roots)
            for (std::string &path : childrenOf(root))
                paths.push_back(std::move(path));
        compareRows(out, "target " + target.id, target.entries, sizesIn(paths));
    }
    std::int64_t categorised = 0;
    for (const MeasuredCategory &one : model->storage->categories) {
        const bool isRemainder = one.category.measurement == CategoryMeasurement::remainder;
        std::vector<std::string> paths;
        for (const std::string &root : one.category.roots)
            if (one.category.listsContents)
                for (std::string &path : childrenOf(root))
                    paths.push_back(std::move(path));
            else
                paths.push_back(root);
        const Sizes expected = isRemainder ? systemDataRows() : sizesIn(paths);
        compareRows(out, "category " + one.category.id, one.entries, expected);
        std::int64_t sum = 0;
        for (const auto &[path, size] : expected)
            sum += size;
        categorised += isRemainder ? 0 : sum;
        const std::int64_t right = isRemainder ? std::max<std::int64_t>(used() - categorised, 0) : sum;
        if (one.size != right)
            out << one.category.id << " shows " << one.size << " not " << right << "\n";
    }
    compareApps(out);
    compareTree(out);
    const std::int64_t freed = usedAtBegin + made - usedBy(home.path());
    if (model->removals->deletedThisSession != freed)
        out << "deleted " << model->removals->deletedThisSession << " not " << freed << "\n";
    return out.str();
}

/// Lets everything end that is under way, until every figure is right.
void FiguresFollow::settle(const std::string &step) {
    QElapsedTimer timer;
    timer.start();
    std::string found = "still busy";
    while (timer.elapsed() < 10'000) {
        QCoreApplication::processEvents();
        if (isIdle() && (found = differences()).empty())
            return;
        QThread::usleep(300);
    }
    FAIL() << step << "\n" << found;
}

} // namespace

TEST_F(FiguresFollow, WhateverIsDone) {
    actions.onChange = [this] { reported = used(); };
    begin();
    const auto noteApps = [this] {
        appsAtLoad.clear();
        for (const AppRow &row : model->apps->apps) {
            appsAtLoad[row.app.url.path()] = row.bundleSize;
            for (const LeftoverItem &item : row.leftovers)
                appsAtLoad[row.app.url.path() + " > " + item.url.path()] = item.size;
        }
    };
    const auto waitUntilIdle = [this] {
        while (!isIdle())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::processEvents();
    };
    for (int step = 0; step < BRIMVALE_STEPS; ++step) {
        std::string name = "step " + std::to_string(step) + ": ";
        if (step % 8 == 0) {
            name += "made and measured";
            waitUntilIdle();
            makeSome();
            reported = used();
            measureAll();
            waitUntilIdle();
            noteApps();
        } else if (step % 8 == 4) {
            name += "removed while it was measured";
            measureAll();
            remove();
            waitUntilIdle();
            noteApps(); // a bundle without its dictionary has lost its name
        } else {
            remove();
            waitUntilIdle();
            name += "removed";
            for (const std::string &call : std::exchange(actions.calls, {}))
                name += "\n  " + call;
        }
        ASSERT_NO_FATAL_FAILURE(settle(name));
    }
}

} // namespace brimvale
