// Bytes are decoded to a guarded replacement request or refused.

#include "accessibility/model/guarded_replacement_request_json.h"
#include "tests/fuzz/round_trip.h"

namespace lomaris::test {

void tryInput(std::string_view bytes) {
    requireRoundTrip(bytes, [](std::string_view json) { return decodeGuardedReplacementRequest(json); });
}

}  // namespace lomaris::test
