#pragma once

#include "platform/pasteboard.h"
#include "platform/scheduling.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// Hands a staged text over when another application asks for it, and remembers that it was asked. Shared by whoever
/// staged the text, by the pasteboard while the promise stands, and by the wait for its release. Borrows the scheduling
/// service, which outlives its own blocks.
class PasteboardConsumptionTracker final : public PasteboardDataProvider,
                                           public std::enable_shared_from_this<PasteboardConsumptionTracker> {
public:
    /// `data`: the text in UTF-8.
    PasteboardConsumptionTracker(Scheduling& scheduling, std::string data);

    /// Provides the plain text, and nothing for any other type. Only the plain text counts as consumption.
    void provideData(PromisedItem& item, const PasteboardType& type) override;

    [[nodiscard]] std::optional<Bytes> promisedData(const PasteboardType& type) const override;

    /// Whether a reader has requested the text. Any thread.
    [[nodiscard]] bool isConsumed() const;

    /// Waits on a background thread until the text was consumed, at most `graceWait` after the wait began and at least
    /// `minimumWait` in all, and then queues `then` for the main queue. Returns at once. The tracker must be owned by a
    /// `shared_ptr`. Any thread.
    void whenReleasable(Duration minimumWait, Duration graceWait, std::function<void()> then);

private:
    void waitUntilReleasable(Duration minimumWait, Duration graceWait);

    Scheduling& scheduling_;
    const std::string data_;
    const std::shared_ptr<Condition> condition_;
    /// Guarded by the condition; set once.
    bool consumed_ = false;
};

/// Puts `text` alone on the pasteboard, marked as concealed and transient: the plain text is promised, so that its
/// being read can be noticed. Answers the tracker, or null where the pasteboard refused. Main thread.
[[nodiscard]] std::shared_ptr<PasteboardConsumptionTracker> stagePrivately(Pasteboard& pasteboard,
                                                                           Scheduling& scheduling, TextView text);

}  // namespace lomaris
