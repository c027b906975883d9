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

/// Has the run loop turn while `action` runs, as another program that waits for this one; what it answered.
template <typename Action>
auto whileTurning(Scheduling& scheduling, Action action) {
    auto result = std::async(std::launch::async, std::move(action));
    while (result.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        scheduling.runLoopSlice(std::chrono::milliseconds(2));
    }
    return result.get();
}

/// What another program does; each call starts one and returns when it has ended. They throw where it fails.
namespace other_program {

/// Puts one item with these types and bytes on the pasteboard.
void copy(const std::vector<std::pair<PasteboardType, Bytes>>& item);

/// The bytes of `type`, or nothing where there are none. This process must turn its run loop meanwhile where it
/// promised them.
[[nodiscard]] std::optional<Bytes> read(const PasteboardType& type);

/// The name of a running application, as another program is told it.
[[nodiscard]] Text nameOf(pid_t process);

/// Presses F18, which does nothing anywhere.
void pressHarmlessKey();

}  // namespace other_program

}  // namespace lomaris::test
