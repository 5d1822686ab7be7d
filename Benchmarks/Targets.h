#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The targets of one benchmark. Every benchmark prints what it measured beside each target as the same
/// table, and ends with the same exit status.
class Targets {
public:
    /// A figure that should be `target` or less. `unit` follows both figures in the table: " ms".
    void atMost(std::string what, double target, double measured, std::string_view unit, int decimals = 2);

    /// A figure that should be `target` or more.
    void atLeast(std::string what, double target, double measured, std::string_view unit, int decimals = 2);

    /// A target that could not be measured, as where the other program is not installed. It never fails.
    void notMeasured(std::string what);

    /// Prints the table under `heading`; nothing if there are no targets. Returns the exit status: 1 where a
    /// figure misses its target by more than a tenth, otherwise 0.
    [[nodiscard]] int report(std::string_view heading) const;

private:
    struct Row {
        std::string what, target, measured;
        const char *verdict;
    };

    void add(std::string what, std::string_view bound, double target, double measured, double shortfall,
             std::string_view unit, int decimals);

    std::vector<Row> rows_;
    bool hasFailed_ = false;
};
