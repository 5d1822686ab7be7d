#include "Platform/Formatters.h"
#include "Support/ChildProcess.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <thread>

namespace brimvale {

TEST(Formatters, FollowLocaleVariables) {
    using namespace std::chrono_literals;
    using Environment = std::map<std::string, std::string>;
    struct Case {
        Environment environment;
        std::string number, size;
    };
    for (const Case &one :
         {Case{{}, "1,234,567", "1.23 GB"}, Case{{{"LANG", "POSIX"}}, "1,234,567", "1.23 GB"},
          Case{{{"LANG", "C.UTF-8"}}, "1,234,567", "1.23 GB"},
          Case{{{"LANG", "de_DE.UTF-8"}}, "1.234.567", "1,23 GB"},
          Case{{{"LANG", "de_CH@euro"}}, "1’234’567", "1.23 GB"},
          Case{{{"LANG", "hi_IN"}}, "12,34,567", "1.23 GB"},
          Case{{{"LANG", "es_ES.UTF-8"}}, "1.234.567", "1,23 GB"},
          Case{{{"LANG", "en_US.UTF-8"}, {"LC_NUMERIC", "de_DE.UTF-8"}}, "1.234.567", "1,23 GB"},
          Case{{{"LC_ALL", "C"}, {"LC_NUMERIC", "de_DE"}, {"LANG", "de_DE"}}, "1,234,567", "1.23 GB"},
          Case{{{"LC_ALL", ""}, {"LC_MESSAGES", "de_DE"}}, "1,234,567", "1.23 GB"}}) {
        const std::string answer = testing::answerOfChild([&] {
            for (const char *name : {"LC_ALL", "LC_NUMERIC", "LC_MESSAGES", "LANG", "LANGUAGE"})
                unsetenv(name);
            for (const auto &[name, value] : one.environment)
                setenv(name.c_str(), value.c_str(), 1);
            const Date date = now();
            return Formatters::number(1'234'567) + '|' + Formatters::fileSize(1'234'567'890) + '|' +
                   Formatters::relativeDate(date - 2h, date);
        });
        EXPECT_EQ(answer, one.number + '|' + one.size + "|2 hours ago")
            << ::testing::PrintToString(one.environment);
    }
}

TEST(Formatters, AreThreadSafe) {
    using namespace std::chrono_literals;
    const Date date = now();
    const auto everything = [&] {
        std::string text;
        for (int i = 0; i < 50; ++i)
            text += Formatters::number(i * 1'000) + Formatters::fileSize(i * 1'000'000) +
                    Formatters::relativeDate(date - 1h * i, date);
        return text;
    };
    // In a child, so that the threads meet at the first use, and no other test finds it done.
    const std::string answer = testing::answerOfChild([&] {
        std::vector<std::string> texts(4);
        std::vector<std::thread> threads;
        for (std::string &text : texts)
            threads.emplace_back([&] { text = everything(); });
        for (std::thread &thread : threads)
            thread.join();
        return std::string(texts == std::vector(texts.size(), everything()) ? "equal" : "different");
    });
    EXPECT_EQ(answer, "equal");
}

} // namespace brimvale
