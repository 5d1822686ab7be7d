#include "Platform/Dataless.h"
#include "Platform/Posix/Status.h"

namespace brimvale {

NoMaterialization::NoMaterialization() : earlierPolicy_(0) {}
NoMaterialization::~NoMaterialization() = default;

bool isDataless(const struct stat & /*status*/) {
    return false;
}

} // namespace brimvale
