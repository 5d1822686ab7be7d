#pragma once

namespace brimvale::testing {

/// The first thing that a program of the tests does: gives it the language, the region and the local time
/// that tests expect (that of a place with a summer time, and never UTC), whatever the user has chosen. On a
/// Mac it starts the program again, with arguments that are taken from `argc` then.
void startTestProgram(int &argc, char **argv);

} // namespace brimvale::testing
