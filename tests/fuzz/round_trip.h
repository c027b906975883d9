#pragma once

#include "json/json_writer.h"
#include "tests/fuzz/fuzz_target.h"
#include "text/utf8.h"

#include <string>
#include <string_view>

namespace lomaris::test {

/// Requires that a record that `decode` accepts is encoded as JSON that decodes to the same record, with slashes
/// escaped or not.
template <typename Decode>
void requireRoundTrip(std::string_view bytes, const Decode& decode) {
    const auto record = decode(bytes);
    if (!record) {
        return;
    }
    for (const SlashEscaping slashes : {SlashEscaping::escaped, SlashEscaping::unescaped}) {
        const std::string written = encodeJson(*record, slashes);
        require(isValidUtf8(written), "JSON is well-formed UTF-8");
        require(decode(written) == record, "a record survives a round trip");
    }
}

}  // namespace lomaris::test
