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

/// Runs the tool and measures it. The time includes some 2 ms in which another program starts it.
[[nodiscard]] ToolCall callTool(const std::vector<std::string>& arguments, const std::string& input = "");

/// What the calls of one operation on one route took.
class Figures {
public:
    enum class Outcome { expected, slowApplication, failed };

    void add(const std::string& operation, const std::string& route, const ToolCall& call, Outcome outcome);

    /// The most memory that any call had, in KiB.
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
