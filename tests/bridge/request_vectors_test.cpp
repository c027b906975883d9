#include "bridge/execute.h"

#include "platform/simulated/simulated_desktop.h"
#include "tests/support/vectors.h"
#include "text/text.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

constexpr std::string_view invalidJson = "Lomaris macOS bridge: Guarded replacement request is invalid JSON.\n";
constexpr std::string_view emptyText = "Lomaris macOS bridge: Expected and replacement text must not be empty.\n";
constexpr std::string_view noInput = "Lomaris macOS bridge: Expected a guarded replacement request on stdin.\n";
constexpr std::string_view notInFront =
    "Lomaris macOS bridge: The original selection changed while Lomaris was working, so your document was left "
    "untouched. Select the text and try again.\n";

/// Streams with one input; collects what is written.
class RequestStreams final : public StandardStreams {
public:
    explicit RequestStreams(std::string input) : input_(std::move(input)) {}

    std::optional<std::string> readInput() override { return input_; }
    bool writeOutput(std::string_view bytes) override {
        output += bytes;
        return true;
    }
    void writeError(std::string_view bytes) override { error += bytes; }

    std::string output;
    std::string error;

private:
    std::string input_;
};

struct Outcome {
    int status = 0;
    std::string output;
    std::string error;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
    return stream << "status " << outcome.status << ", output \"" << outcome.output << "\", error \"" << outcome.error
                  << '"';
}

/// Runs the tool on `request` with no frontmost application, so every valid request is refused.
Outcome outcomeOf(std::string request) {
    SimulatedDesktop desktop;
    RequestStreams streams(std::move(request));
    const std::vector<Text> arguments = {u"replace-selection-request"};
    const int status = runCommandLine(arguments, desktop, streams);
    return {status, streams.output, streams.error};
}

std::string_view expectedErrorFor(const std::string& request, const nlohmann::json& expected) {
    if (request.empty()) {
        return noInput;
    }
    if (!expected.at("accepted").get<bool>()) {
        return invalidJson;
    }
    const bool hasEmptyText =
        test::bytesOf(expected.at("expectedText")).empty() || test::bytesOf(expected.at("replacementText")).empty();
    return hasEmptyText ? emptyText : notInFront;
}

TEST(ReplaceSelectionRequest, MatchesEveryReferenceCase) {
    for (const auto& vector : test::readVectors("request-json")) {
        const std::string request = test::bytesOf(vector.value.at("bytes"));
        const Outcome expected{1, "", std::string(expectedErrorFor(request, vector.value.at("expected")))};
        EXPECT_EQ(outcomeOf(request), expected) << "line " << vector.line;
    }
}

TEST(ReplaceSelectionRequest, DistinguishesMissingInvalidAndEmptyRequests) {
    const auto request = [](const std::string& expectedText, const std::string& replacementText) {
        return R"({"expectedText":")" + expectedText + R"(","replacementText":")" + replacementText +
               R"(","expectedProcessIdentifier":812,"expectedInputActivity":{"keyDownCount":1,)" +
               R"("leftMouseDownCount":2,"rightMouseDownCount":3,"otherMouseDownCount":4}})";
    };
    struct Example {
        std::string input;
        std::string_view error;
    };
    const std::vector<Example> examples = {
        {"", noInput},
        {" ", invalidJson},
        {"{}", invalidJson},
        {"\xFF", invalidJson},
        {std::string(100000, '['), invalidJson},
        {request("", "red fox") + "x", invalidJson},
        {request("", "red fox"), emptyText},
        {request("brown fox", ""), emptyText},
        {request("", ""), emptyText},
        {request(" ", " "), notInFront},
    };
    for (const auto& [input, error] : examples) {
        EXPECT_EQ(outcomeOf(input), (Outcome{1, "", std::string(error)})) << input.substr(0, 80);
    }
}

}  // namespace
}  // namespace lomaris
