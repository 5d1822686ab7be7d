#include "Support/TestProgram.h"

#include <gtest/gtest.h>

int main(int argc, char **argv) {
    brimvale::testing::startTestProgram(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
