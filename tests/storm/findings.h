#pragma once

#include <map>
#include <string>
#include <vector>

namespace lomaris::test {

/// The results of the rounds of one storm: the number of each allowed outcome, and every violation with its details.
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

    /// Returns the counts of outcomes and violations, and the details of the first few violations of each kind.
    [[nodiscard]] std::string summary() const;

private:
    int rounds_ = 0;
    std::string description_ = "before the first one";
    std::map<std::string, int> outcomes_;
    std::map<std::string, std::vector<std::string>> violations_;
};

}  // namespace lomaris::test
