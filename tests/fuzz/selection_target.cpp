// Bytes are decoded to a selection or refused.

#include "accessibility/model/selection_json.h"
#include "tests/fuzz/round_trip.h"

namespace lomaris::test {

void tryInput(std::string_view bytes) {
    requireRoundTrip(bytes, [](std::string_view json) { return decodeSelectionPayload(json); });
}

}  // namespace lomaris::test
