#include "tests/storm/findings.h"

#include <cstddef>

namespace lomaris::test {

void Findings::addViolation(const std::string& kind, const std::string& detail) {
    violations_[kind].push_back("round " + std::to_string(rounds_) + ", " + description_ + ": " + detail);
}

int Findings::countOf(const std::string& outcome) const {
    const auto found = outcomes_.find(outcome);
    return found == outcomes_.end() ? 0 : found->second;
}

std::string Findings::summary() const {
    constexpr std::size_t shownOfAKind = 3;
    std::string text = std::to_string(rounds_) + " rounds\n";
    for (const auto& [outcome, count] : outcomes_) {
        text += "  " + std::to_string(count) + " x " + outcome + "\n";
    }
    for (const auto& [kind, details] : violations_) {
        text += "  VIOLATION " + std::to_string(details.size()) + " x " + kind + "\n";
        for (std::size_t index = 0; index < details.size() && index < shownOfAKind; ++index) {
            text += "    " + details[index] + "\n";
        }
    }
    return text;
}

}  // namespace lomaris::test
