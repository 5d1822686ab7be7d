#pragma once

#include "CommandLine/Command.h"

namespace brimvale::commandLine {

/// "scan": the tree of a folder with sizes, as text or as JSON.
extern const Command scanCommand;

/// "open": the tree in a file that "scan --save", "scan --export" or ncdu wrote.
extern const Command openCommand;

/// "compare": what has changed between two scans.
extern const Command compareCommand;

/// "size": the allocated bytes at and under each path.
extern const Command sizeCommand;

/// "find": the files in a folder that filters accept, or their sums by type or age.
extern const Command findCommand;

/// "duplicates": files with equal contents; lets them share their space, after a question.
extern const Command duplicatesCommand;

/// "treemap": the tiles of a folder's treemap, as text, as JSON or as a picture.
extern const Command treemapCommand;

/// "check": whether the removal guards allow each path.
extern const Command checkCommand;

/// "reclaim": how much deleting some paths would free.
extern const Command reclaimCommand;

/// "remove": moves items to the Trash or deletes them, after a question.
extern const Command removeCommand;

/// "volumes": the mounted volumes and their space.
extern const Command volumesCommand;

/// "snapshots": the local snapshots of a volume.
extern const Command snapshotsCommand;

/// "cleanup": the cleanup targets, measured.
extern const Command cleanupCommand;

/// "trash": what is in the Trash; puts it back, or deletes it.
extern const Command trashCommand;

/// "overview": volumes, storage categories and System Data, measured.
extern const Command overviewCommand;

/// "category": one storage category, measured.
extern const Command categoryCommand;

/// "apps": the installed applications and, on request, their sizes and those of their leftovers.
extern const Command appsCommand;

/// "leftovers": the files that one application keeps outside its bundle.
extern const Command leftoversCommand;

/// "uninstall": removes one application, after a question.
extern const Command uninstallCommand;

/// "backup": copies items into a dated folder and verifies the copies, or verifies an old backup.
extern const Command backupCommand;

/// "transcript": the conversations of a Messages database as a page for the browser, or as JSON.
extern const Command transcriptCommand;

/// "update": whether the feed has a newer build.
extern const Command updateCommand;

/// "install-update": puts a downloaded update in place. Only for the window, so the help does not list it.
extern const Command installUpdateCommand;

} // namespace brimvale::commandLine
