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

/// The ways in which a boundary call can fail. A failure affects only the calls whose contract allows it; some calls
/// never fail.
enum class Failure {
    /// The peer does not reply. The call returns -25204 if it returns a code, otherwise false, nullopt, null or an
    /// empty list.
    noAnswer,
    /// The element no longer exists. Affects only calls that return a code, which is -25202.
    elementGone,
    /// Copying an attribute succeeds without a value, and the attribute is not settable.
    noValue,
    /// The call has its effect but returns -25204. Affects only writes and actions.
    answerLost,
};

/// Whether only one call fails, or also every later one.
enum class Persistence { once, fromThenOn };

/// The `number`-th call that the failure can affect fails, counted from 1.
struct Fault {
    Failure failure{};
    Persistence persistence{};
    std::size_t number = 0;
};

/// An action just before the `number`-th call, counted from 1. Every call counts, whether or not it can fail.
struct Interruption {
    std::size_t number = 0;
    std::function<void()> act;
};

/// The name of a counter in `Happening::about`.
[[nodiscard]] std::string_view nameOf(InputEventType counter);

/// The items that one call of `items` returned, with the data that the tool has read from them.
using ToldItems = std::vector<StandingItem>;

/// Counts the calls, decides which of them fail, and records them as happenings. Shared by the services of a
/// `FaultPlatform`.
class CallGate {
public:
    /// Adds the current document and the length of the journal to a happening.
    using Observe = std::function<void(Happening&)>;

    CallGate(Happenings& happenings, Observe observe, std::optional<Fault> fault,
             std::optional<Interruption> interruption);

    /// The kind of a call, which determines how it can fail.
    enum class Kind {
        /// It never fails.
        safe,
        /// It returns a code and possibly a value.
        copy,
        /// It returns a code and has an effect.
        write,
        /// It returns no code; a failure shows in the result.
        plain,
    };

    /// Records a call and returns whether and how it fails.
    Fate pass(Kind kind, std::string_view what, std::string_view about = {});

    /// Records that the last copy found no value. Must be called before any other happening.
    void noteNoValue() { happenings_.back().foundValue = false; }

    /// The code that a failed call of kind `copy` or `write` returns.
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
    /// The number of calls so far that the failure can affect.
    std::size_t failures_ = 0;
};

/// A platform that forwards every call to another platform, except for the calls that fail. A call never fails if its
/// contract does not allow it: creating elements, comparing texts, the change count, clearing the pasteboard, and
/// posting created events. The scheduling service is that of the other platform.
class FaultPlatform final : public Platform {
public:
    /// `platform` and `gate` must outlive this object.
    FaultPlatform(Platform& platform, CallGate& gate);
    ~FaultPlatform() override;

    Accessibility& accessibility() override;
    Pasteboard& pasteboard() override;
    EventServices& events() override;
    Workspace& workspace() override;
    Scheduling& scheduling() override;

    /// The items that each call of `Pasteboard::items` returned, in the order of the calls.
    [[nodiscard]] const std::vector<ToldItems>& told() const;

private:
    class Services;
    std::unique_ptr<Services> services_;
    Platform& platform_;
};

}  // namespace lomaris::test
