#include "Platform/Dataless.h"
#include "Platform/Posix/Status.h"

#include <sys/resource.h>
#include <sys/stat.h>

namespace brimvale {

namespace {

constexpr int policyType = IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES;

} // namespace

NoMaterialization::NoMaterialization() : earlierPolicy_(getiopolicy_np(policyType, IOPOL_SCOPE_THREAD)) {
    setiopolicy_np(policyType, IOPOL_SCOPE_THREAD, IOPOL_MATERIALIZE_DATALESS_FILES_OFF);
}

NoMaterialization::~NoMaterialization() {
    if (earlierPolicy_ >= 0)
        setiopolicy_np(policyType, IOPOL_SCOPE_THREAD, earlierPolicy_);
}

bool isDataless(const struct stat &status) {
    return (status.st_flags & SF_DATALESS) != 0;
}

} // namespace brimvale
