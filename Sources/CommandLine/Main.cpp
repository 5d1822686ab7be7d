#include "Core/DiskScanner.h"
#include <cstdio>
int main(int, char **argv) {
    using namespace brimvale;
    ScanStats stats;
    const auto tree = DiskScanner::scan(argv[1], ScanOptions::standard(), stats);
    tree->sortRecursively();
    std::printf("%ld files %ld bytes %ld dirs %ld unreadable\n", tree->fileCount, tree->size, tree->dirCount,
                stats.unreadable());
}
