#pragma once

#include "accessibility/model/read_failure.h"

#include <array>
#include <cstdint>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris {

/// Counters of this process's selection captures, which a host can read without parsing messages: the route, the error,
/// the state of the Copy command and the number of key presses. The library never resets them, so counts accumulate
/// until the host calls `reset`. Thread-safe.
class SelectionCaptureTrace {
public:
    /// The entries, in the order of `snapshot`.
    enum class Key : std::uint8_t {
        /// The last `Route`.
        route,
        /// The `ReadFailure` of the last failed read.
        error,
        /// The last `CopyItem`.
        copyItem,
        /// The number of times Command+C was pressed.
        keyPresses,
        /// The number of times the Copy menu item was pressed successfully.
        menuPresses,
        /// 1 if web content was involved.
        web,
    };

    enum class Route : std::int64_t {
        direct = 1,
        /// The clipboard, after a direct read in a browser or code editor.
        clipboardForWebContent = 2,
        /// The clipboard, after a failed direct read.
        clipboardAfterFailure = 3,
    };

    /// The Copy menu item that was looked for.
    enum class CopyItem : std::int64_t {
        notFound = 1,
        /// Found enabled, or its state is unknown.
        usable = 2,
        disabled = 3,
    };

    using Entry = std::pair<std::string_view, std::int64_t>;

    /// The only instance of the process, created on first use.
    [[nodiscard]] static SelectionCaptureTrace& shared();

    SelectionCaptureTrace() = default;
    SelectionCaptureTrace(const SelectionCaptureTrace&) = delete;
    SelectionCaptureTrace& operator=(const SelectionCaptureTrace&) = delete;
    ~SelectionCaptureTrace() = default;

    /// All six entries in the order of `Key`, including zeros.
    [[nodiscard]] std::vector<Entry> snapshot() const;

    /// Sets every entry to zero.
    void reset();

    /// Adds one to the entry. Aborts the process on overflow.
    void increment(Key key);

    void record(Route route) { record(Key::route, static_cast<std::int64_t>(route)); }
    void record(ReadFailure failure) { record(Key::error, static_cast<std::int64_t>(failure)); }
    void record(CopyItem item) { record(Key::copyItem, static_cast<std::int64_t>(item)); }
    void recordWebContent() { record(Key::web, 1); }

    /// Sets the entry to any number. For the four entries with a meaning of their own, see the functions above.
    void record(Key key, std::int64_t value);

private:
    static constexpr std::size_t keyCount = 6;

    mutable std::mutex lock_;
    std::array<std::int64_t, keyCount> values_{};
};

}  // namespace lomaris
