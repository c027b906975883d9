#include "accessibility/fallback/pasteboard_consumption_tracker.h"

#include "text/utf8.h"

#include <mutex>
#include <utility>
#include <vector>

namespace lomaris {

PasteboardConsumptionTracker::PasteboardConsumptionTracker(Scheduling& scheduling, std::string data)
    : scheduling_(scheduling), data_(std::move(data)), condition_(scheduling.makeCondition()) {}

void PasteboardConsumptionTracker::provideData(PromisedItem& item, const PasteboardType& type) {
    if (type != pasteboard_type::string) {
        return;
    }
    item.setData(data_, type);
    const std::lock_guard guard(*condition_);
    consumed_ = true;
    condition_->broadcast();
}

std::optional<Bytes> PasteboardConsumptionTracker::promisedData(const PasteboardType& type) const {
    return type == pasteboard_type::string ? std::optional(data_) : std::nullopt;
}

bool PasteboardConsumptionTracker::isConsumed() const {
    const std::lock_guard guard(*condition_);
    return consumed_;
}

void PasteboardConsumptionTracker::whenReleasable(Duration minimumWait, Duration graceWait,
                                                  std::function<void()> then) {
    scheduling_.runInBackground([self = shared_from_this(), minimumWait, graceWait, then = std::move(then)] {
        self->waitUntilReleasable(minimumWait, graceWait);
        self->scheduling_.runOnMainQueue(then);
    });
}

void PasteboardConsumptionTracker::waitUntilReleasable(Duration minimumWait, Duration graceWait) {
    const Moment start = scheduling_.now();
    const Moment deadline = start + graceWait;
    {
        const std::lock_guard guard(*condition_);
        while (!consumed_ && scheduling_.now() < deadline) {
            condition_->waitUntil(deadline);
        }
    }
    const Duration remaining = minimumWait - (scheduling_.now() - start);
    if (remaining > Duration::zero()) {
        scheduling_.sleep(remaining);
    }
}

std::shared_ptr<PasteboardConsumptionTracker> stagePrivately(Pasteboard& pasteboard, Scheduling& scheduling,
                                                             TextView text) {
    pasteboard.clearContents();
    auto tracker = std::make_shared<PasteboardConsumptionTracker>(scheduling, utf8FromText(text));
    NewPasteboardItem item;
    item.promisedTypes = {PasteboardType(pasteboard_type::string)};
    item.provider = tracker;
    item.data = {{PasteboardType(pasteboard_type::concealed), Bytes()},
                 {PasteboardType(pasteboard_type::transient), Bytes()}};
    std::vector<NewPasteboardItem> items;
    items.push_back(std::move(item));
    return pasteboard.writeItems(std::move(items)) ? tracker : nullptr;
}

}  // namespace lomaris
