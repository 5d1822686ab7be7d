#include "CommandLine/TreeTable.h"

#include "Base/Bytes.h"
#include "Base/Text.h"
#include "CommandLine/TerminalText.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale::commandLine {

namespace {

std::string_view markOf(const FSNode &node) {
    if (node.isCloudProvider)
        return "[skipped: owned by a cloud provider]";
    if (node.isNotDescended && node.skipReason == SkipReason::leftOut)
        return "[left out of the list]";
    if (node.isNotDescended)
        return "[skipped: system-managed]";
    if (node.isOtherVolume())
        return "[another volume: not scanned]";
    return node.unreadable ? "[not readable]" : "";
}

/// Its size, with "≥" if something inside could not be read, so that it may be larger.
std::string shownSize(const FSNode &node) {
    const std::string size = Fmt::byteFormatter(node.size);
    return node.isAtLeast() ? std::string("≥ ").append(size) : size;
}

class Table {
public:
    Table(Output &output, const FSNode &root, const TreeLimits &limits)
        : output_(output), isStyled_(output.isStyled()), root_(root), limits_(limits) {}

    void write();

private:
    /// A node whose children are being printed.
    struct Level {
        const FSNode *node;
        std::size_t next;        ///< index of the next child
        std::size_t toTell;      ///< children printed one by one; the others share one line
        std::size_t linesLength; ///< the length of `lines_` before this level's part
    };

    void open(const FSNode &node, std::size_t linesLength);
    void writeNext();
    void writeChild(Level &level);
    void writeRest(Level &level);
    void writeRow(std::string_view size, std::string_view files, std::string_view name);
    [[nodiscard]] std::string labelOf(const FSNode &node) const;
    /// Text that is not a name, fainter if the output has styles.
    [[nodiscard]] std::string aside(std::string_view text) const {
        return isStyled_ ? faint(text) : std::string(text);
    }
    void writeLine(std::string_view size, std::string_view files, bool isLast, std::string_view label);

    Output &output_;
    const bool isStyled_;
    const FSNode &root_;
    const TreeLimits &limits_;
    std::size_t sizeWidth_ = 0;
    std::size_t filesWidth_ = 0;
    std::vector<Level> levels_;
    std::string lines_; ///< the vertical lines of all open levels
};

void Table::write() {
    const std::string size = shownSize(root_);
    const std::string files = Fmt::count(root_.fileCount);
    const std::string_view filesTitle = "FILES";
    sizeWidth_ = std::max(usualSizeWidth, characterCount(size));
    filesWidth_ = std::max(filesTitle.size(), characterCount(files));

    writeRow("SIZE", filesTitle, "NAME");
    writeRow(size, files, terminalText(root_.path()));
    open(root_, 0);
    while (!levels_.empty())
        writeNext();
}

void Table::open(const FSNode &node, std::size_t linesLength) {
    if (!node.children().empty() && limits_.opensLevel(levels_.size()))
        levels_.push_back({&node, 0, limits_.childrenToTell(node), linesLength});
    else
        lines_.resize(linesLength);
}

void Table::writeNext() {
    Level &level = levels_.back();
    if (level.next < level.toTell) {
        writeChild(level);
    } else if (level.next < level.node->children().size()) {
        writeRest(level);
    } else {
        lines_.resize(level.linesLength);
        levels_.pop_back();
    }
}

void Table::writeChild(Level &level) {
    const FSNode &child = *level.node->children()[level.next++];
    const bool isLast = level.next == level.node->children().size();
    const bool isMeasured = !child.isNotDescended;
    writeLine(isMeasured ? shownSize(child) : "–", isMeasured ? Fmt::count(child.fileCount) : "–", isLast,
              labelOf(child));
    const std::size_t linesLength = lines_.size();
    lines_ += isLast ? "   " : "│  ";
    open(child, linesLength);
}

void Table::writeRest(Level &level) {
    const auto rest = level.node->children().subspan(level.next);
    std::int64_t size = 0;
    std::int64_t files = 0;
    for (const auto &child : rest) {
        size = checkedAdd(size, child->size);
        files = checkedAdd(files, child->fileCount);
    }
    writeLine(Fmt::byteFormatter(size), Fmt::count(files), true,
              aside("… " + Fmt::count(static_cast<std::int64_t>(rest.size())) + " more"));
    level.next += rest.size();
}

std::string Table::labelOf(const FSNode &node) const {
    if (node.isAggregate)
        return aside("… " + terminalText(node.name));
    std::string label = terminalText(node.name);
    if (node.isDirectory)
        label += '/';
    const std::string_view mark = markOf(node);
    return mark.empty() ? label : label.append("  ").append(aside(mark));
}

void Table::writeLine(std::string_view size, std::string_view files, bool isLast, std::string_view label) {
    writeRow(size, files, aside(lines_ + (isLast ? "└─ " : "├─ ")).append(label));
}

void Table::writeRow(std::string_view size, std::string_view files, std::string_view name) {
    constexpr std::string_view gap = "  ";
    output_.write(rightAligned(size, sizeWidth_));
    output_.write(gap);
    output_.write(rightAligned(files, filesWidth_));
    output_.write(gap);
    output_.write(name);
    output_.write("\n");
}

} // namespace

void writeTreeTable(Output &output, const FSNode &root, const TreeLimits &limits) {
    Table(output, root, limits).write();
}

} // namespace brimvale::commandLine
