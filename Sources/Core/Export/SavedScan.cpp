#include "Core/Export/SavedScan.h"

#include "Base/Hex.h"
#include "Core/Export/OwnFigures.h"
#include "Core/Export/PackedBlocks.h"
#include "Core/Export/TreeAssembly.h"
#include "Core/Export/TreeVisit.h"
#include "Platform/Digest.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace brimvale {

namespace {

constexpr std::string_view magic = "BRIMSCAN";
constexpr std::uint8_t plainVersion = 1; ///< without blocks; it is only read
constexpr std::uint8_t formatVersion = 2;
constexpr std::size_t digestLength = 32;
constexpr std::int64_t blockSize = 512;
constexpr std::uint32_t day = 86'400;     ///< in seconds
constexpr std::size_t longestNumber = 10; ///< in bytes
constexpr std::uint64_t mostReasons = 8;  ///< as `SkipReason` has

/// What the byte at the beginning of a node says.
enum Flag : std::uint8_t {
    directory = 1,
    aggregateNode = 2,
    unreadableNode = 4,
    skipped = 8,
    cloudProvider = 16,
    linkedFiles = 32,
    otherDevice = 64, ///< than that of the node before
    noIdentity = 128
};

std::uint64_t zigzag(std::uint64_t difference) {
    return (difference << 1) ^ (difference >> 63 != 0 ? ~std::uint64_t{0} : 0);
}

std::uint64_t unzigzag(std::uint64_t coded) {
    return (coded >> 1) ^ (coded & 1 ? ~std::uint64_t{0} : 0);
}

class ScanWriter {
public:
    explicit ScanWriter(TextSink &sink) : sink_(sink) {}

    void write(const FSNode &root, const ScanOrigin &origin) {
        pass(std::string(magic) + static_cast<char>(formatVersion));
        text(origin.program);
        text(origin.host);
        number(origin.date ? static_cast<std::uint64_t>(secondsOf(*origin.date)) + 1 : 0);
        number(static_cast<std::uint64_t>(origin.unreadable));
        text(root.path());
        visitTree(
            root, [this](const FSNode &one) { node(one); }, [](const FSNode &) {});
        passBlock();
        pass(endOfBlocks());
        sink_.write(*bytesOfHex(digest_.finish()));
    }

private:
    void node(const FSNode &one) {
        const std::optional<FileIdentity> identity = one.identity();
        const bool hasReason = one.isNotDescended || one.isOtherVolume();
        const auto flag = [](bool isSet, Flag value) { return isSet ? static_cast<unsigned>(value) : 0U; };
        bytes_ += static_cast<char>(
            flag(one.isDirectory, directory) | flag(one.isAggregate, aggregateNode) |
            flag(one.unreadable, unreadableNode) | flag(hasReason, skipped) |
            flag(one.isCloudProvider, cloudProvider) | flag(one.hasLinkedFiles, linkedFiles) |
            flag(identity && identity->device != last_.device, otherDevice) | flag(!identity, noIdentity));
        if (!one.isAggregate && one.parent() != nullptr)
            text(one.name);
        if (identity)
            writeIdentity(*identity);
        if (hasReason)
            number(static_cast<std::uint64_t>(one.skipReason));
        const OwnFigures own = OwnFigures::of(one);
        const bool hasFigures = !one.isDirectory || own.size > 0 || own.length > 0 || own.files > 0;
        if (one.isDirectory)
            number(one.children().size() * 2 + (hasFigures ? 1 : 0));
        if (hasFigures)
            figures(own);
        if (hasFigures && (one.isDirectory || one.isAggregate))
            number(static_cast<std::uint64_t>(own.files));
        if (!one.isDirectory)
            date(one.modified);
        if (bytes_.size() > usualBlock)
            passBlock();
    }

    void date(std::uint32_t modified) {
        const std::uint64_t days = modified / day;
        number(zigzag(days - lastDay_));
        lastDay_ = days;
    }

    void figures(const OwnFigures &own) {
        const auto size = static_cast<std::uint64_t>(own.size);
        const bool isBlocks = own.size % blockSize == 0;
        number(isBlocks ? size / blockSize * 2 : size * 2 + 1);
        number(static_cast<std::uint64_t>(own.length));
    }

    void writeIdentity(const FileIdentity &identity) {
        if (identity.device != last_.device)
            number(identity.device);
        number(zigzag(identity.inode - last_.inode));
        last_ = identity;
    }

    void number(std::uint64_t value) { appendPackedNumber(bytes_, value); }

    void text(std::string_view value) {
        number(value.size());
        bytes_ += value;
    }

    void passBlock() {
        if (!bytes_.empty())
            pass(packedBlock(bytes_));
        bytes_.clear();
    }

    void pass(const std::string &more) {
        digest_.add(more);
        sink_.write(more);
    }

    TextSink &sink_;
    Sha256 digest_;
    std::string bytes_; ///< of the block to come
    FileIdentity last_;
    std::uint64_t lastDay_ = 0;
};

class ScanReader {
public:
    /// `content` is what follows the version, without blocks.
    explicit ScanReader(std::string_view content) : rest_(content) {}
    /// The blocks that follow the version.
    explicit ScanReader(const BlockReader &blocks) : blocks_(blocks) {}

    Result<ImportedTree, ImportFault> read() {
        ScanOrigin origin;
        origin.program = text();
        origin.host = text();
        const std::uint64_t date = number();
        origin.date = date == 0 ? std::nullopt : dateOfSeconds(signedOf(date) - 1);
        origin.unreadable = signedOf(number());
        path_ = text();
        if (path_.empty() || path_.find('\0') != std::string::npos)
            isDamaged_ = true;
        do
            node();
        while (!isDamaged_ && !folders_.empty());
        need(1);
        if (isDamaged_ || !rest_.empty())
            return ImportFault{"The saved scan is damaged."};
        return ImportedTree{tree_.finish(), std::move(origin)};
    }

private:
    struct Folder {
        TreeEntry entry;
        std::uint64_t childrenLeft;
    };

    void node() {
        const auto flags = static_cast<unsigned>(byte());
        const bool isRoot = folders_.empty();
        TreeEntry entry;
        entry.isDirectory = (flags & directory) != 0;
        entry.isAggregate = (flags & aggregateNode) != 0;
        entry.isUnreadable = (flags & unreadableNode) != 0;
        entry.isCloudProvider = (flags & cloudProvider) != 0;
        entry.name = isRoot ? path_ : entry.isAggregate ? "0 smaller items" : text();
        if (!isRoot && TreeAssembly::faultOfName(entry.name))
            isDamaged_ = true;
        const std::optional<FileIdentity> identity = readIdentity(flags);
        if (flags & skipped)
            entry.skipReason = reason();
        const std::uint64_t children = entry.isDirectory ? number() : 1;
        if (children & 1)
            readFigures(entry);
        if (!entry.isDirectory)
            entry.modified = date();
        if ((isRoot && !entry.isDirectory) || (entry.isDirectory && entry.isAggregate))
            isDamaged_ = true;
        if (!isDamaged_)
            place(std::move(entry), identity, children / 2, (flags & linkedFiles) != 0);
    }

    void place(TreeEntry entry, const std::optional<FileIdentity> &identity, std::uint64_t children,
               bool hasLinkedFiles) {
        if (!folders_.empty())
            --folders_.back().childrenLeft;
        FSNode *placed = nullptr;
        if (entry.isDirectory) {
            placed = &tree_.open(entry);
            folders_.push_back({std::move(entry), children});
        } else {
            tree_.add(std::move(entry));
            placed = tree_.innermost()->children().back().get();
        }
        placed->hasLinkedFiles = hasLinkedFiles;
        if (identity)
            placed->setIdentity(*identity);
        while (!folders_.empty() && folders_.back().childrenLeft == 0) {
            tree_.close(folders_.back().entry);
            folders_.pop_back();
        }
    }

    std::optional<FileIdentity> readIdentity(unsigned flags) {
        if (flags & noIdentity)
            return std::nullopt;
        if (flags & otherDevice)
            last_.device = number();
        last_.inode += unzigzag(number());
        return last_;
    }

    SkipReason reason() {
        const std::uint64_t value = number();
        return value < mostReasons ? static_cast<SkipReason>(value) : SkipReason::leftOut;
    }

    void readFigures(TreeEntry &entry) {
        const std::uint64_t size = number();
        const bool isBelieved = size / 2 <= static_cast<std::uint64_t>(mostBelievedBytes);
        entry.size = isBelieved ? signedOf(size / 2) * (size & 1 ? 1 : blockSize) : -1;
        entry.logicalSize = signedOf(number());
        if (entry.isDirectory || entry.isAggregate)
            entry.fileCount = signedOf(number());
        else
            entry.fileCount = entry.isUnreadable ? 0 : 1;
    }

    /// Noon of the day, so that it is the same day in most places.
    std::uint32_t date() {
        lastDay_ += unzigzag(number());
        constexpr std::uint64_t latest = std::numeric_limits<std::uint32_t>::max() / day - 1;
        return lastDay_ == 0 || lastDay_ > latest ? 0 : static_cast<std::uint32_t>(lastDay_) * day + day / 2;
    }

    static std::int64_t signedOf(std::uint64_t value) {
        constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
        return value > most ? -1 : static_cast<std::int64_t>(value);
    }

    /// Unpacks more, so that at least so many bytes are there, or all that are left.
    void need(std::size_t count) {
        while (rest_.size() < count && blocks_) {
            unpacked_.erase(0, unpacked_.size() - rest_.size());
            const bool hasMore = blocks_->appendNext(unpacked_);
            rest_ = unpacked_;
            if (!hasMore) {
                isDamaged_ = isDamaged_ || !blocks_->isComplete();
                blocks_.reset();
            }
        }
    }

    unsigned char byte() {
        need(1);
        if (rest_.empty()) {
            isDamaged_ = true;
            return 0;
        }
        const auto first = static_cast<unsigned char>(rest_.front());
        rest_.remove_prefix(1);
        return first;
    }

    std::uint64_t number() {
        need(longestNumber);
        const std::optional<std::uint64_t> value = takePackedNumber(rest_);
        isDamaged_ = isDamaged_ || !value;
        return value.value_or(0);
    }

    std::string text() {
        const std::uint64_t length = number();
        need(length);
        if (length > rest_.size()) {
            isDamaged_ = true;
            return {};
        }
        std::string value(rest_.substr(0, length));
        rest_.remove_prefix(length);
        return value;
    }

    std::optional<BlockReader> blocks_; ///< those that are left; none in version 1
    std::string unpacked_;              ///< of the blocks read last
    std::string_view rest_;             ///< of the content that is unpacked
    std::string path_;
    TreeAssembly tree_;
    std::vector<Folder> folders_; ///< open, outermost first
    FileIdentity last_;
    std::uint64_t lastDay_ = 0;
    bool isDamaged_ = false;
};

} // namespace

void writeSavedScan(TextSink &sink, const FSNode &root, const ScanOrigin &origin) {
    ScanWriter(sink).write(root, origin);
}

bool beginsSavedScan(std::string_view bytes) {
    return bytes.starts_with(magic);
}

Result<ImportedTree, ImportFault> readSavedScan(std::string_view bytes) {
    if (!beginsSavedScan(bytes))
        return ImportFault{"This is not a saved scan."};
    if (bytes.size() < magic.size() + 1 + digestLength)
        return ImportFault{"The saved scan is damaged."};
    const std::string_view content = bytes.substr(0, bytes.size() - digestLength);
    Sha256 digest;
    digest.add(content);
    if (digest.finish() != hexString(bytes.substr(content.size())))
        return ImportFault{"The saved scan is damaged."};
    const auto format = static_cast<std::uint8_t>(content[magic.size()]);
    const std::string_view rest = content.substr(magic.size() + 1);
    if (format == plainVersion)
        return ScanReader(rest).read();
    if (format != formatVersion)
        return ImportFault{"This scan was saved by a later version of the program."};
    return ScanReader(BlockReader(rest)).read();
}

} // namespace brimvale
