#pragma once

#include "tests/support/process.h"

#include <nlohmann/json.hpp>

#include <string>

namespace lomaris::test {

// What a caller of the tool does: it keeps what was read, and sends it back with another text.

/// What `replace-selection-request` answers where it replaced, and where something was not as it had been.
extern const ProcessResult requestCarriedOut;
extern const ProcessResult requestRefused;

/// The selection in front, as `read-selection --json` prints it. Throws where it fails.
[[nodiscard]] nlohmann::json readSelection();

/// The request to replace the selection that was read, with everything in it that `readSelection` knows.
[[nodiscard]] nlohmann::json requestFor(const nlohmann::json& selection, const std::string& replacement);

/// Sends the request.
[[nodiscard]] ProcessResult replaceIfCurrent(const nlohmann::json& request);

}  // namespace lomaris::test
