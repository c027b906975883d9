#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris {

/// Why the last guarded replacement of this process refused, as numbers that a host can read without parsing messages.
/// Empty (all zero) after a replacement that refused nothing. Every operation may be called on any thread.
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
        /// The selection stands elsewhere, or the user typed or clicked where the range cannot tell.
        activityOrRange = 5,
    };

    struct Refusal {
        Reason reason{};
        /// Of a re-read that failed: 1 no text selected, 2 selected text unavailable, 3 focused element unavailable,
        /// 4 anything else; 0 for other reasons.
        std::int64_t error = 0;
        /// Of another text: how many characters (extended grapheme clusters) were expected and found; 0 for other
        /// reasons.
        std::int64_t expectedCharacters = 0;
        std::int64_t currentCharacters = 0;
    };

    using Entry = std::pair<std::string_view, std::int64_t>;

    /// The one instance of the process, created on first use.
    [[nodiscard]] static ReplacementGuardTrace& shared();

    ReplacementGuardTrace() = default;
    ReplacementGuardTrace(const ReplacementGuardTrace&) = delete;
    ReplacementGuardTrace& operator=(const ReplacementGuardTrace&) = delete;
    ~ReplacementGuardTrace() = default;

    /// "reason", "error", "expected_chars" and "current_chars", in this order, zeros included.
    [[nodiscard]] std::vector<Entry> snapshot() const;

    /// Sets every entry to zero.
    void reset();

    /// Replaces what was recorded before.
    void record(const Refusal& refusal);

private:
    mutable std::mutex lock_;
    std::optional<Refusal> refusal_;
};

}  // namespace lomaris
