#include "Support/EnvironmentVariable.h"

#include <gtest/gtest.h>

int main(int argc, char **argv) {
    brimvale::testing::useTheLocaleOfTheTests();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
