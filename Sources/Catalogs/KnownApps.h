#pragma once

#include <string>
#include <vector>

namespace brimvale {

/// A place where a well-known application keeps files.
struct KnownPlace {
    std::string path;       ///< absolute; the last component may end in "*"
    bool isCareful = false; ///< what people make is inside, or what nobody can get back
};

/// A well-known application whose folders do not follow from its identifier.
struct KnownApp {
    std::vector<std::string> identifiers; ///< of its desktop entries and packages; one may end in "*"
    std::vector<KnownPlace> places;
};

/// How files of desktop applications are recognised by their names.
struct DesktopLeftoverRules {
    std::vector<KnownApp> knownApps;
    /// Words that say nothing about which application it is, in lower case.
    std::vector<std::string> genericWords;
    /// Names that several programs share, in any folder for settings, data or caches. One may end in "*".
    std::vector<std::string> sharedNames;
    /// Names in the home that several programs share, with their dots. One may end in "*".
    std::vector<std::string> sharedNamesInHome;
    /// Folders of a maker with one folder for each of its applications.
    std::vector<std::string> vendorFolders;
    /// Kinds of applications, as desktop entries name them, whose data people would miss.
    std::vector<std::string> carefulCategories;
};

} // namespace brimvale
