#pragma once

#include <functional>
#include <utility>

namespace lomaris::macos {

/// Runs `call` with its own autorelease pool and catches every exception, including Objective-C ones: the boundary must
/// not throw, and no exception may unwind through frames of the platform. True if `call` returned normally. Any thread.
bool runShielded(const std::function<void()>& call) noexcept;

/// Runs `call` shielded and returns its result, or `failure` if an exception ended it.
template <typename Answer, typename Call>
[[nodiscard]] Answer answerOf(const Call& call, Answer failure = {}) {
    runShielded([&] { failure = call(); });
    return failure;
}

}  // namespace lomaris::macos
