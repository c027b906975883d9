#include "bridge/bridge_input_error.h"

namespace lomaris {

Text BridgeInputError::errorDescription() const { return u"Expected a guarded replacement request on stdin."; }

}  // namespace lomaris
