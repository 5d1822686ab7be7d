#include "Platform/Pages.h"

#include <cstdint>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace brimvale {

namespace {

std::size_t wholePages(std::size_t size) {
    static const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return (size + page - 1) / page * page;
}

} // namespace

/// Takes more, and returns what is before and after the aligned part.
void *takePages(std::size_t size, std::size_t alignment) {
    const std::size_t length = wholePages(size);
    void *const all =
        mmap(nullptr, length + alignment, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANON, -1, 0);
    if (all == MAP_FAILED)
        throw std::bad_alloc();
    const std::size_t before = -reinterpret_cast<std::uintptr_t>(all) & (alignment - 1);
    char *const aligned = static_cast<char *>(all) + before;
    if (before > 0)
        munmap(all, before);
    munmap(aligned + length, alignment - before);
    return aligned;
}

void giveBackPages(void *pages, std::size_t size) noexcept {
    munmap(pages, wholePages(size));
}

} // namespace brimvale
