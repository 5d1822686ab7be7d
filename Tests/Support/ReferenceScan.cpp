#include "Support/ReferenceScan.h"

#include <algorithm>
#include <array>
#include <dirent.h>
#include <fts.h>
#include <set>
#include <sstream>
#include <sys/stat.h>
#include <utility>
#include <vector>

namespace brimvale::testing {

namespace {

struct Frame {
    FSNode *node;
    std::int64_t smallBytes = 0, smallLogical = 0, smallCount = 0;
    std::uint32_t smallModified = 0;
};

class Reference {
public:
    Reference(const ScanOptions &options, ReferenceScan &result) : options_(options), result_(result) {}

    std::unique_ptr<FSNode> walk(const std::string &path, const std::string &name, FSNode &root) {
        struct stat record {};
        if (lstat(path.c_str(), &record) != 0)
            return nullptr;
        auto top = std::make_unique<FSNode>(name, root, S_ISDIR(record.st_mode));
        if (!top->isDirectory) {
            setFigures(*top, record);
            count(record);
            return top;
        }
        std::string start = path;
        std::array<char *, 2> starts{start.data(), nullptr};
        const int crossing = options_.crossesMountPoints ? 0 : FTS_XDEV;
        FTS *traversal = fts_open(starts.data(), FTS_PHYSICAL | FTS_NOCHDIR | crossing, nullptr);
        while (FTSENT *entry = fts_read(traversal))
            handle(*traversal, *entry, *top);
        fts_close(traversal);
        return top;
    }

private:
    static void setFigures(FSNode &node, const struct stat &record) {
        node.size = record.st_blocks * 512;
        node.logicalSize = record.st_size;
        node.fileCount = 1;
        node.modified = static_cast<std::uint32_t>(record.st_mtime);
    }

    void count(const struct stat &record) {
        ++result_.files;
        result_.bytes += record.st_blocks * 512;
    }

    void handle(FTS &traversal, FTSENT &entry, FSNode &top) {
        switch (entry.fts_info) {
        case FTS_D:
            if (enterFolder(entry, top))
                fts_set(&traversal, &entry, FTS_SKIP);
            break;
        case FTS_F:
        case FTS_SL:
        case FTS_SLNONE:
        case FTS_DEFAULT:
            addFile(entry);
            break;
        case FTS_DNR:
            ++result_.unreadable;
            frames_.back().node->unreadable = true;
            leaveFolder(); // no closing event follows
            break;
        case FTS_DP:
            leaveFolder();
            break;
        case FTS_NS:
            ++result_.unreadable;
            top.unreadable = true;
            break;
        default:
            break;
        }
    }

    bool enterFolder(const FTSENT &entry, FSNode &top) {
        if (frames_.empty()) {
            frames_.push_back({&top});
            return false;
        }
        FSNode &parent = *frames_.back().node;
        parent.adopt(std::make_unique<FSNode>(entry.fts_name, parent, true));
        FSNode &node = *parent.children().back();
        frames_.push_back({&node});
        node.isNotDescended = options_.skippedPaths.contains(entry.fts_path);
        node.isCloudProvider = node.isNotDescended && options_.cloudProviderPaths.contains(entry.fts_path);
        return node.isNotDescended;
    }

    void addFile(const FTSENT &entry) {
        const struct stat &record = *entry.fts_statp;
        if (S_ISREG(record.st_mode) && record.st_nlink > 1 &&
            !seen_.insert({record.st_dev, record.st_ino}).second)
            return;
        count(record);
        Frame &frame = frames_.back();
        FSNode &folder = *frame.node;
        const std::int64_t size = record.st_blocks * 512;
        folder.size += size;
        folder.logicalSize += record.st_size;
        ++folder.fileCount;
        const auto modified = static_cast<std::uint32_t>(record.st_mtime);
        folder.modified = std::max(folder.modified, modified);
        if (size >= options_.minimumNodeSize) {
            folder.adopt(std::make_unique<FSNode>(entry.fts_name, folder, false));
            setFigures(*folder.children().back(), record);
        } else {
            frame.smallBytes += size;
            frame.smallLogical += record.st_size;
            ++frame.smallCount;
            frame.smallModified = std::max(frame.smallModified, modified);
        }
    }

    void leaveFolder() {
        const Frame frame = frames_.back();
        frames_.pop_back();
        if (frame.smallCount > 0) {
            frame.node->adopt(FSNode::aggregate(*frame.node, frame.smallCount));
            frame.node->children().back()->size = frame.smallBytes;
            frame.node->children().back()->logicalSize = frame.smallLogical;
            frame.node->children().back()->modified = frame.smallModified;
        }
        if (!frames_.empty()) {
            FSNode &parent = *frames_.back().node;
            parent.size += frame.node->size;
            parent.logicalSize += frame.node->logicalSize;
            parent.fileCount += frame.node->fileCount;
            parent.modified = std::max(parent.modified, frame.node->modified);
            parent.setDirCount(parent.dirCount() + frame.node->dirCount() + 1);
        }
    }

    const ScanOptions &options_;
    ReferenceScan &result_;
    std::vector<Frame> frames_;
    std::set<std::pair<dev_t, ino_t>> seen_;
};

} // namespace

ReferenceScan referenceScan(const std::string &rootPath, const ScanOptions &options) {
    ReferenceScan result;
    result.root = std::make_unique<FSNode>(std::string(FileURL(rootPath).fileName()), rootPath, true);
    FSNode &root = *result.root;
    std::vector<std::string> names;
    DIR *stream = opendir(rootPath.c_str());
    while (const dirent *entry = readdir(stream))
        if (const std::string name = entry->d_name; name != "." && name != "..")
            names.push_back(name);
    closedir(stream);

    Reference reference(options, result);
    for (const bool skipped : {true, false}) {
        for (const std::string &name : names) {
            const std::string path = joinPath(rootPath, name);
            if (options.skippedPaths.contains(path) != skipped)
                continue;
            std::unique_ptr<FSNode> node =
                skipped ? std::make_unique<FSNode>(name, root, true) : reference.walk(path, name, root);
            if (node == nullptr)
                continue;
            node->isNotDescended = skipped;
            node->isCloudProvider = skipped && options.cloudProviderPaths.contains(path);
            root.size += node->size;
            root.logicalSize += node->logicalSize;
            root.fileCount += node->fileCount;
            root.modified = std::max(root.modified, node->modified);
            root.setDirCount(root.dirCount() + node->dirCount() + (node->isDirectory ? 1 : 0));
            root.adopt(std::move(node));
        }
    }
    return result;
}

std::string describe(const FSNode &root) {
    std::ostringstream text;
    std::vector<std::pair<const FSNode *, int>> waiting{{&root, 0}};
    while (!waiting.empty()) {
        const auto [node, depth] = waiting.back();
        waiting.pop_back();
        text << depth << ' ' << node->name.view() << (node->isDirectory ? " folder" : "")
             << (node->isAggregate ? " aggregate" : "") << (node->unreadable ? " unreadable" : "")
             << (node->isNotDescended ? " skipped" : "") << (node->isCloudProvider ? " cloud" : "") << ' '
             << node->size << ' ' << node->logicalSize << ' ' << node->fileCount << ' ' << node->dirCount()
             << ' ' << node->modified << '\n';
        for (auto child = node->children().rbegin(); child != node->children().rend(); ++child)
            waiting.emplace_back(child->get(), depth + 1);
    }
    return text.str();
}

} // namespace brimvale::testing
