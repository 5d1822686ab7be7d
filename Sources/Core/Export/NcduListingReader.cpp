#include "Core/Export/NcduListingReader.h"

#include "Core/Export/NcduNames.h"
#include "Core/Scan/InodeSet.h"

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace brimvale {

namespace {

/// The information that ncdu has about one entry.
struct Info {
    TreeEntry entry = {};
    std::int64_t device = 0;
    std::int64_t inode = 0;
};

class NcduReader {
    using Token = JsonReader::Token;

public:
    NcduReader(JsonReader &json, TreeAssembly &tree, ScanOrigin &origin)
        : json_(json), tree_(tree), origin_(origin) {}

    void read() {
        readVersion();
        readMetadata();
        if (json_.next() != Token::beginArray)
            json_.fail("the list of the first folder is missing");
        openFolder();
        while (json_.fault().empty() && !folders_.empty())
            readEntry();
        // Later versions may add something after the folder.
        for (Token token = json_.next(); token != Token::endArray && token != Token::fault;
             token = json_.next())
            json_.skip(token);
    }

private:
    void readVersion() {
        if (json_.next() != Token::number || json_.integer() != 1) {
            json_.fail("this is not an ncdu list, version 1");
            return;
        }
        if (json_.next() != Token::number)
            json_.fail("the minor version is missing");
    }

    void readMetadata() {
        if (json_.next() != Token::beginObject)
            json_.fail("the description of the list is missing");
        std::string programVersion;
        while (json_.next() == Token::key) {
            const std::string key = json_.text();
            const Token value = json_.next();
            if (value == Token::text && key == "progname")
                origin_.program = json_.text();
            else if (value == Token::text && key == "progver")
                programVersion = json_.text();
            else if (value == Token::text && key == "hostname")
                origin_.host = json_.text();
            else if (value == Token::number && key == "timestamp")
                origin_.date = dateOfSeconds(json_.integer().value_or(-1));
            json_.skip(value);
        }
        if (!programVersion.empty())
            origin_.program.append(" ").append(programVersion);
    }

    /// After the bracket of a folder: its information comes first.
    void openFolder() {
        if (json_.next() != Token::beginObject)
            json_.fail("the information about a folder is missing");
        Info info = readInfo();
        info.entry.isDirectory = true;
        info.entry.fileCount = 0;
        if (!json_.fault().empty())
            return;
        tree_.open(info.entry);
        folders_.push_back(std::move(info));
    }

    void readEntry() {
        switch (json_.next()) {
        case Token::beginArray:
            return openFolder();
        case Token::beginObject:
            return addFile();
        case Token::endArray:
            tree_.close(folders_.back().entry);
            folders_.pop_back();
            return;
        default:
            json_.fail("an entry is neither a file nor a folder");
        }
    }

    void addFile() {
        Info info = readInfo();
        if (!json_.fault().empty())
            return;
        if (info.entry.isLinkedFile && info.inode != 0 &&
            !linked_.insert(static_cast<std::uint64_t>(info.device),
                            static_cast<std::uint64_t>(info.inode))) {
            tree_.innermost()->hasLinkedFiles = true;
            return;
        }
        info.entry.isDirectory = info.entry.skipReason.has_value();
        if (!info.entry.isAggregate)
            info.entry.fileCount = info.entry.isUnreadable ? 0 : 1;
        tree_.add(info.entry);
    }

    /// After the bracket of an information.
    Info readInfo() {
        Info info{.device = folders_.empty() ? 0 : folders_.back().device};
        while (json_.next() == Token::key) {
            const std::string key = json_.text();
            readMember(info, key, json_.next());
        }
        const std::string &name = info.entry.name;
        if (folders_.empty()) { // the path of the root
            if (name.empty() || name.find('\0') != std::string::npos)
                json_.fail("the first folder has no path");
        } else if (const auto fault = TreeAssembly::faultOfName(name)) {
            json_.fail(*fault);
        }
        return info;
    }

    void readMember(Info &info, const std::string &key, Token value) {
        TreeEntry &entry = info.entry;
        if (value == Token::number)
            readFigure(info, key);
        else if (value == Token::text && key == "name")
            entry.name = json_.text();
        else if (value == Token::text && key == "excluded")
            entry.skipReason = SkipReason::leftOut;
        else if (value == Token::truth && key == "hlnkc")
            entry.isLinkedFile = json_.text() == "true";
        else if (value == Token::truth && key == "read_error")
            entry.isUnreadable = json_.text() == "true";
        json_.skip(value);
    }

    void readFigure(Info &info, const std::string &key) {
        // What is no whole number, or too large, is as wrong as a negative one.
        const std::int64_t number = json_.integer().value_or(-1);
        if (key == "asize")
            info.entry.logicalSize = number;
        else if (key == "dsize")
            info.entry.size = number;
        else if (key == "mtime" && number > 0 && number <= std::numeric_limits<std::uint32_t>::max())
            info.entry.modified = static_cast<std::uint32_t>(number);
        else if (key == "dev")
            info.device = number;
        else if (key == "ino")
            info.inode = number;
        else if (key == "nlink" && number > 1)
            info.entry.isLinkedFile = true;
        else if (key == NcduNames::filesInAggregate) {
            info.entry.isAggregate = true;
            info.entry.fileCount = number;
        }
    }

    JsonReader &json_;
    TreeAssembly &tree_;
    ScanOrigin &origin_;
    std::vector<Info> folders_; ///< open, outermost first
    InodeSet linked_;
};

} // namespace

void readNcduListing(JsonReader &json, TreeAssembly &tree, ScanOrigin &origin) {
    NcduReader(json, tree, origin).read();
}

} // namespace brimvale
