#pragma once

#include "tests/support/process.h"

#include <nlohmann/json.hpp>

#include <string>

namespace lomaris::test {

// A caller of the tool, which reads the selection and sends it back with another text.

/// The results of `replace-selection-request` if it has replaced, and if the selection has changed.
extern const ProcessResult requestCarriedOut;
extern const ProcessResult requestRefused;

/// The selection in front, as `read-selection --json` prints it. Throws if that fails.
[[nodiscard]] nlohmann::json readSelection();

/// The request to replace the selection, with all expectations that `readSelection` provides.
[[nodiscard]] nlohmann::json requestFor(const nlohmann::json& selection, const std::string& replacement);

/// Sends the request.
[[nodiscard]] ProcessResult replaceIfCurrent(const nlohmann::json& request);

}  // namespace lomaris::test
