#pragma once

#include "platform/pasteboard.h"
#include "platform/simulated/call_latency.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/pasteboard_use.h"
#include "platform/simulated/scheduler.h"
#include "platform/simulated/simulated_scheduling.h"
#include "platform/simulated/stored_item.h"
#include "platform/simulated/this_process.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace lomaris::simulated {

/// The pasteboard of the simulated desktop, as this process and the other programs use it.
class SimulatedPasteboard final : public Pasteboard {
public:
    using WhenRead = std::function<void(std::optional<Bytes>)>;

    SimulatedPasteboard(Scheduler& scheduler, ThisProcess& process, Journal& journal, CallLatency& latency,
                        SimulatedScheduling& runLoop)
        : scheduler_(scheduler), process_(process), journal_(journal), latency_(latency), runLoop_(runLoop) {}

    std::vector<std::unique_ptr<PasteboardItem>> items() override;
    std::optional<Text> string() override;
    std::int64_t changeCount() override;
    void clearContents() override;
    bool writeItems(std::vector<NewPasteboardItem> items) override;
    std::unique_ptr<PasteboardHold> tryHold() override;

    /// The bytes of one type of an item, from the program that promised them if necessary.
    [[nodiscard]] std::optional<Bytes> fetch(const std::shared_ptr<StoredItem>& item, const PasteboardType& type);

    /// An application copies, or the user or any other program (nullopt).
    void copyAsOther(const std::vector<CopiedItem>& items, std::optional<ProcessIdentifier> copier);
    /// The plain text of all items, as another program reads it now.
    [[nodiscard]] std::optional<Text> stringForOthers();
    void readAsOther(const PasteboardType& type, WhenRead whenRead);
    void refuseWrites(int count) { refusals_ = count; }
    void refuseWriteNumber(int number) { refusedNumbers_.insert(number); }
    [[nodiscard]] std::vector<StandingItem> contents() const;

    /// Requests everything that this process still promises and gives it to the programs that wait for it.
    void resolvePromises();
    /// Called when this process has ended: the keeper, if any, serves its promises from now on.
    void loseProcess(ThisProcess::Ending ending);

    void addKeeper();
    [[nodiscard]] bool holdElsewhereUntil(Moment moment) { return use_->holdElsewhereUntil(moment); }

private:
    /// A program that waits for bytes that this process promised.
    struct Reading {
        std::shared_ptr<StoredItem> item;
        PasteboardType type;
        WhenRead whenRead;
    };

    [[nodiscard]] std::optional<Text> composeString();
    void clear();
    void append(std::shared_ptr<StoredItem> item);
    void serveNextReading();
    void finish(const Reading& reading);
    void restore(const std::vector<PasteboardItemContents>& saved);
    /// Notifies the keeper that another program has read the promised text.
    void noteRead(StoredItem& item, const PasteboardType& type);

    Scheduler& scheduler_;
    ThisProcess& process_;
    Journal& journal_;
    CallLatency& latency_;
    SimulatedScheduling& runLoop_;
    std::shared_ptr<PasteboardUse> use_ = std::make_shared<PasteboardUse>(scheduler_, process_);
    std::vector<std::shared_ptr<StoredItem>> items_;
    std::deque<Reading> readings_;
    std::int64_t changeCount_ = 100;
    unsigned itemCount_ = 0;
    int refusals_ = 0;
    int writeCount_ = 0;
    std::set<int> refusedNumbers_;
    bool isOwnedHere_ = false;
    /// True if this process has cleared the pasteboard and no program has written since.
    bool isJustCleared_ = false;
};

}  // namespace lomaris::simulated
