#pragma once

#include "platform/keeping/pasteboard_keeping.h"
#include "platform/pasteboard.h"
#include "platform/simulated/scheduler.h"

#include <functional>
#include <optional>
#include <vector>

namespace lomaris::simulated {

/// The keeper of the simulated pasteboard. Applies the decisions of `keeping::decide` in virtual time. Its partner is
/// this process.
class SimulatedKeeper {
public:
    using Contents = std::vector<PasteboardItemContents>;

    /// `restore` writes the saved contents to the pasteboard; it must not report that change to the keeper.
    SimulatedKeeper(Scheduler& scheduler, std::function<void(const Contents&)> restore)
        : scheduler_(scheduler), restore_(std::move(restore)) {}
    SimulatedKeeper(const SimulatedKeeper&) = delete;
    SimulatedKeeper& operator=(const SimulatedKeeper&) = delete;

    void begin();
    void protect(const Contents& saved);
    void publish() { take(keeping::event::Published()); }
    void expectCopy(std::optional<ProcessIdentifier> target, Duration wait);
    void expectPaste(Duration minimumWait, Duration graceWait) {
        take(keeping::event::PasteExpected{minimumWait, graceWait});
    }
    void end() { take(keeping::event::Ended()); }
    void losePartner() { take(keeping::event::PartnerGone()); }
    /// Reports that a program wrote to the pasteboard: an application, or the user or any other program (nullopt).
    void noteCopy(std::optional<ProcessIdentifier> copier);
    void noteTextRead() { take(keeping::event::TextRead()); }

    /// True once the partner has begun an operation; from then on the keeper serves what the partner writes.
    [[nodiscard]] bool hasBegun() const { return hasBegun_; }
    /// True if the use of the pasteboard is exclusive now.
    [[nodiscard]] bool holds();

private:
    void take(const keeping::Event& event);

    Scheduler& scheduler_;
    std::function<void(const Contents&)> restore_;
    keeping::State state_;
    Contents saved_;
    /// The application that was told to copy.
    std::optional<ProcessIdentifier> target_;
    /// The moment of the newest timer.
    std::optional<Moment> wakeAt_;
    bool hasBegun_ = false;
    bool isDone_ = false;
};

}  // namespace lomaris::simulated
