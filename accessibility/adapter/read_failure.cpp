#include "accessibility/adapter/read_failure.h"

namespace lomaris {

std::int64_t readFailureTraceValue(const BridgeError& error) {
    switch (error.errorCase()) {
        case BridgeError::Case::noTextSelected:
            return 1;
        case BridgeError::Case::selectedTextUnavailable:
            return 2;
        case BridgeError::Case::focusedElementUnavailable:
            return 3;
        default:
            return otherReadFailure;
    }
}

bool maySelectWithoutShowing(const BridgeError& error) { return readFailureTraceValue(error) != otherReadFailure; }

}  // namespace lomaris
