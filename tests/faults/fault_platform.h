#pragma once

#include "platform/platform.h"
#include "platform/simulated/simulated_pasteboard_item.h"
#include "tests/faults/happening.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {

/// The ways in which a call of the boundary can fail. Each call knows those that its contract allows; a call that knows
/// none always succeeds.
enum class Failure {
    /// Nobody answers: -25204 where there is a code; no, nothing, null or an empty list where there is none.
    noAnswer,
    /// The element is gone: -25202. Calls that answer a code alone know it.
    elementGone,
    /// The copy succeeds, but there is no value; the attribute cannot be set.
    noValue,
    /// What was asked for is done, but -25204 is answered. Writes and actions alone know it.
    answerLost,
};

/// Only the call itself fails, or every call from it on.
enum class Persistence { once, fromThenOn };

/// Among the calls that know the failure, the `number`-th fails, the first being 1.
struct Fault {
    Failure failure{};
    Persistence persistence{};
    std::size_t number = 0;
};

/// Something else happens just before the `number`-th call, the first being 1; calls that fail and calls that cannot
/// fail count alike.
struct Interruption {
    std::size_t number = 0;
    std::function<void()> act;
};

/// What a call for a counter is about, in the list of happenings.
[[nodiscard]] std::string_view nameOf(InputEventType counter);

/// What the pasteboard said of one item when the tool asked for it.
using ToldItems = std::vector<StandingItem>;

/// Keeps count of the calls, makes them fail and writes them down. Shared by the services of a `FaultPlatform`.
class CallGate {
public:
    /// The document that is kept beside every happening, and how many lines the journal has.
    using Observe = std::function<void(Happening&)>;

    CallGate(Happenings& happenings, Observe observe, std::optional<Fault> fault,
             std::optional<Interruption> interruption);

    /// What a call can suffer.
    enum class Kind {
        /// Nothing.
        safe,
        /// Answers a code and perhaps a value.
        copy,
        /// Answers a code and has an effect.
        write,
        /// Says that it failed by what it answers.
        plain,
    };

    /// A call arrives; the answer is what becomes of it.
    Fate pass(Kind kind, std::string_view what, std::string_view about = {});

    /// The copy that arrived last found no value. Nothing may have happened since.
    void noteNoValue() { happenings_.back().foundValue = false; }

    /// The code that a call of kind `copy` or `write` answers when it fails.
    [[nodiscard]] AXError errorCode() const;

    [[nodiscard]] bool wasFaultReached() const { return fault_ && failures_ >= fault_->number; }
    [[nodiscard]] bool wasInterrupted() const { return interruption_ && calls_ >= interruption_->number; }

private:
    [[nodiscard]] bool knowsFailure(Kind kind) const;

    Happenings& happenings_;
    Observe observe_;
    std::optional<Fault> fault_;
    std::optional<Interruption> interruption_;
    std::size_t calls_ = 0;
    /// Calls that know the failure of the fault.
    std::size_t failures_ = 0;
};

/// A platform that forwards every call to another one, apart from those that it makes fail. What the contracts of the
/// boundary do not let fail, never fails: making elements, the pure comparison, the change count, emptying the
/// pasteboard, posting events that were created, and everything about time, which is the other platform's own service.
class FaultPlatform final : public Platform {
public:
    /// `platform` and `gate` must outlive this.
    FaultPlatform(Platform& platform, CallGate& gate);
    ~FaultPlatform() override;

    Accessibility& accessibility() override;
    Pasteboard& pasteboard() override;
    EventServices& events() override;
    Workspace& workspace() override;
    Scheduling& scheduling() override;

    /// What the pasteboard told the tool at each of its askings for items, in their order.
    [[nodiscard]] const std::vector<ToldItems>& told() const;

private:
    class Services;
    std::unique_ptr<Services> services_;
    Platform& platform_;
};

}  // namespace lomaris::test
