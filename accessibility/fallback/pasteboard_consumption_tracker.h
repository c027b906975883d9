#pragma once

#include "platform/pasteboard.h"
#include "platform/scheduling.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// Provides a staged text when another application requests it, and records that it did. Shared by the caller that
/// staged the text, by the pasteboard until the promise ends, and by the wait for the release. Borrows the scheduling
/// service.
class PasteboardConsumptionTracker final : public PasteboardDataProvider,
                                           public std::enable_shared_from_this<PasteboardConsumptionTracker> {
public:
    /// `data`: the text in UTF-8.
    PasteboardConsumptionTracker(Scheduling& scheduling, std::string data);

    /// Provides the plain text and marks it as consumed. Ignores requests for other types.
    void provideData(PromisedItem& item, const PasteboardType& type) override;

    [[nodiscard]] std::optional<Bytes> promisedData(const PasteboardType& type) const override;

    /// True if a reader has requested the text. Thread-safe.
    [[nodiscard]] bool isConsumed() const;

    /// Waits on a background thread until the text is consumed, but at least `minimumWait` and at most `graceWait`, and
    /// then queues `then` on the main queue. Returns immediately. The tracker must be owned by a `shared_ptr`.
    /// Thread-safe.
    void whenReleasable(Duration minimumWait, Duration graceWait, std::function<void()> then);

private:
    void waitUntilReleasable(Duration minimumWait, Duration graceWait);

    Scheduling& scheduling_;
    const std::string data_;
    const std::shared_ptr<Condition> condition_;
    /// Guarded by the condition. Never reset.
    bool consumed_ = false;
};

/// Replaces the pasteboard's contents by `text`, marked as concealed and transient. The plain text is promised, so that
/// a read can be detected. Returns the tracker, or null if the pasteboard did not accept the item. Main thread.
[[nodiscard]] std::shared_ptr<PasteboardConsumptionTracker> stagePrivately(Pasteboard& pasteboard,
                                                                           Scheduling& scheduling, TextView text);

}  // namespace lomaris
