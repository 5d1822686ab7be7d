#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>
#include <system_error>

namespace brimvale::testing {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder()
    : path_((fs::canonical(fs::temp_directory_path()) / "brimvale-XXXXXX").string()) {
    if (mkdtemp(path_.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), path_);
}

TemporaryFolder::~TemporaryFolder() {
    // A test may have locked folders; without the owner's rights back they could not be emptied.
    std::error_code error;
    for (fs::recursive_directory_iterator it(path_, fs::directory_options::skip_permission_denied, error),
         end;
         it != end && !error; it.increment(error))
        if (it->is_directory(error) && !it->is_symlink(error))
            fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, error);
    fs::remove_all(path_, error);
}

std::string TemporaryFolder::makeFolder(std::string_view inside) const {
    fs::create_directories(path(inside));
    return path(inside);
}

std::string TemporaryFolder::makeFile(std::string_view inside, std::int64_t bytes) const {
    return writeFile(inside, std::string(static_cast<std::size_t>(bytes), 'x'));
}

std::string TemporaryFolder::writeFile(std::string_view inside, std::string_view content) const {
    const std::string file = path(inside);
    fs::create_directories(fs::path(file).parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << content;
    stream.close();
    if (!stream)
        throw std::runtime_error("could not write " + file);
    return file;
}

std::string TemporaryFolder::makeLink(std::string_view inside, std::string_view target) const {
    fs::create_directories(fs::path(path(inside)).parent_path());
    fs::create_symlink(target, path(inside));
    return path(inside);
}

} // namespace brimvale::testing
