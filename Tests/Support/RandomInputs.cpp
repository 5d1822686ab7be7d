#include "Support/RandomInputs.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace brimvale::testing {

namespace {

constexpr std::size_t longestInput = 4096;
constexpr std::size_t mostKept = 64;

} // namespace

RandomInputs::RandomInputs(std::vector<std::string> seeds)
    : inputs_(std::move(seeds)), seedCount_(inputs_.size()),
      random_(static_cast<unsigned>(::testing::UnitTest::GetInstance()->random_seed())) {}

std::string RandomInputs::next() {
    std::string input = anyInput();
    for (std::size_t changes = upTo(7) + 1; changes > 0; --changes) {
        const std::size_t at = upTo(input.size());
        const std::size_t replaced = upTo(1) == 0 ? 0 : upTo(upTo(3) == 0 ? 100 : 4);
        input.replace(at, std::min(replaced, input.size() - at), anyPart());
    }
    input.resize(std::min(input.size(), longestInput));
    if (inputs_.size() < seedCount_ + mostKept)
        inputs_.push_back(input);
    else if (upTo(30) == 0)
        inputs_[seedCount_ + upTo(mostKept - 1)] = input;
    return input;
}

std::size_t RandomInputs::upTo(std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random_);
}

/// Nothing, a byte that may tell a parser something, any byte, or a part of some input, mostly a short one.
std::string RandomInputs::anyPart() {
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

} // namespace brimvale::testing
