#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris {

/// What the last selection captures of this process did, as numbers that a host can read without parsing messages: the
/// route taken, the error, what became of the Copy command, how many presses were needed. Nothing in the library
/// empties it, so counts add up until a host calls `reset`. Every operation may be called on any thread.
class SelectionCaptureTrace {
public:
    /// The entries, in the order of every snapshot.
    enum class Key : std::uint8_t {
        /// 1: direct; 2: a direct read in a browser or editor handed to the clipboard; 3: a failed direct read switched
        /// to the clipboard.
        route,
        /// Of the direct read: 1 no text selected, 2 selected text unavailable, 3 focused element unavailable, 4 other.
        error,
        /// 1: no Copy command found; 2: found enabled, or of unknown state; 3: found disabled.
        copyItem,
        /// Presses of Command+C.
        keyPresses,
        /// Successful presses of the Copy menu item.
        menuPresses,
        /// 1: web content was involved.
        web,
    };

    using Entry = std::pair<std::string_view, std::int64_t>;

    /// The one instance of the process, created on first use.
    [[nodiscard]] static SelectionCaptureTrace& shared();

    SelectionCaptureTrace() = default;
    SelectionCaptureTrace(const SelectionCaptureTrace&) = delete;
    SelectionCaptureTrace& operator=(const SelectionCaptureTrace&) = delete;
    ~SelectionCaptureTrace() = default;

    /// All six entries in the order of `Key`, zeros included.
    [[nodiscard]] std::vector<Entry> snapshot() const;

    /// Sets every entry to zero.
    void reset();

    /// Adds one. A count that would overflow ends the process.
    void increment(Key key);

    void record(Key key, std::int64_t value);

private:
    static constexpr std::size_t keyCount = 6;

    mutable std::mutex lock_;
    std::array<std::int64_t, keyCount> values_{};
};

}  // namespace lomaris
