#include "accessibility/model/read_failure.h"

namespace lomaris {

ReadFailure readFailureOf(const BridgeError& error) {
    switch (error.errorCase()) {
        case BridgeError::Case::noTextSelected:
            return ReadFailure::noTextSelected;
        case BridgeError::Case::selectedTextUnavailable:
            return ReadFailure::selectedTextUnavailable;
        case BridgeError::Case::focusedElementUnavailable:
            return ReadFailure::focusedElementUnavailable;
        default:
            return ReadFailure::other;
    }
}

bool maySelectWithoutShowing(ReadFailure failure) {
    return failure == ReadFailure::noTextSelected || failure == ReadFailure::selectedTextUnavailable ||
           failure == ReadFailure::focusedElementUnavailable;
}

}  // namespace lomaris
