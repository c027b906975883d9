#include "accessibility/model/guard_trace.h"

namespace lomaris {

ReplacementGuardTrace& ReplacementGuardTrace::shared() {
    static ReplacementGuardTrace instance;
    return instance;
}

std::vector<ReplacementGuardTrace::Entry> ReplacementGuardTrace::snapshot() const {
    const std::lock_guard guard(lock_);
    const Refusal refusal = refusal_.value_or(Refusal{});
    return {{"reason", static_cast<std::int64_t>(refusal.reason)},
            {"error", static_cast<std::int64_t>(refusal.error)},
            {"expected_chars", refusal.expectedCharacters},
            {"current_chars", refusal.currentCharacters}};
}

void ReplacementGuardTrace::reset() {
    const std::lock_guard guard(lock_);
    refusal_.reset();
}

void ReplacementGuardTrace::record(const Refusal& refusal) {
    const std::lock_guard guard(lock_);
    refusal_ = refusal;
}

}  // namespace lomaris
