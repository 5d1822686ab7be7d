#pragma once

namespace brimvale {

/// While this object lives, the calling thread never makes a cloud provider download a file: opening such a
/// file or folder fails instead. Restores the thread's earlier policy at the end. Does nothing on systems
/// without such files.
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
