#pragma once

#include "tests/support/process.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {

/// One finished call of the tool.
struct ToolCall {
    ProcessResult result;
    double milliseconds = 0;
    /// In KiB.
    long peakMemory = 0;
};

/// Runs the tool and measures it. The time includes about 2 ms of the program that measures the memory.
[[nodiscard]] ToolCall callTool(const std::vector<std::string>& arguments, const std::string& input = "");

/// The times and the peak memory of calls, by operation and route.
class Figures {
public:
    enum class Outcome { expected, slowApplication, failed };

    void add(const std::string& operation, const std::string& route, const ToolCall& call, Outcome outcome);

    /// Returns the greatest peak memory of all calls, in KiB.
    [[nodiscard]] long peakMemory() const;

    /// Prints one line for each operation and route.
    void print() const;

private:
    struct Row {
        std::vector<double> milliseconds;
        long peakMemory = 0;
        int slow = 0;
        int failures = 0;
    };

    std::map<std::pair<std::string, std::string>, Row> rows_;
};

}  // namespace lomaris::test
