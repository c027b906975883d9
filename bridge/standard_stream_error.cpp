#include "bridge/standard_stream_error.h"

namespace lomaris {

Text StandardStreamError::errorDescription() const { return u"Could not write to standard output."; }

}  // namespace lomaris
