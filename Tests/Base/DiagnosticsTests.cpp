#include "Base/Bytes.h"
#include "Base/Diagnostics.h"
#include "Base/FileURL.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <limits>

namespace brimvale {

TEST(DiagnosticsDeathTest, GoToTheLogAndToStandardError) {
    const auto endWith = [](auto fault) {
        setDiagnosticLog([](const std::string &line) { std::fprintf(stderr, "logged: %s\n", line.c_str()); });
        fault();
    };
    EXPECT_DEATH(endWith([] { static_cast<void>(checkedAdd(std::numeric_limits<std::int64_t>::max(), 1)); }),
                 "^\\[Corvel\\] a size or count exceeds 64 bits\nlogged: \\[Corvel\\] a size or count");
    EXPECT_DEATH(endWith([] { static_cast<void>(FileURL("relative")); }),
                 "logged: \\[Corvel\\] not an absolute path: relative");
}

} // namespace brimvale
