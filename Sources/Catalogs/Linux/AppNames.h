#pragma once

#include "Catalogs/Linux/Places.h"

#include <map>
#include <string>

namespace brimvale::linuxCatalog {

/// The names of applications by their ids, from their desktop entries.
class AppNames {
public:
    /// `places` must outlive it.
    explicit AppNames(const Places &places) : places_(places) {}

    /// The name of an application; the id where it is not known. Reads files.
    [[nodiscard]] std::string of(const std::string &id);

private:
    const Places &places_;
    std::map<std::string, std::string> known_;
};

} // namespace brimvale::linuxCatalog
