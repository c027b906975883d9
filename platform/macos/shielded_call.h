#pragma once

#include <functional>
#include <utility>

namespace lomaris::macos {

/// Runs `call` with an autorelease pool of its own and stops whatever exception leaves it, an Objective-C one as well:
/// the boundary never throws, and nothing may unwind through frames of the platform. Answers whether `call` returned.
/// Any thread.
bool runShielded(const std::function<void()>& call) noexcept;

/// What `call` answers under that shield, or `failure` where an exception ended it.
template <typename Answer, typename Call>
[[nodiscard]] Answer answerOf(const Call& call, Answer failure = {}) {
    runShielded([&] { failure = call(); });
    return failure;
}

}  // namespace lomaris::macos
