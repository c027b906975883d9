#pragma once

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
        /// The last route. 1: the direct read. 2: the clipboard, after a direct read in a browser or code editor.
        /// 3: the clipboard, after a failed direct read.
        route,
        /// The error of the last failed read. 1: no text selected. 2: selected text unavailable. 3: focused element
        /// unavailable. 4: any other.
        error,
        /// The Copy menu item. 1: not found. 2: found enabled, or its state is unknown. 3: found disabled.
        copyItem,
        /// The number of times Command+C was pressed.
        keyPresses,
        /// The number of times the Copy menu item was pressed successfully.
        menuPresses,
        /// 1 if web content was involved.
        web,
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

    void record(Key key, std::int64_t value);

private:
    static constexpr std::size_t keyCount = 6;

    mutable std::mutex lock_;
    std::array<std::int64_t, keyCount> values_{};
};

}  // namespace lomaris
