#include "Core/Scan/PackedText.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace brimvale {

TEST(PackedText, HoldsBytesOfAnyKindAndLength) {
    for (const std::size_t length : {0U, 1U, 15U, 254U, 255U, 256U, 8'000U, 9'000U, 70'000U, 300'000U}) {
        std::string bytes(length, 'x');
        for (std::size_t i = 0; i < length; i += 7)
            bytes[i] = static_cast<char>(i);
        PackedText text{bytes};
        EXPECT_EQ(text, bytes) << length;
        EXPECT_EQ(text.size(), length);
        PackedText moved = std::move(text);
        const PackedText shared = moved.shared();
        moved = PackedText("other");
        EXPECT_EQ(shared, bytes) << length;
    }
    EXPECT_LT(PackedText("a"), PackedText("b"));
}

// Their memory is used again as soon as no other text is in it.
TEST(PackedText, StaysWhileOthersComeAndGo) {
    std::vector<PackedText> kept;
    for (int i = 0; i < 60'000; ++i) {
        PackedText text(std::string(40, static_cast<char>('a' + i % 26)));
        if (i % 20'000 == 7)
            kept.push_back(std::move(text));
    }
    EXPECT_EQ(kept[0], std::string(40, 'h'));
    EXPECT_EQ(kept[1], std::string(40, static_cast<char>('a' + 20'007 % 26)));
    EXPECT_EQ(kept[2], std::string(40, static_cast<char>('a' + 40'007 % 26)));
}

// Texts are made by the threads of a scan and dropped by another one, most after their thread has ended.
TEST(PackedText, OutlivesItsThread) {
    constexpr int threadCount = 4;
    constexpr int textsEach = 20'000;
    for (int round = 0; round < 3; ++round) {
        std::vector<std::vector<PackedText>> texts(threadCount);
        std::vector<std::thread> threads;
        for (int i = 0; i < threadCount; ++i)
            threads.emplace_back([&own = texts[static_cast<std::size_t>(i)], i] {
                for (int k = 0; k < textsEach; ++k) {
                    own.emplace_back(std::to_string(i * textsEach + k));
                    if (k % 3 == 0)
                        own.push_back(own.back().shared());
                }
            });
        for (std::thread &thread : threads)
            thread.join();
        for (int i = 0; i < threadCount; ++i) {
            const std::vector<PackedText> own = std::move(texts[static_cast<std::size_t>(i)]);
            ASSERT_EQ(own.front(), std::to_string(i * textsEach));
            ASSERT_EQ(own.back(), std::to_string(i * textsEach + textsEach - 1));
        }
    }
}

} // namespace brimvale
