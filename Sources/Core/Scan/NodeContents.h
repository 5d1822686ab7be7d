#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

namespace brimvale {

class FSNode;

/// What a node has besides its figures: its children, and what only folders and single nodes have. All of it
/// is in one piece of memory, and a node with nothing of this takes none.
class NodeContents {
public:
    using Child = std::unique_ptr<FSNode>;

    /// What few nodes have.
    struct Rare {
        std::unique_ptr<std::string> path;   ///< of a node without a parent
        std::int64_t removedLogicalSize = 0; ///< of removed descendants
        std::int64_t removedDirCount = 0;
    };

    NodeContents() = default;
    ~NodeContents();
    NodeContents(const NodeContents &) = delete;
    NodeContents &operator=(const NodeContents &) = delete;

    [[nodiscard]] std::span<Child> children() const;

    /// Makes room for so many children in all, and no more.
    void reserve(std::size_t count);
    void append(Child child);
    /// Takes out the child at `place`; the others keep their order.
    [[nodiscard]] Child takeOut(std::size_t place);
    /// Drops all children from `count` on.
    void shrink(std::size_t count);

    /// The folders among the descendants.
    [[nodiscard]] std::int64_t dirCount() const;
    void setDirCount(std::int64_t count);

    /// Null where there is nothing of it.
    [[nodiscard]] Rare *rare() const;
    Rare &makeRare();

    /// The piece of memory; null where there is none.
    [[nodiscard]] const void *place() const { return block_; }

    void swap(NodeContents &other) noexcept;
    /// Exchanges `rare` alone.
    void swapRare(NodeContents &other);

private:
    /// The children follow it.
    struct Block {
        std::int64_t dirCount = 0;
        std::unique_ptr<Rare> rare = {};
        std::uint32_t count = 0;
        std::uint32_t capacity = 0;

        [[nodiscard]] Child *begin() { return reinterpret_cast<Child *>(this + 1); }
    };

    static Block *makeBlock(std::size_t capacity);
    static void freeBlock(Block *block);
    Block &block();

    Block *block_ = nullptr;
};

} // namespace brimvale
