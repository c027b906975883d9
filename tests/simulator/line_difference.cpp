#include "tests/simulator/scenario.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

constexpr std::size_t around = 3;
/// The table of common lines takes the square of this; longer texts are not compared by lines.
constexpr std::size_t mostLines = 4000;

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

struct Change {
    char mark = ' ';
    std::string line;
};

/// Returns the lines of both: marked '-' if only in `a`, '+' if only in `b`, ' ' if in both.
std::vector<Change> compare(const std::vector<std::string>& a, const std::vector<std::string>& b) {
    std::vector<std::vector<std::uint32_t>> common(a.size() + 1, std::vector<std::uint32_t>(b.size() + 1));
    for (std::size_t i = a.size(); i-- > 0;) {
        for (std::size_t j = b.size(); j-- > 0;) {
            common[i][j] = a[i] == b[j] ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
        }
    }
    std::vector<Change> changes;
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() || j < b.size()) {
        if (i < a.size() && j < b.size() && a[i] == b[j]) {
            changes.push_back({' ', a[i++]});
            ++j;
        } else if (j == b.size() || (i < a.size() && common[i + 1][j] >= common[i][j + 1])) {
            changes.push_back({'-', a[i++]});
        } else {
            changes.push_back({'+', b[j++]});
        }
    }
    return changes;
}

}  // namespace

std::string differenceOf(const std::string& expected, const std::string& actual) {
    if (expected == actual) {
        return "";
    }
    const std::vector<std::string> before = linesOf(expected);
    const std::vector<std::string> after = linesOf(actual);
    if (before.size() > mostLines || after.size() > mostLines) {
        return "too long to be compared line by line\n";
    }
    const std::vector<Change> changes = compare(before, after);
    std::string difference = "--- expected\n+++ actual\n";
    std::size_t shownUntil = 0;
    for (std::size_t index = 0; index < changes.size(); ++index) {
        if (changes[index].mark == ' ') {
            continue;
        }
        const std::size_t from = std::max(shownUntil, index > around ? index - around : 0);
        const std::size_t until = std::min(index + around + 1, changes.size());
        difference += from > shownUntil ? "...\n" : "";
        for (std::size_t shown = from; shown < until; ++shown) {
            difference += changes[shown].mark + changes[shown].line + "\n";
        }
        shownUntil = std::max(shownUntil, until);
    }
    return difference;
}

}  // namespace lomaris::test
