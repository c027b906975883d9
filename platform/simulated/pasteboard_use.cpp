#include "platform/simulated/pasteboard_use.h"

#include "platform/inert_pasteboard_hold.h"

#include <utility>

namespace lomaris::simulated {

class PasteboardUse::Hold final : public PasteboardHold {
public:
    explicit Hold(PasteboardUse& use) : use_(use.weak_from_this()) { use.hasHold_ = true; }
    ~Hold() override {
        if (const auto use = usable()) {
            use->hasHold_ = false;
            if (SimulatedKeeper* const keeper = use->keeper()) {
                keeper->end();
            }
        }
    }

    void protect(const std::vector<PasteboardItemContents>& saved) override {
        tellKeeper([&](SimulatedKeeper& keeper) { keeper.protect(saved); });
    }

    void expectCopy(std::optional<ProcessIdentifier> target, Duration wait) override {
        tellKeeper([&](SimulatedKeeper& keeper) { keeper.expectCopy(target, wait); });
    }

    void expectPaste(Duration minimumWait, Duration graceWait) override {
        tellKeeper([&](SimulatedKeeper& keeper) { keeper.expectPaste(minimumWait, graceWait); });
    }

    bool retake() override {
        const auto use = usable();
        if (!use) {
            return true;
        }
        if (use->isUsedElsewhere()) {
            return false;
        }
        tellKeeper([](SimulatedKeeper& keeper) { keeper.begin(); });
        return true;
    }

private:
    /// Null if the pasteboard was destroyed or this process has ended.
    [[nodiscard]] std::shared_ptr<PasteboardUse> usable() const {
        const auto use = use_.lock();
        return use && !use->process_.isOver() ? use : nullptr;
    }

    template <typename Tell>
    void tellKeeper(Tell tell) const {
        const auto use = usable();
        if (use && use->keeper() != nullptr) {
            tell(*use->keeper());
        }
    }

    std::weak_ptr<PasteboardUse> use_;
};

class PasteboardUse::HoldElsewhere final : public PasteboardHold {
public:
    explicit HoldElsewhere(PasteboardUse& use) : use_(use.weak_from_this()) { ++use.holdsElsewhere_; }
    ~HoldElsewhere() override {
        if (const auto use = use_.lock()) {
            --use->holdsElsewhere_;
        }
    }

    void protect(const std::vector<PasteboardItemContents>& /*saved*/) override {}
    void expectCopy(std::optional<ProcessIdentifier> /*target*/, Duration /*wait*/) override {}
    void expectPaste(Duration /*minimumWait*/, Duration /*graceWait*/) override {}
    bool retake() override { return true; }

private:
    std::weak_ptr<PasteboardUse> use_;
};

SimulatedKeeper* PasteboardUse::keeper() const { return keeper_ && keeper_->hasBegun() ? keeper_.get() : nullptr; }

std::unique_ptr<PasteboardHold> PasteboardUse::tryHold() {
    if (scheduler_.isActing()) {
        return isUsedElsewhere() || isUsedHere() ? nullptr : std::make_unique<HoldElsewhere>(*this);
    }
    if (process_.isOver()) {
        return std::make_unique<InertPasteboardHold>();
    }
    if (isUsedElsewhere() || isUsedHere() || hasHold_) {
        return nullptr;
    }
    if (keeper_) {
        keeper_->begin();
    }
    return std::make_unique<Hold>(*this);
}

bool PasteboardUse::holdElsewhereUntil(Moment moment) {
    if (isUsedElsewhere() || isUsedHere()) {
        return false;
    }
    usedElsewhereUntil_ = moment;
    return true;
}

bool PasteboardUse::isUsedHere() {
    // With a keeper, the use may outlast the process, or may end while the process still has a hold.
    return keeper() != nullptr ? keeper()->holds() : hasHold_ && !process_.isOver();
}

}  // namespace lomaris::simulated
