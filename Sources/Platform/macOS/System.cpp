#include "Platform/Host.h"

namespace brimvale {

System platformSystem() {
    return System::macOS;
}

Tools platformTools() {
    return {.shell = "/bin/sh", .busCaller = ""};
}

} // namespace brimvale
