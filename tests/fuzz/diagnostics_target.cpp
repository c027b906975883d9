// Bytes are decoded to one of the two diagnostic records or refused.

#include "accessibility/model/diagnostics_json.h"
#include "tests/fuzz/round_trip.h"

namespace lomaris::test {

void tryInput(std::string_view bytes) {
    requireRoundTrip(bytes, [](std::string_view json) { return decodeAccessibilityDiagnostic(json); });
    requireRoundTrip(bytes, [](std::string_view json) { return decodeCompatibilityDiagnostic(json); });
}

}  // namespace lomaris::test
