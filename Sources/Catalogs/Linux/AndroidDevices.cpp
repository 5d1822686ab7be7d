#include "Catalogs/Linux/CleanupRecords.h"

#include "Platform/Folder.h"

#include <optional>
#include <utility>

namespace brimvale::linuxCatalog {

/// A virtual phone is a folder and a file that names it. While it runs there are locks in its folder.
void findAndroidDevices(CleanupSearch &search) {
    for (const std::string &folder : search.find(
             {"$ANDROID_AVD_HOME", "$ANDROID_EMULATOR_HOME/avd", "$ANDROID_USER_HOME/avd", "~/.android/avd"}))
        for (const std::string &name : namesIn(folder).value_or(std::vector<std::string>())) {
            if (!fitsPattern(name, "*.avd"))
                continue;
            const std::string path = joinPath(folder, name);
            const std::string device(deletingPathExtension(name));
            CleanupNotes notes{.name = device};
            ProgramSigns emulator{.name = "The emulator of “" + device + "”", .openFolder = path};
            for (const std::string &inside : namesIn(path).value_or(std::vector<std::string>()))
                if (fitsPattern(inside, "*.lock"))
                    emulator.locks.push_back(joinPath(path, inside));
            notes.program = search.signsOf(std::move(emulator));
            if (std::optional<ItemPin> file = pinOf(FileURL(joinPath(folder, device + ".ini"))))
                notes.companions.push_back(*std::move(file));
            search.add(path, std::move(notes));
        }
}

} // namespace brimvale::linuxCatalog
