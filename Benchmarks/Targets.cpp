#include "Targets.h"

#include <array>
#include <cstdio>
#include <utility>

namespace {

/// The share of a target by which a figure may miss it: machines are never quite idle.
constexpr double tolerated = 0.1;

std::string figure(double value, std::string_view unit, int decimals) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
    return std::string(text.data()).append(unit);
}

} // namespace

void Targets::add(std::string what, std::string_view bound, double target, double measured, double shortfall,
                  std::string_view unit, int decimals) {
    const bool fails = shortfall > tolerated;
    hasFailed_ = hasFailed_ || fails;
    rows_.push_back({std::move(what), std::string(bound).append(figure(target, unit, decimals)),
                     figure(measured, unit, decimals),
                     fails           ? "MISSED"
                     : shortfall > 0 ? "missed by less than a tenth"
                                     : "met"});
}

void Targets::atMost(std::string what, double target, double measured, std::string_view unit, int decimals) {
    add(std::move(what), "≤ ", target, measured, measured / target - 1, unit, decimals);
}

void Targets::atLeast(std::string what, double target, double measured, std::string_view unit, int decimals) {
    add(std::move(what), "≥ ", target, measured, 1 - measured / target, unit, decimals);
}

void Targets::notMeasured(std::string what) {
    rows_.push_back({std::move(what), "", "", "not measured"});
}

int Targets::report(std::string_view heading) const {
    if (rows_.empty())
        return 0;
    std::printf("\n| %.*s | target | measured | |\n|---|---:|---:|---|\n", static_cast<int>(heading.size()),
                heading.data());
    for (const Row &row : rows_)
        std::printf("| %s | %s | %s | %s |\n", row.what.c_str(), row.target.c_str(), row.measured.c_str(),
                    row.verdict);
    return hasFailed_ ? 1 : 0;
}
