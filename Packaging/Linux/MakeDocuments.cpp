// Writes the manual page and the completions of brimvalectl into a folder: MakeDocuments FOLDER VERSION DATE

#include "Completions.h"
#include "ManualPage.h"

#include <cstdio>
#include <fstream>
#include <string>

namespace {

bool write(const std::string &path, const std::string &text) {
    std::ofstream file(path, std::ios::binary);
    if (file << text && file.flush())
        return true;
    std::fprintf(stderr, "%s could not be written.\n", path.c_str());
    return false;
}

} // namespace

int main(int argc, char **argv) {
    using namespace brimvale::packaging;
    if (argc != 4) {
        std::fputs("Usage: MakeDocuments FOLDER VERSION DATE\n", stderr);
        return 2;
    }
    const std::string folder = argv[1];
    return write(folder + "/brimvalectl.1", manualPage(argv[2], argv[3])) &&
                   write(folder + "/brimvalectl", bashCompletion()) &&
                   write(folder + "/_brimvalectl", zshCompletion()) &&
                   write(folder + "/brimvalectl.fish", fishCompletion())
               ? 0
               : 1;
}
