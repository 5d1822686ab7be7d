#pragma once

#include "Platform/Posix/Descriptor.h"

#include <array>
#include <map>
#include <string>

namespace brimvale::faults {

enum class ItemKind { folder, file, link };
inline constexpr std::array itemKinds = {ItemKind::folder, ItemKind::file, ItemKind::link};
[[nodiscard]] const char *nameOf(ItemKind kind);

/// A volume in memory with an item to remove and everything that an adversary needs. It is mounted while the
/// object lives, always at the same path.
///
///     home/Documents           guarded
///     way/place/Documents      the item
///     other/Documents          the same names elsewhere, and so in otherway/place
///     sentinel                 where links in the item lead to
///     spare, links, elsewhere  what adversaries exchange things for
///     fair                     links that may go together with the item
///     backups                  for copies
class Scene {
public:
    explicit Scene(ItemKind kind);
    ~Scene();
    Scene(const Scene &) = delete;
    Scene &operator=(const Scene &) = delete;

    /// Tells where volumes are mounted from now on, and makes "home" there the user's home.
    static void useMountPoint(const std::string &path);
    [[nodiscard]] static const std::string &top();

    [[nodiscard]] static std::string itemInside() { return "/way/place/Documents"; }
    [[nodiscard]] static std::string item() { return top() + itemInside(); }

    /// A folder by its path from the top, opened when first asked for.
    [[nodiscard]] int folder(const std::string &inside) const;

    /// Gives the folders around the item to another user.
    void giveAway() const;

    /// Unmounts whatever was mounted on the volume.
    static void unmountInside();

private:
    mutable std::map<std::string, Descriptor> open_;
};

/// Something that an adversary can do: exchange two entries, move one to a new name, or mount the second at
/// the first.
struct Deed {
    enum Kind { exchange, move, mount };

    const char *name;
    Kind kind;
    const char *folder, *entry;
    const char *otherFolder, *otherEntry;
};

/// To the item and its ancestors. Another user who owns these can do the first `deedsOfAncestors`. The others
/// are done to the item itself. Nothing prevents them right before the last call, so only steps try them:
/// there it is certain before which call.
extern const std::array<Deed, 11> deedsAround;
constexpr std::size_t deedsOfAncestors = 6;
/// To the contents of an item that is a folder.
extern const std::array<Deed, 5> deedsInside;

/// Does a deed on a scene. Its names are in open folders, so they lead to the same entries wherever these
/// are.
class Adversary {
public:
    Adversary(const Scene &scene, const Deed &deed);

    /// Whether it succeeded. Neither allocates nor takes a lock.
    bool act() const;
    bool undo() const;

private:
    const Deed *deed_;
    int folder_, otherFolder_;
    std::string path_, otherPath_; ///< by way of the descriptors
};

} // namespace brimvale::faults
