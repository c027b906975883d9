#pragma once

#include "platform/pasteboard.h"
#include "platform/simulated/scheduler.h"
#include "platform/simulated/simulated_keeper.h"
#include "platform/simulated/this_process.h"

#include <memory>
#include <optional>

namespace lomaris::simulated {

/// Exclusive use of the pasteboard among all processes of the desktop, and the keeper if the desktop has one. Owned by
/// the pasteboard; its holds do nothing once it is destroyed.
class PasteboardUse : public std::enable_shared_from_this<PasteboardUse> {
public:
    PasteboardUse(Scheduler& scheduler, ThisProcess& process) : scheduler_(scheduler), process_(process) {}
    PasteboardUse(const PasteboardUse&) = delete;
    PasteboardUse& operator=(const PasteboardUse&) = delete;

    void setKeeper(std::unique_ptr<SimulatedKeeper> keeper) { keeper_ = std::move(keeper); }
    /// Null if there is no keeper or it does not serve yet what this process writes.
    [[nodiscard]] SimulatedKeeper* keeper() const;

    /// Begins exclusive use for this process or, in an action, for another one. Null if the pasteboard is in use.
    [[nodiscard]] std::unique_ptr<PasteboardHold> tryHold();
    /// Begins exclusive use for another process until `moment`. False if the pasteboard is in use now.
    [[nodiscard]] bool holdElsewhereUntil(Moment moment);

private:
    class Hold;
    class HoldElsewhere;

    [[nodiscard]] bool isUsedElsewhere() const { return holdsElsewhere_ > 0 || scheduler_.now() < usedElsewhereUntil_; }
    [[nodiscard]] bool isUsedHere();

    Scheduler& scheduler_;
    ThisProcess& process_;
    std::unique_ptr<SimulatedKeeper> keeper_;
    /// True if a hold of this process exists.
    bool hasHold_ = false;
    int holdsElsewhere_ = 0;
    Moment usedElsewhereUntil_ = Moment::min();
};

}  // namespace lomaris::simulated
