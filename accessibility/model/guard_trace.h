#pragma once

#include "accessibility/model/read_failure.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris {

/// The reason why the last guarded replacement of this process was refused, as numbers that a host can read without
/// parsing messages. All zero if it was not refused, or only by the final check just before the write. Thread-safe.
class ReplacementGuardTrace {
public:
    enum class Reason : std::int64_t {
        /// The application of the request is not in front.
        notFrontmost = 1,
        /// The selection could not be read again.
        rereadFailed = 2,
        /// The selection that was read again belongs to another application.
        applicationChanged = 3,
        /// Another text is selected.
        textChanged = 4,
        /// The selection has another range, or there was user input and no range to compare.
        activityOrRange = 5,
    };

    struct Refusal {
        Reason reason{};
        /// `none` unless reading the selection again failed.
        ReadFailure error = ReadFailure::none;
        /// If the text changed: the number of characters (extended grapheme clusters) expected and found. 0 for other
        /// reasons.
        std::int64_t expectedCharacters = 0;
        std::int64_t currentCharacters = 0;
    };

    using Entry = std::pair<std::string_view, std::int64_t>;

    /// The only instance of the process, created on first use.
    [[nodiscard]] static ReplacementGuardTrace& shared();

    ReplacementGuardTrace() = default;
    ReplacementGuardTrace(const ReplacementGuardTrace&) = delete;
    ReplacementGuardTrace& operator=(const ReplacementGuardTrace&) = delete;
    ~ReplacementGuardTrace() = default;

    /// "reason", "error", "expected_chars" and "current_chars", in this order, including zeros.
    [[nodiscard]] std::vector<Entry> snapshot() const;

    /// Sets every entry to zero.
    void reset();

    /// Replaces the previously recorded refusal.
    void record(const Refusal& refusal);

private:
    mutable std::mutex lock_;
    std::optional<Refusal> refusal_;
};

}  // namespace lomaris
