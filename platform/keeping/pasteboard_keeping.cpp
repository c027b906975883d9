#include "platform/keeping/pasteboard_keeping.h"

#include <algorithm>
#include <chrono>

namespace lomaris::keeping {

namespace {

/// How long after the end of the grace wait the partner may still restore: its own wait begins a little later than the
/// keeper's, and its run loop may be at work.
constexpr Duration timeForPartnerToRestore = std::chrono::milliseconds(500);

/// Applies one event to the state; whether the saved contents are to be restored because of it. What only time decides
/// comes afterwards.
class Transition {
public:
    Transition(State& state, Moment now) : state_(state), now_(now) {}

    bool operator()(const event::Began& /*event*/) const {
        // What a paste has saved and not restored stays protected until the next `Protected`.
        state_.isUnderWay = true;
        state_.holds = true;
        state_.copyDeadline.reset();
        state_.paste.reset();
        return false;
    }

    bool operator()(const event::Protected& /*event*/) const {
        state_.isProtecting = true;
        return false;
    }

    bool operator()(const event::Published& /*event*/) const {
        state_.owner = Owner::keeper;
        state_.isTextRead = false;
        state_.paste.reset();
        return false;
    }

    bool operator()(const event::CopyExpected& event) const {
        state_.copyDeadline = now_ + event.wait;
        return false;
    }

    bool operator()(const event::PasteExpected& event) const {
        if (state_.owner == Owner::keeper) {
            // A read before the first key was not the target's.
            state_.isTextRead = state_.isTextRead && state_.paste;
            state_.paste = State::Paste{now_ + event.minimumWait, now_ + event.graceWait};
        }
        return false;
    }

    bool operator()(const event::Ended& /*event*/) const {
        state_.isUnderWay = false;
        state_.isProtecting = false;
        state_.copyDeadline.reset();
        return false;
    }

    bool operator()(const event::PartnerGone& /*event*/) const {
        state_.hasPartner = false;
        state_.isUnderWay = false;
        if (!state_.isProtecting || state_.paste) {
            return false;
        }
        state_.isProtecting = false;
        if (state_.owner == Owner::other) {
            state_.copyDeadline.reset();
            return false;
        }
        return true;
    }

    bool operator()(const event::OwnerChanged& event) const {
        const bool isExpectedCopy = event.owner == Owner::target && state_.copyDeadline && now_ < *state_.copyDeadline;
        // What the target copies at any other time is the user's.
        state_.owner = event.owner == Owner::target && !isExpectedCopy ? Owner::other : event.owner;
        if (state_.owner == Owner::keeper) {
            return false;
        }
        // Whatever a target was to paste is gone.
        state_.paste.reset();
        if (state_.hasPartner) {
            return false;
        }
        const bool mustRestore = isExpectedCopy || (state_.isProtecting && state_.owner == Owner::nobody);
        state_.isProtecting = false;
        if (!mustRestore) {
            state_.copyDeadline.reset();
        }
        return mustRestore;
    }

    bool operator()(const event::TextRead& /*event*/) const {
        state_.isTextRead = true;
        return false;
    }

    bool operator()(const event::TimePassed& /*event*/) const { return false; }

private:
    State& state_;
    Moment now_;
};

/// Ends what time has ended; whether the saved contents are to be restored now.
bool passTime(State& state, Moment now) {
    if (state.copyDeadline && now >= *state.copyDeadline) {
        state.copyDeadline.reset();
    }
    if (state.hasPartner || !state.isProtecting || !state.paste) {
        return false;
    }
    if (now < state.paste->latest && (!state.isTextRead || now < state.paste->earliest)) {
        return false;
    }
    state.isProtecting = false;
    state.paste.reset();
    return true;
}

/// When others may use the pasteboard although nothing was restored after the paste. There must be one.
Moment releaseOfUnrestored(const State& state) {
    return state.hasPartner ? state.paste->latest + timeForPartnerToRestore : state.paste->latest;
}

/// Whether no other operation may clear the pasteboard yet.
bool mustHold(const State& state, Moment now) {
    if (!state.holds) {
        return false;
    }
    if (state.paste) {
        // The reader may have been a clipboard manager, and the target may still be about to read.
        const bool isPasteOver = state.isTextRead && now >= state.paste->earliest;
        // If the saved contents are still to be restored after the paste, until then.
        return state.isProtecting ? now < releaseOfUnrestored(state) : now < state.paste->latest && !isPasteOver;
    }
    return state.isUnderWay || (!state.hasPartner && state.copyDeadline);
}

std::optional<Moment> nextMoment(const State& state, Moment now) {
    std::optional<Moment> next;
    const auto consider = [&](Moment moment) {
        if (moment > now && (!next || moment < *next)) {
            next = moment;
        }
    };
    if (!state.hasPartner && state.copyDeadline) {
        consider(*state.copyDeadline);
    }
    if (state.paste && (state.holds || state.isProtecting)) {
        consider(state.paste->latest);
        consider(releaseOfUnrestored(state));
        if (state.isTextRead) {
            consider(state.paste->earliest);
        }
    }
    return next;
}

}  // namespace

Decision decide(State state, const Event& event, Moment now) {
    Decision decision;
    decision.restores = std::visit(Transition(state, now), event);
    decision.restores = passTime(state, now) || decision.restores;
    if (decision.restores) {
        state.owner = Owner::keeper;
    }
    state.holds = mustHold(state, now);
    decision.isDone = !state.hasPartner && !state.holds && !state.isProtecting && state.owner != Owner::keeper;
    decision.wakeAt = nextMoment(state, now);
    decision.state = state;
    return decision;
}

}  // namespace lomaris::keeping
