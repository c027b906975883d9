#pragma once

#include "json/json_writer.h"
#include "tests/fuzz/fuzz_target.h"
#include "text/utf8.h"

#include <string>
#include <string_view>

namespace lomaris::test {

/// What `decode` accepts is written as JSON that it accepts too, as the same record, with slashes escaped or not.
template <typename Decode>
void requireRoundTrip(std::string_view bytes, const Decode& decode) {
    const auto record = decode(bytes);
    if (!record) {
        return;
    }
    for (const SlashEscaping slashes : {SlashEscaping::escaped, SlashEscaping::unescaped}) {
        const std::string written = encodeJson(*record, slashes);
        require(isValidUtf8(written), "JSON is written as UTF-8");
        require(decode(written) == record, "a record survives being written and read");
    }
}

}  // namespace lomaris::test
