#pragma once

#include "platform/pasteboard.h"
#include "platform/scheduling.h"
#include "text/text.h"

#include <chrono>
#include <future>
#include <optional>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace lomaris::test {

/// Runs the run loop while `action` runs, for an action that waits for this process. Returns the action's result.
template <typename Action>
auto whileTurning(Scheduling& scheduling, Action action) {
    auto result = std::async(std::launch::async, std::move(action));
    while (result.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        scheduling.runLoopSlice(std::chrono::milliseconds(2));
    }
    return result.get();
}

/// Actions of another program. Each call starts one, returns when it has ended, and throws if it fails.
namespace other_program {

/// Writes one item with these types and bytes to the pasteboard.
void copy(const std::vector<std::pair<PasteboardType, Bytes>>& item);

/// The bytes of `type`; nullopt if there are none. If this process promised them, it must run its run loop in the
/// meantime.
[[nodiscard]] std::optional<Bytes> read(const PasteboardType& type);

/// The name of a running application, as another program sees it.
[[nodiscard]] Text nameOf(pid_t process);

/// Presses F18, which has no effect in any application.
void pressHarmlessKey();

}  // namespace other_program

}  // namespace lomaris::test
