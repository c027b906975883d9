#include "tests/faults/writing_promises.h"

#include "bridge/execute.h"
#include "tests/faults/last_look.h"

#include <algorithm>
#include <cstddef>

namespace lomaris::test {
namespace {

template <typename Predicate>
std::size_t countOf(const Run& run, const Predicate& predicate) {
    return static_cast<std::size_t>(std::count_if(run.happenings.begin(), run.happenings.end(), predicate));
}

/// True if the tool cannot post a key after this.
bool keepsFromPosting(const Happening& happening) {
    return happening.fate == Fate::refused &&
           (happening.isCall("requestPostEventAccess") || happening.isCall("createKeyStroke"));
}

/// The first event that changes the target's document, and what the tool saw before it.
struct Write {
    bool isDirect = false;
    std::optional<Look> last;
    std::optional<Look> deciding;

    [[nodiscard]] bool wasLookedAt() const { return last && deciding; }
};

std::optional<Write> firstWrite(const Run& run) {
    const auto write = std::find_if(run.happenings.begin(), run.happenings.end(), [](const Happening& happening) {
        return isPaste(happening) || isDelete(happening) ||
               (isAttemptToWrite(happening) && happening.fate != Fate::refused);
    });
    if (write == run.happenings.end()) {
        return std::nullopt;
    }
    const auto position = static_cast<std::size_t>(write - run.happenings.begin());
    return Write{.isDirect = isAttemptToWrite(*write),
                 .last = lastLookBefore(run.happenings, position),
                 .deciding = decidingLookBefore(run.happenings, position)};
}

/// True if only the input counters show that the selection is still that of the request. They cannot if the selection
/// was copied and no range is expected, because the copy itself changes the counters.
bool onlyInputTells(const Scenario& scenario, const Write& write) {
    const bool isRangeRead = write.deciding->range.has_value();
    return scenario.world.expectsRange ? !isRangeRead : write.isDirect || isRangeRead;
}

/// True if the first sample of the four input counters succeeded and was taken before the user changed any of them.
bool inputWasSeenUntouched(const Scenario& scenario, const Run& run) {
    constexpr std::size_t counters = 4;
    const auto moved = scenario.disturbance ? inputOf(scenario.disturbance->act) : std::nullopt;
    bool userActed = false;
    std::size_t sampled = 0;
    for (const Happening& happening : run.happenings) {
        userActed = userActed || happening.who == Who::user;
        if (!happening.isCall("inputCounter")) {
            continue;
        }
        const bool hasMoved = userActed && moved && happening.about == nameOf(*moved);
        if (hasMoved || happening.fate != Fate::answered) {
            return false;
        }
        if (++sampled == counters) {
            return true;
        }
    }
    return false;
}

}  // namespace

Broken writesOnceAndReportsIt(const Scenario& scenario, const Run& run) {
    const std::size_t attempts = countOf(run, isAttemptToWrite);
    const std::size_t pastes = countOf(run, isPaste);
    if (!isReplacement(scenario.command)) {
        return attempts + pastes + countOf(run, isDelete) == 0 ? Broken() : "a command that only reads writes nothing";
    }
    if (attempts + pastes > 1) {
        return "a selection is written once, by one way";
    }
    const std::size_t done = countOf(run, [](const Happening& happening) {
        return isAttemptToWrite(happening) && happening.fate == Fate::answered;
    });
    if (run.status == exit_status::success) {
        return done + pastes == 1 ? Broken() : "success was reported and nothing written";
    }
    // The tool must report a failure if the reply to its write was lost, which `done` does not count, or if the target
    // had quit before the write.
    if (pastes > 0 || (done > 0 && !scenario.isDisturbedBy(UserAct::quitsTheTarget))) {
        return "something was written and a failure reported";
    }
    return std::nullopt;
}

Broken deletesOnlyForAWebAddress(const Scenario& scenario, const Run& run) {
    if (!isReplacement(scenario.command)) {
        return std::nullopt;
    }
    const bool mustDelete = scenario.world.replacesByWebAddress;
    if (countOf(run, isDelete) > (mustDelete ? 1U : 0U)) {
        return "a selection is deleted once, and for a web address alone";
    }
    const auto end = run.happenings.end();
    const auto deletion = std::find_if(run.happenings.begin(), end, isDelete);
    const auto paste = std::find_if(run.happenings.begin(), end, isPaste);
    if (mustDelete && paste != end && deletion >= paste) {
        return "a web address was pasted over a selection that was not deleted";
    }
    // After the deletion, the tool must paste unless a key cannot be posted.
    if (deletion != end && paste == end && std::none_of(deletion, end, keepsFromPosting)) {
        return "a selection was deleted and nothing pasted";
    }
    return std::nullopt;
}

Broken writesOverWhatItSaw(const Scenario& /*scenario*/, const Run& run) {
    const auto write = firstWrite(run);
    if (!write) {
        return std::nullopt;
    }
    if (!write->wasLookedAt()) {
        return "a selection was written that had not been looked at";
    }
    if (write->last->selectedText != write->deciding->selectedText) {
        return "another text was selected at the last look";
    }
    if (write->last->method == Look::Method::read && write->last->range != write->deciding->range) {
        return "the selection stood elsewhere at the last look";
    }
    return std::nullopt;
}

Broken writesOverWhatWasExpected(const Scenario& scenario, const Run& run) {
    if (scenario.command != Command::replaceIfCurrent) {
        return std::nullopt;
    }
    const auto write = firstWrite(run);
    if (!write || !write->wasLookedAt()) {
        return std::nullopt;
    }
    const Look& last = *write->last;
    if (last.selectedText != run.targetBefore.selectedText()) {
        return "another text was selected than the request expected";
    }
    const bool isRangeKnown = last.method == Look::Method::read && last.range && scenario.world.expectsRange;
    if (isRangeKnown && *last.range != run.targetBefore.selection) {
        return "the selection stood elsewhere than the request expected";
    }
    if (onlyInputTells(scenario, *write) && !inputWasSeenUntouched(scenario, run)) {
        return "nothing showed that the user had not touched the selection";
    }
    return std::nullopt;
}

}  // namespace lomaris::test
