#include "Core/Scan/NodeMemory.h"

#include "Platform/Pages.h"

#include <atomic>
#include <cstdint>
#include <new>
#include <utility>

namespace brimvale {

namespace {

constexpr bool usesBlocks = BRIMVALE_NODES_IN_BLOCKS;

/// Every block begins at a multiple of this, so a piece finds its block by its own address.
constexpr std::size_t blockSize = 65'536;

/// Larger pieces have a block of their own.
constexpr std::size_t largestPiece = blockSize / 8;

/// Nodes are taken from its front, bytes from its back.
struct alignas(16) Block {
    std::atomic<std::uint32_t> users; ///< pieces, and the thread that takes from it
    std::uint32_t front;              ///< where the free part begins, from the beginning of the block
    std::uint32_t back;               ///< where it ends
    std::size_t size;
};

Block *makeBlock(std::size_t size) {
    void *memory = takePages(size, blockSize);
    return new (memory) Block{{1}, sizeof(Block), static_cast<std::uint32_t>(blockSize), size};
}

Block *blockOf(const void *piece) {
    return reinterpret_cast<Block *>(reinterpret_cast<std::uintptr_t>(piece) & ~(blockSize - 1));
}

void dropUser(Block *block) {
    if (block->users.fetch_sub(1, std::memory_order_acq_rel) == 1)
        giveBackPages(block, block->size);
}

/// The block from which this thread takes.
struct Current {
    Block *block = nullptr;

    Current() = default;
    Current(const Current &) = delete;
    Current &operator=(const Current &) = delete;
    ~Current() {
        if (block != nullptr)
            dropUser(std::exchange(block, nullptr));
    }

    /// A block with so many bytes left. One that only this thread uses any more is filled again.
    Block &withRoom(std::size_t bytes) {
        if (block != nullptr && block->back - block->front >= bytes)
            return *block;
        if (block != nullptr && block->users.load(std::memory_order_acquire) > 1)
            dropUser(std::exchange(block, nullptr));
        if (block == nullptr)
            block = makeBlock(blockSize);
        block->front = sizeof(Block);
        block->back = static_cast<std::uint32_t>(blockSize);
        return *block;
    }
};

thread_local Current currentBlock;

void *takeAlone(std::size_t bytes) {
    return usesBlocks ? reinterpret_cast<char *>(makeBlock(sizeof(Block) + bytes)) + sizeof(Block)
                      : ::operator new(bytes);
}

} // namespace

void *NodeMemory::take(std::size_t bytes) {
    if (!usesBlocks || bytes > largestPiece)
        return takeAlone(bytes);
    constexpr std::size_t alignment = alignof(std::uint64_t);
    const std::size_t rounded = (bytes + alignment - 1) / alignment * alignment;
    Block &block = currentBlock.withRoom(rounded);
    void *piece = reinterpret_cast<char *>(&block) + block.front;
    block.front += static_cast<std::uint32_t>(rounded);
    block.users.fetch_add(1, std::memory_order_relaxed);
    return piece;
}

char *NodeMemory::takeBytes(std::size_t bytes) {
    if (!usesBlocks || bytes > largestPiece)
        return static_cast<char *>(takeAlone(bytes));
    Block &block = currentBlock.withRoom(bytes);
    block.back -= static_cast<std::uint32_t>(bytes);
    block.users.fetch_add(1, std::memory_order_relaxed);
    return reinterpret_cast<char *>(&block) + block.back;
}

bool NodeMemory::share(const void *piece) {
    if (!usesBlocks || piece == nullptr)
        return false;
    blockOf(piece)->users.fetch_add(1, std::memory_order_relaxed);
    return true;
}

void NodeMemory::giveBack(const void *piece) noexcept {
    if (piece == nullptr)
        return;
    if constexpr (usesBlocks)
        dropUser(blockOf(piece));
    else
        ::operator delete(const_cast<void *>(piece));
}

} // namespace brimvale
