#include "platform/macos/shielded_call.h"

namespace lomaris::macos {

bool runShielded(const std::function<void()>& call) noexcept {
    // The pool encloses the handler, because an exception that left the pool would skip draining it.
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
