#include "Platform/Host.h"

namespace brimvale {

System platformSystem() {
    return System::macOS;
}

Tools platformTools() {
    return {.shell = "/bin/sh", .administratorRunner = "", .busCaller = ""};
}

} // namespace brimvale
