#include "bridge/command_line_options.h"

#include "accessibility/model/bridge_error.h"
#include "tests/support/vectors.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace lomaris {
namespace {

using Arguments = std::vector<std::string>;

BridgeCommand parse(const Arguments& arguments) {
    std::vector<Text> texts;
    for (const auto& argument : arguments) {
        texts.push_back(textFromUtf8(argument));
    }
    return CommandLineOptions::parse(texts);
}

/// Returns the message of the error, or "(accepted)" if the arguments are accepted.
std::string refusalOf(const Arguments& arguments) {
    try {
        static_cast<void>(parse(arguments));
        return "(accepted)";
    } catch (const BridgeError& error) {
        EXPECT_EQ(error.errorCase(), BridgeError::Case::invalidArguments);
        return utf8FromText(error.errorDescription());
    }
}

std::string shown(const Arguments& arguments) {
    std::string text = "[";
    for (const auto& argument : arguments) {
        text += (text.size() == 1 ? "'" : ", '") + argument + "'";
    }
    return text + "]";
}

TEST(CommandLine, AcceptsEveryDocumentedCommand) {
    struct Example {
        Arguments arguments;
        BridgeCommand command;
    };
    using namespace command;
    const std::vector<Example> examples = {
        {{}, Help{}},
        {{"-h"}, Help{}},
        {{"--help"}, Help{}},
        {{"--help", "--bogus"}, Help{}},
        {{"-h", "read-selection", "--delay"}, Help{}},
        {{"permission-status"}, PermissionStatus{false}},
        {{"permission-status", "--prompt"}, PermissionStatus{true}},
        {{"permission-status", "--prompt", "--prompt"}, PermissionStatus{true}},
        {{"permission-status", "--delay", "0", "--before-chars", "500"}, PermissionStatus{false}},
        {{"permission-status", "--delay", "-0", "--after-chars", "+500"}, PermissionStatus{false}},
        {{"read-selection"}, ReadSelection{0, {500, 500}, false}},
        {{"read-selection", "--json"}, ReadSelection{0, {500, 500}, true}},
        {{"read-selection", "--json", "--json", "--delay", "1", "--delay", "2"}, ReadSelection{2, {500, 500}, true}},
        {{"read-selection", "--before-chars", "10000", "--after-chars", "+7"}, ReadSelection{0, {10000, 7}, false}},
        {{"read-selection", "--before-chars", "-0", "--after-chars", "0"}, ReadSelection{0, {0, 0}, false}},
        {{"read-selection", "--delay", "60"}, ReadSelection{60, {500, 500}, false}},
        {{"read-selection", "--delay", "0"}, ReadSelection{0, {500, 500}, false}},
        {{"read-selection", "--delay", "-0"}, ReadSelection{-0.0, {500, 500}, false}},
        {{"read-selection", "--delay", "1e1"}, ReadSelection{10, {500, 500}, false}},
        {{"read-selection", "--delay", "0x1p3"}, ReadSelection{8, {500, 500}, false}},
        {{"replace-selection"}, ReplaceSelection{0, std::nullopt, {500, 500}}},
        {{"replace-selection", "--replacement", ""}, ReplaceSelection{0, u"", {500, 500}}},
        {{"replace-selection", "--replacement", "--json"}, ReplaceSelection{0, u"--json", {500, 500}}},
        {{"replace-selection", "--replacement", "a", "--replacement", "b"}, ReplaceSelection{0, u"b", {500, 500}}},
        {{"replace-selection", "--before-chars", "20", "--after-chars", "30"},
         ReplaceSelection{0, std::nullopt, {20, 30}}},
        {{"replace-selection-request"}, ReplaceSelectionRequest{0, {500, 500}}},
        {{"replace-selection-request", "--delay", "5", "--before-chars", "1", "--after-chars", "2"},
         ReplaceSelectionRequest{5, {1, 2}}},
        {{"diagnose-selection", "--delay", "1.5"}, DiagnoseSelection{1.5}},
        {{"diagnose-selection", "--before-chars", "500"}, DiagnoseSelection{0}},
        {{"compatibility-check", "--delay", ".5"}, CompatibilityCheck{0.5}},
        {{"compatibility-check", "--after-chars", "500"}, CompatibilityCheck{0}},
    };
    for (const auto& example : examples) {
        EXPECT_EQ(parse(example.arguments), example.command) << shown(example.arguments);
    }
}

TEST(CommandLine, RefusesWithTheMessageOfTheFirstError) {
    struct Example {
        Arguments arguments;
        std::string message;
    };
    const std::string delay = "--delay must be between 0 and 60 seconds.";
    const std::string before = "--before-chars must be between 0 and 10000.";
    const std::string after = "--after-chars must be between 0 and 10000.";
    const std::string permission = "permission-status only accepts --prompt.";
    const std::string read = "read-selection does not accept that option.";
    const std::string replace = "replace-selection does not accept that option.";
    const std::string request = "replace-selection-request accepts context limits and --delay only.";
    const std::string diagnose = "diagnose-selection only accepts --delay.";
    const std::string check = "compatibility-check only accepts --delay.";
    const std::vector<Example> examples = {
        {{"bogus"}, "Unknown command \"bogus\"."},
        {{""}, "Unknown command \"\"."},
        {{"Read-Selection"}, "Unknown command \"Read-Selection\"."},
        {{"read"}, "Unknown command \"read\"."},
        {{"bogus", "--delay", "99"}, delay},
        {{"bogus", "--bogus"}, "Unknown option \"--bogus\"."},
        {{"--json", "read-selection"}, "Unknown option \"read-selection\"."},
        {{"--json"}, "Unknown command \"--json\"."},
        {{"read-selection", "--help"}, "Unknown option \"--help\"."},
        {{"read-selection", "-h"}, "Unknown option \"-h\"."},
        {{"read-selection", "--frobnicate"}, "Unknown option \"--frobnicate\"."},
        {{"read-selection", "--delay=2"}, "Unknown option \"--delay=2\"."},
        {{"read-selection", "--Json"}, "Unknown option \"--Json\"."},
        {{"read-selection", "--jso"}, "Unknown option \"--jso\"."},
        {{"read-selection", ""}, "Unknown option \"\"."},
        {{"read-selection", "bad\xff"}, "Unknown option \"bad\ufffd\"."},
        {{"read-selection", "--delay"}, "--delay requires a value."},
        {{"read-selection", "--before-chars"}, "--before-chars requires a value."},
        {{"read-selection", "--after-chars"}, "--after-chars requires a value."},
        {{"read-selection", "--replacement"}, "--replacement requires a value."},
        {{"read-selection", "--delay", "--json"}, delay},
        {{"read-selection", "--delay", "60.5"}, delay},
        {{"read-selection", "--delay", "60.0001"}, delay},
        {{"read-selection", "--delay", "-1"}, delay},
        {{"read-selection", "--delay", "inf"}, delay},
        {{"read-selection", "--delay", "nan"}, delay},
        {{"read-selection", "--delay", ""}, delay},
        {{"read-selection", "--delay", " 1"}, delay},
        {{"read-selection", "--delay", "1 "}, delay},
        {{"read-selection", "--before-chars", "10001"}, before},
        {{"read-selection", "--before-chars", "-1"}, before},
        {{"read-selection", "--before-chars", "+-0"}, before},
        {{"read-selection", "--before-chars", "1.5"}, before},
        {{"read-selection", "--before-chars", ""}, before},
        {{"read-selection", "--before-chars", "99999999999999999999"}, before},
        {{"read-selection", "--after-chars", "10001"}, after},
        {{"read-selection", "--after-chars", "+-1"}, after},
        {{"read-selection", "--before-chars", "x", "--delay", "99"}, before},
        {{"permission-status", "--json"}, permission},
        {{"permission-status", "--delay", "1"}, permission},
        {{"permission-status", "--before-chars", "499"}, permission},
        {{"permission-status", "--after-chars", "501"}, permission},
        {{"permission-status", "--replacement", ""}, permission},
        {{"read-selection", "--prompt"}, read},
        {{"read-selection", "--replacement", "x"}, read},
        {{"replace-selection", "--prompt"}, replace},
        {{"replace-selection", "--json"}, replace},
        {{"diagnose-selection", "--prompt"}, diagnose},
        {{"diagnose-selection", "--json"}, diagnose},
        {{"diagnose-selection", "--before-chars", "0"}, diagnose},
        {{"diagnose-selection", "--after-chars", "0"}, diagnose},
        {{"diagnose-selection", "--replacement", "x"}, diagnose},
        {{"compatibility-check", "--prompt"}, check},
        {{"compatibility-check", "--json"}, check},
        {{"compatibility-check", "--before-chars", "0"}, check},
        {{"compatibility-check", "--after-chars", "0"}, check},
        {{"compatibility-check", "--replacement", "x"}, check},
        {{"replace-selection-request", "--prompt"}, request},
        {{"replace-selection-request", "--json"}, request},
        {{"replace-selection-request", "--replacement", "x"}, request},
    };
    for (const auto& example : examples) {
        EXPECT_EQ(refusalOf(example.arguments), example.message) << shown(example.arguments);
    }
}

TEST(CommandLine, RepairsIllFormedArgumentsInMessages) {
    for (const auto& vector : test::readVectors("utf8-repair")) {
        const std::string repaired = test::bytesOf(vector.value.at("expected").at("utf8"));
        EXPECT_EQ(refusalOf({"read-selection", "." + test::bytesOf(vector.value.at("bytes"))}),
                  "Unknown option \"." + repaired + "\".")
            << "line " << vector.line;
    }
}

TEST(CommandLine, ReadsNumbersAsInEveryReferenceCase) {
    for (const auto& vector : test::readVectors("number-text")) {
        const std::string bytes = test::bytesOf(vector.value.at("bytes"));
        const auto& expected = vector.value.at("expected");
        const auto number = CommandLineOptions::parseDouble(textFromUtf8(bytes));
        ASSERT_EQ(number.has_value(), !expected.at("bits").is_null()) << "line " << vector.line << ": " << bytes;
        if (number) {
            const auto digits = expected.at("bits").get<std::string>();
            std::uint64_t bits = 0;
            std::from_chars(digits.data(), digits.data() + digits.size(), bits, 16);
            if (std::isnan(std::bit_cast<double>(bits))) {
                EXPECT_TRUE(std::isnan(*number)) << "line " << vector.line << ": " << bytes;
            } else {
                EXPECT_EQ(std::bit_cast<std::uint64_t>(*number), bits) << "line " << vector.line << ": " << bytes;
            }
        }
        const bool accepted = refusalOf({"read-selection", "--delay", bytes}) == "(accepted)";
        EXPECT_EQ(accepted, expected.at("inRange").get<bool>()) << "line " << vector.line << ": " << bytes;
    }
}

TEST(CommandLine, RejectsCharactersThatResembleDigits) {
    // The lower byte of U+0135 and U+0235 is the digit 5.
    for (const std::string value : {"\xC4\xB5", "\xC8\xB5", "1\xC4\xB5"}) {
        EXPECT_EQ(refusalOf({"read-selection", "--after-chars", value}), "--after-chars must be between 0 and 10000.");
        EXPECT_EQ(refusalOf({"read-selection", "--delay", value}), "--delay must be between 0 and 60 seconds.");
    }
}

TEST(CommandLine, ReadsLimitsAsInEveryReferenceCase) {
    for (const auto& vector : test::readVectors("integer-text")) {
        const std::string bytes = test::bytesOf(vector.value.at("bytes"));
        const auto& expected = vector.value.at("expected");
        if (!expected.at("inRange").get<bool>()) {
            EXPECT_EQ(refusalOf({"read-selection", "--after-chars", bytes}),
                      "--after-chars must be between 0 and 10000.")
                << "line " << vector.line << ": " << bytes;
            continue;
        }
        EXPECT_EQ(CommandLineOptions::parseLimit(textFromUtf8(bytes), u"--after-chars"),
                  expected.at("value").get<std::int64_t>())
            << "line " << vector.line << ": " << bytes;
    }
}

TEST(CommandLine, HasTheDocumentedUsageText) {
    const std::vector<std::string> lines = {
        "Lomaris macOS Accessibility bridge",
        "",
        "Usage:",
        "  lomaris-macos-bridge permission-status [--prompt]",
        "  lomaris-macos-bridge read-selection [--delay <seconds>] [--json]",
        "  lomaris-macos-bridge replace-selection [--replacement <text>] [--delay <seconds>]",
        "  lomaris-macos-bridge replace-selection-request [--delay <seconds>]",
        "  lomaris-macos-bridge diagnose-selection [--delay <seconds>]",
        "  lomaris-macos-bridge compatibility-check [--delay <seconds>]",
        "",
        "Options:",
        "  --delay <seconds>          Wait before accessing the focused application",
        "  --before-chars <number>    Context before selection (default: 500)",
        "  --after-chars <number>     Context after selection (default: 500)",
        "  --json                     Emit structured selection data",
        "  --prompt                   Ask macOS for Accessibility permission",
        "  --replacement <text>       Replacement text; reads UTF-8 stdin when omitted",
        "  -h, --help                 Show this help",
        "",
        "The --delay option lets you invoke the bridge in Terminal and switch to the",
        "target application before the accessibility operation runs.",
    };
    ASSERT_EQ(lines.size(), 21U);
    std::string expected = lines.front();
    for (std::size_t line = 1; line < lines.size(); ++line) {
        expected += "\n" + lines[line];
    }
    EXPECT_EQ(utf8FromText(CommandLineOptions::usage()), expected);
    EXPECT_EQ(expected.size(), 1048U);
}

}  // namespace
}  // namespace lomaris
