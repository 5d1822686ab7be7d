#pragma once

#include "Catalogs/CleanupNotes.h"
#include "Catalogs/Linux/AppNames.h"
#include "Catalogs/Linux/Places.h"
#include "Catalogs/Linux/RunningPrograms.h"

#include <memory>
#include <string>
#include <vector>

namespace brimvale::linuxCatalog {

/// Places of a cleanup target whose entries follow the same rule.
struct CleanupPlaces {
    std::vector<std::string> places; ///< as `Places` reads them
    bool itself = false;             ///< each is one entry; otherwise its contents are
    std::vector<std::string> takes = {}, leaves = {};
    int leastDays = 0;
    bool ownFilesOnly = false;
    bool notOpen = false;      ///< leaves out what a program has open or locked
    std::string onlyWith = {}; ///< only folders that have an entry of this name; empty for all
    std::string app = {};      ///< whose entries they are, for people; empty where the place says it
    ProgramSigns program = {}; ///< its locks are places too; without a name there is none
    bool freesLess = false;
    std::string keptBecause = {};
    std::string command = {};
};

/// Looks for the entries of one cleanup target.
class CleanupSearch {
public:
    /// `running` must outlive it. `elsewhere` are the real paths of what other targets have, for the
    /// target that takes the rest.
    CleanupSearch(const Host &host, const RunningPrograms &running, std::vector<std::string> elsewhere);

    [[nodiscard]] Places &places() { return places_; }
    [[nodiscard]] AppNames &names() { return names_; }
    [[nodiscard]] const RunningPrograms &running() const { return running_; }
    [[nodiscard]] const std::vector<std::string> &elsewhere() const { return elsewhere_; }

    /// The paths of these places that exist and were not found before. A folder that somebody keeps other
    /// things in is left out, should a variable of the environment or a link lead to it.
    [[nodiscard]] std::vector<std::string> find(const std::vector<std::string> &places);

    /// Adds what is in these places.
    void add(const CleanupPlaces &places);
    /// Adds one item.
    void add(const std::string &path, CleanupNotes notes = {});

    /// The signs of a program with the paths of its locks and marks; null for a program without a name.
    [[nodiscard]] std::shared_ptr<const ProgramSigns> signsOf(ProgramSigns program) const;

    [[nodiscard]] CleanupFinding takeFinding() { return std::move(finding_); }

private:
    [[nodiscard]] bool isForOthersToo(const std::string &place, const std::string &path) const;
    void addAllowed(const std::string &path, const CleanupPlaces &places, CleanupNotes notes);
    [[nodiscard]] std::string nameInSandbox(const std::string &path);

    Places places_;
    AppNames names_{places_};
    const RunningPrograms &running_;
    std::vector<std::string> elsewhere_;
    std::vector<std::string> structural_; ///< folders that are never removed
    std::vector<std::string> ofUser_;     ///< folders for documents and so on, and for temporary files
    CleanupFinding finding_;
};

/// The path without links; the path itself where nothing is.
[[nodiscard]] std::string realPathOf(const std::string &path);

} // namespace brimvale::linuxCatalog
