// Feeds a fuzz target with what random changes make of its seeds, for a time or a number of inputs. Meant to
// run under the sanitizers. An input that ends the program, or is not done after 20 seconds, is left in a
// file:
//
//   PROGRAM --seconds N        for so long, differently each time
//   PROGRAM --runs N           so many, always the same
//   PROGRAM FILE               the input in this file

#include "Fuzz/FuzzTarget.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace brimvale::testing {

namespace {

constexpr std::size_t longestInput = 4096;
constexpr unsigned mostSecondsPerInput = 20;

/// Makes inputs: what some changes make of the seeds, and of a few earlier inputs, so that changes add up.
class Mutator {
public:
    Mutator(std::vector<std::string> seeds, std::uint64_t randomSeed)
        : inputs_(std::move(seeds)), seedCount_(inputs_.size()), random_(randomSeed) {}

    std::string next() {
        std::string input = anyInput();
        for (std::size_t changes = upTo(7) + 1; changes > 0; --changes) {
            const std::size_t at = upTo(input.size());
            const std::size_t replaced = upTo(1) == 0 ? 0 : upTo(upTo(3) == 0 ? 100 : 4);
            input.replace(at, std::min(replaced, input.size() - at), anyPart());
        }
        input.resize(std::min(input.size(), longestInput));
        constexpr std::size_t mostKept = 64;
        if (inputs_.size() < seedCount_ + mostKept)
            inputs_.push_back(input);
        else if (upTo(30) == 0)
            inputs_[seedCount_ + upTo(mostKept - 1)] = input;
        return input;
    }

private:
    std::size_t upTo(std::size_t most) {
        return std::uniform_int_distribution<std::size_t>(0, most)(random_);
    }

    const std::string &anyInput() { return inputs_[upTo(inputs_.size() - 1)]; }

    /// Nothing, a byte that may tell a parser something, any byte, or a part of some input, mostly a short
    /// one.
    std::string anyPart() {
        using namespace std::string_view_literals;
        static constexpr std::string_view telling = "\x00\x01\x0F\x10\x7F\x80\xFE\xFF<>&;/\"0"sv;
        switch (upTo(3)) {
        case 0:
            return {};
        case 1:
            return {telling[upTo(telling.size() - 1)]};
        case 2:
            return {static_cast<char>(upTo(255))};
        default:
            const std::string &input = anyInput();
            return input.substr(upTo(input.size()), upTo(upTo(3) == 0 ? 200 : 8));
        }
    }

    std::vector<std::string> inputs_;
    std::size_t seedCount_;
    std::mt19937_64 random_;
};

/// The file that holds the input under way.
class CurrentInput {
public:
    explicit CurrentInput(std::string path)
        : path_(std::move(path)), file_(open(path_.c_str(), O_CREAT | O_WRONLY | O_TRUNC, 0600)) {}
    ~CurrentInput() {
        close(file_);
        unlink(path_.c_str());
    }
    CurrentInput(const CurrentInput &) = delete;
    CurrentInput &operator=(const CurrentInput &) = delete;

    void keep(const std::string &input) const {
        if (ftruncate(file_, 0) != 0 ||
            pwrite(file_, input.data(), input.size(), 0) != static_cast<ssize_t>(input.size()))
            std::perror(path_.c_str());
    }

private:
    std::string path_;
    int file_;
};

int fuzzFile(const char *path) {
    fuzz(contentOf(path));
    return 0;
}

int fuzzMany(const char *program, bool isForATime, std::int64_t amount) {
    using Clock = std::chrono::steady_clock;
    const std::string path = std::string(program) + ".input";
    std::printf("An input that fails is left in %s\n", path.c_str());
    std::fflush(stdout);
    const CurrentInput current(path);
    Mutator mutator(fuzzSeeds(), isForATime ? std::random_device()() : 1);
    for (const std::string &seed : fuzzSeeds())
        fuzz(seed);
    const auto end = Clock::now() + std::chrono::seconds(amount);
    std::int64_t count = 0;
    while (isForATime ? Clock::now() < end : count < amount) {
        const std::string input = mutator.next();
        current.keep(input);
        alarm(mostSecondsPerInput);
        fuzz(input);
        ++count;
    }
    alarm(0);
    std::printf("%lld inputs did no harm\n", static_cast<long long>(count));
    return 0;
}

} // namespace

} // namespace brimvale::testing

int main(int argc, char **argv) {
    using namespace brimvale::testing;
    const std::string option = argc > 1 ? argv[1] : "";
    if (argc == 2)
        return fuzzFile(argv[1]);
    if (argc == 3 && (option == "--seconds" || option == "--runs"))
        return fuzzMany(argv[0], option == "--seconds", std::atoll(argv[2]));
    std::fprintf(stderr, "usage: %s --seconds N | --runs N | FILE\n", argv[0]);
    return 2;
}
