#include "Core/Export/JsonListingReader.h"

#include "Base/Hex.h"

#include <QDateTime>
#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

namespace {

/// The moment of `iso8601`.
std::optional<Date> dateIn(const std::string &text) {
    const QDateTime time = QDateTime::fromString(QString::fromStdString(text), Qt::ISODate);
    return time.isValid() ? dateOfSeconds(time.toSecsSinceEpoch()) : std::nullopt;
}

class JsonListReader {
    using Token = JsonReader::Token;

public:
    JsonListReader(JsonReader &json, TreeAssembly &tree, ScanOrigin &origin)
        : json_(json), tree_(tree), origin_(origin) {}

    void read() {
        while (json_.next() == Token::key) {
            const std::string key = json_.text();
            const Token value = json_.next();
            if (key == "root" && value == Token::beginObject && !tree_.isComplete())
                readTree();
            else if (value == Token::text && key == "host")
                origin_.host = json_.text();
            else if (value == Token::text && key == "program")
                origin_.program = json_.text();
            else if (value == Token::text && key == "date")
                origin_.date = dateIn(json_.text());
            else
                json_.skip(value);
        }
    }

private:
    /// A node whose object is still open.
    struct Node {
        TreeEntry entry;
        std::string path; ///< only the root has one
        bool isOpened = false;
    };

    /// After the bracket of the root, until its end.
    void readTree() {
        nodes_.emplace_back();
        while (json_.fault().empty() && !nodes_.empty())
            readInNode(json_.next());
    }

    void readInNode(Token token) {
        switch (token) {
        case Token::key: {
            const std::string key = json_.text();
            const Token value = json_.next();
            if (key == "children" && value == Token::beginArray)
                return openChildren();
            readMember(nodes_.back(), key, value);
            return json_.skip(value);
        }
        case Token::beginObject: // in the array of children
            nodes_.emplace_back();
            return;
        case Token::endObject:
            endNode();
            nodes_.pop_back();
            return;
        case Token::endArray:
            return;
        default:
            json_.fail("a child is not an object");
        }
    }

    void openChildren() {
        Node &node = nodes_.back();
        if (node.isOpened || !node.entry.isDirectory)
            json_.fail(node.isOpened ? "a folder has children twice"
                                     : "children are listed before \"isDirectory\", or of a file");
        else if (checkName(node))
            openNode(node);
    }

    void openNode(Node &node) {
        if (nodes_.size() == 1)
            node.entry.name = node.path;
        tree_.open(node.entry);
        node.isOpened = true;
    }

    bool checkName(const Node &node) {
        const bool isRoot = nodes_.size() == 1;
        if (isRoot && (node.path.empty() || node.path.find('\0') != std::string::npos))
            json_.fail("the first folder has no path");
        else if (const auto fault = TreeAssembly::faultOfName(node.entry.name); !isRoot && fault)
            json_.fail(*fault);
        return json_.fault().empty();
    }

    void endNode() {
        Node &node = nodes_.back();
        if (!node.isOpened && !checkName(node))
            return;
        const bool isRoot = nodes_.size() == 1;
        if (!node.isOpened && (node.entry.isDirectory || isRoot))
            openNode(node);
        if (!node.isOpened)
            return tree_.add(node.entry);
        FSNode &folder = *tree_.innermost();
        folder.modified = std::max(folder.modified, node.entry.modified);
        tree_.close(beyondChildren(node.entry));
    }

    /// What a folder claims beyond the sum of its children: they may have been left out of the document.
    TreeEntry beyondChildren(const TreeEntry &claimed) const {
        const FSNode &folder = *tree_.innermost();
        const auto beyond = [](std::int64_t claim, std::int64_t counted) {
            return claim < 0 ? claim : std::max<std::int64_t>(claim - counted, 0);
        };
        TreeEntry own = claimed;
        own.size = beyond(claimed.size, folder.size);
        own.logicalSize = beyond(claimed.logicalSize, folder.logicalSize);
        own.fileCount = beyond(claimed.fileCount, folder.fileCount);
        own.dirCount = beyond(claimed.dirCount, folder.dirCount());
        return own;
    }

    void readMember(Node &node, const std::string &key, Token value) {
        TreeEntry &entry = node.entry;
        if (value == Token::text)
            readText(node, key);
        else if (value == Token::number)
            readFigure(entry, key, json_.integer().value_or(-1));
        else if (value == Token::truth)
            readFlag(entry, key, json_.text() == "true");
    }

    void readText(Node &node, const std::string &key) {
        if (key == "name")
            node.entry.name = json_.text();
        else if (key == "modified")
            node.entry.modified = FSNode::secondsOf(dateIn(json_.text()));
        else if (key == "path")
            node.path = json_.text();
        else if (key == "nameHex" || key == "pathHex") {
            const std::optional<std::string> bytes = bytesOfHex(json_.text());
            if (!bytes)
                json_.fail("these are not hexadecimal digits");
            else
                (key == "nameHex" ? node.entry.name : node.path) = *bytes;
        }
    }

    static void readFigure(TreeEntry &entry, const std::string &key, std::int64_t number) {
        if (key == "size")
            entry.size = number;
        else if (key == "logicalSize")
            entry.logicalSize = number;
        else if (key == "fileCount")
            entry.fileCount = number;
        else if (key == "dirCount")
            entry.dirCount = number;
    }

    static void readFlag(TreeEntry &entry, const std::string &key, bool truth) {
        if (key == "isDirectory")
            entry.isDirectory = truth;
        else if (key == "isAggregate")
            entry.isAggregate = truth;
        else if (key == "unreadable")
            entry.isUnreadable = truth;
        else if (key == "isNotDescended" && truth)
            entry.skipReason = SkipReason::leftOut;
        else if (key == "isCloudProvider")
            entry.isCloudProvider = truth;
    }

    JsonReader &json_;
    TreeAssembly &tree_;
    ScanOrigin &origin_;
    std::vector<Node> nodes_; ///< whose objects are open, outermost first
};

} // namespace

void readJsonListing(JsonReader &json, TreeAssembly &tree, ScanOrigin &origin) {
    JsonListReader(json, tree, origin).read();
}

} // namespace brimvale
