// Removes one item as the program does, and nothing else.
//
//     RemoveItem PATH

#include "Platform/FileRemoval.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <variant>

int main(int argumentCount, char **arguments) {
    if (argumentCount != 2) {
        std::fputs("usage: RemoveItem PATH\n", stderr);
        return 2;
    }
    const brimvale::FileURL here(std::filesystem::current_path().native());
    const auto item = brimvale::OpenedItem::at(brimvale::FileURL::resolving(arguments[1], here));
    if (const int *error = std::get_if<int>(&item)) {
        std::fprintf(stderr, "RemoveItem: %s\n", std::strerror(*error));
        return 1;
    }
    const auto error = brimvale::removeItem(std::get<brimvale::OpenedItem>(item));
    if (error)
        std::fprintf(stderr, "RemoveItem: %s\n", error->localizedDescription.c_str());
    return error ? 1 : 0;
}
