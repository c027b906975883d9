#pragma once

#include <map>
#include <string>
#include <vector>

namespace lomaris::test {

/// What the rounds of one storm came to: how often each legal outcome occurred, and each violation in full.
class Findings {
public:
    void startRound(std::string description) {
        ++rounds_;
        description_ = std::move(description);
    }

    void countOutcome(const std::string& outcome) { ++outcomes_[outcome]; }
    void addViolation(const std::string& kind, const std::string& detail);

    [[nodiscard]] int rounds() const { return rounds_; }
    [[nodiscard]] int countOf(const std::string& outcome) const;
    [[nodiscard]] bool hasViolations() const { return !violations_.empty(); }

    /// The counts of outcomes and of violations, and the first few violations of each kind in full.
    [[nodiscard]] std::string summary() const;

private:
    int rounds_ = 0;
    std::string description_ = "before the first one";
    std::map<std::string, int> outcomes_;
    std::map<std::string, std::vector<std::string>> violations_;
};

}  // namespace lomaris::test
