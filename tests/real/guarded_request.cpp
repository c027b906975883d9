#include "tests/real/guarded_request.h"

#include <stdexcept>

namespace lomaris::test {

using nlohmann::json;

const ProcessResult requestCarriedOut{0, "replaced\n", ""};
const ProcessResult requestRefused{
    1, "",
    "Lomaris macOS bridge: The original selection changed while Lomaris was working, so your document was left "
    "untouched. Select the text and try again.\n"};

json readSelection() {
    const ProcessResult result = runTool({"read-selection", "--json"});
    if (result.status != 0) {
        throw std::runtime_error("nothing was read: " + result.error);
    }
    return json::parse(result.output);
}

json requestFor(const json& selection, const std::string& replacement) {
    json request = {{"expectedText", selection.at("selectedText")},
                    {"expectedProcessIdentifier", selection.at("processIdentifier")},
                    {"expectedInputActivity", selection.at("inputActivity")},
                    {"replacementText", replacement}};
    if (selection.contains("bundleIdentifier")) {
        request["expectedBundleIdentifier"] = selection["bundleIdentifier"];
    }
    if (selection.contains("selectedRange")) {
        request["expectedSelectedRange"] = selection["selectedRange"];
    }
    return request;
}

ProcessResult replaceIfCurrent(const json& request) {
    ProcessOptions options;
    options.input = request.dump();
    return runTool({"replace-selection-request"}, options);
}

}  // namespace lomaris::test
