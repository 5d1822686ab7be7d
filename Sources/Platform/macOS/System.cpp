#include "Platform/Host.h"

namespace brimvale {

System platformSystem() {
    return System::macOS;
}

Tools platformTools() {
    return {.shell = "/bin/sh"};
}

} // namespace brimvale
