#pragma once

namespace brimvale {

/// While it lives, the calling thread never makes a cloud provider download a file by looking at it: opening
/// such a file or folder fails instead. Does nothing on systems without such files. The thread's earlier
/// policy returns with its end.
class NoMaterialization {
public:
    NoMaterialization();
    ~NoMaterialization();
    NoMaterialization(const NoMaterialization &) = delete;
    NoMaterialization &operator=(const NoMaterialization &) = delete;

private:
    [[maybe_unused]] int earlierPolicy_; ///< where the system has such a policy
};

} // namespace brimvale
