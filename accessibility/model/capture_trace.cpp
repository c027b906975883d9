#include "accessibility/model/capture_trace.h"

#include <cstddef>
#include <cstdlib>
#include <limits>

namespace lomaris {

namespace {

constexpr std::array<std::string_view, 6> names = {"route", "error", "copy_item", "key_presses", "menu_presses", "web"};

std::size_t indexOf(SelectionCaptureTrace::Key key) { return static_cast<std::size_t>(key); }

}  // namespace

SelectionCaptureTrace& SelectionCaptureTrace::shared() {
    static SelectionCaptureTrace instance;
    return instance;
}

std::vector<SelectionCaptureTrace::Entry> SelectionCaptureTrace::snapshot() const {
    const std::lock_guard guard(lock_);
    std::vector<Entry> entries;
    entries.reserve(keyCount);
    for (std::size_t index = 0; index < keyCount; ++index) {
        entries.emplace_back(names.at(index), values_.at(index));
    }
    return entries;
}

void SelectionCaptureTrace::reset() {
    const std::lock_guard guard(lock_);
    values_.fill(0);
}

void SelectionCaptureTrace::increment(Key key) {
    const std::lock_guard guard(lock_);
    std::int64_t& value = values_.at(indexOf(key));
    if (value == std::numeric_limits<std::int64_t>::max()) {
        std::abort();
    }
    ++value;
}

void SelectionCaptureTrace::record(Key key, std::int64_t value) {
    const std::lock_guard guard(lock_);
    values_.at(indexOf(key)) = value;
}

}  // namespace lomaris
