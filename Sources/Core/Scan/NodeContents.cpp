#include "Core/Scan/NodeContents.h"

#include "Base/Diagnostics.h"
#include "Core/Scan/FSNode.h"
#include "Core/Scan/NodeMemory.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace brimvale {

namespace {

/// Blocks for more children are allocated by themselves: they may be replaced by larger ones.
constexpr std::size_t fewChildren = 128;

} // namespace

NodeContents::~NodeContents() {
    if (block_ == nullptr)
        return;
    std::destroy_n(block_->begin(), block_->count);
    freeBlock(block_);
}

NodeContents::Block *NodeContents::makeBlock(std::size_t capacity) {
    const std::size_t bytes = sizeof(Block) + capacity * sizeof(Child);
    auto *block = new (capacity <= fewChildren ? NodeMemory::take(bytes) : ::operator new(bytes)) Block;
    block->capacity = static_cast<std::uint32_t>(capacity);
    return block;
}

void NodeContents::freeBlock(Block *block) {
    const bool isLarge = block->capacity > fewChildren;
    block->~Block();
    if (isLarge)
        ::operator delete(block);
    else
        NodeMemory::giveBack(block);
}

std::span<NodeContents::Child> NodeContents::children() const {
    return block_ == nullptr ? std::span<Child>() : std::span(block_->begin(), block_->count);
}

NodeContents::Block &NodeContents::block() {
    if (block_ == nullptr)
        block_ = makeBlock(0);
    return *block_;
}

void NodeContents::reserve(std::size_t count) {
    if (count <= (block_ == nullptr ? 0 : block_->capacity))
        return;
    if (count > std::numeric_limits<std::uint32_t>::max())
        endProgram("A folder has too many entries to show.");
    Block *larger = makeBlock(count);
    if (block_ != nullptr) {
        larger->dirCount = block_->dirCount;
        larger->rare = std::move(block_->rare);
        larger->count = block_->count;
        std::uninitialized_move_n(block_->begin(), block_->count, larger->begin());
    }
    NodeContents earlier;
    earlier.block_ = std::exchange(block_, larger);
}

void NodeContents::append(Child child) {
    const std::size_t count = children().size();
    if (block_ == nullptr || count == block_->capacity)
        reserve(std::max<std::size_t>(1, 2 * count));
    new (block_->begin() + count) Child(std::move(child));
    ++block_->count;
}

NodeContents::Child NodeContents::takeOut(std::size_t place) {
    const std::span<Child> all = children();
    Child taken = std::move(all[place]);
    std::move(all.begin() + static_cast<std::ptrdiff_t>(place) + 1, all.end(),
              all.begin() + static_cast<std::ptrdiff_t>(place));
    shrink(all.size() - 1);
    return taken;
}

void NodeContents::shrink(std::size_t count) {
    const std::span<Child> all = children();
    if (all.size() <= count)
        return;
    block_->count = static_cast<std::uint32_t>(count);
    std::destroy(all.begin() + static_cast<std::ptrdiff_t>(count), all.end());
}

std::int64_t NodeContents::dirCount() const {
    return block_ == nullptr ? 0 : block_->dirCount;
}

void NodeContents::setDirCount(std::int64_t count) {
    if (count != dirCount())
        block().dirCount = count;
}

NodeContents::Rare *NodeContents::rare() const {
    return block_ == nullptr ? nullptr : block_->rare.get();
}

NodeContents::Rare &NodeContents::makeRare() {
    if (block().rare == nullptr)
        block_->rare = std::make_unique<Rare>();
    return *block_->rare;
}

void NodeContents::swap(NodeContents &other) noexcept {
    std::swap(block_, other.block_);
}

void NodeContents::swapRare(NodeContents &other) {
    if (rare() != nullptr || other.rare() != nullptr)
        std::swap(block().rare, other.block().rare);
}

} // namespace brimvale
