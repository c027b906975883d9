#include "platform/macos/shielded_call.h"

namespace lomaris::macos {

bool runShielded(const std::function<void()>& call) noexcept {
    // The pool is the outer one: an exception that went through it would leave it undrained.
    @autoreleasepool {
        @try {
            call();
            return true;
        } @catch (...) {
            return false;
        }
    }
}

}  // namespace lomaris::macos
