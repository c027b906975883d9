#include "tests/soak/figures.h"

#include "tests/support/temporary_directory.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace lomaris::test {

namespace {

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

}  // namespace

ToolCall callTool(const std::vector<std::string>& arguments, const std::string& input) {
    static const TemporaryDirectory directory;
    const std::string memoryFile = (directory.path() / "memory").string();
    std::vector<std::string> commandLine = toolCommandLine(arguments);
    commandLine.insert(commandLine.begin(), {LOMARIS_PEAK_MEMORY, memoryFile});
    ProcessOptions options;
    options.input = input;
    const auto start = std::chrono::steady_clock::now();
    ToolCall call;
    call.result = runProcess(commandLine, options);
    call.milliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    if (!(std::ifstream(memoryFile) >> call.peakMemory)) {
        throw std::runtime_error("the peak memory of the tool was not measured");
    }
    return call;
}

void Figures::add(const std::string& operation, const std::string& route, const ToolCall& call, Outcome outcome) {
    Row& row = rows_[{operation, route}];
    row.milliseconds.push_back(call.milliseconds);
    row.peakMemory = std::max(row.peakMemory, call.peakMemory);
    row.slow += outcome == Outcome::slowApplication ? 1 : 0;
    row.failures += outcome == Outcome::failed ? 1 : 0;
}

long Figures::peakMemory() const {
    long peak = 0;
    for (const auto& [key, row] : rows_) {
        peak = std::max(peak, row.peakMemory);
    }
    return peak;
}

void Figures::print() const {
    std::printf("%-22s %-10s %7s %9s %5s %11s %9s %9s\n", "operation", "route", "calls", "failures", "slow",
                "median ms", "max ms", "peak KiB");
    for (const auto& [key, row] : rows_) {
        const double longest = *std::max_element(row.milliseconds.begin(), row.milliseconds.end());
        std::printf("%-22s %-10s %7zu %9d %5d %11.1f %9.1f %9ld\n", key.first.c_str(), key.second.c_str(),
                    row.milliseconds.size(), row.failures, row.slow, median(row.milliseconds), longest, row.peakMemory);
    }
    std::fflush(stdout);
}

}  // namespace lomaris::test
