#include "bridge/command_line_options.h"
#include "bridge/standard_stream_error.h"
#include "tests/bridge/execute_world.h"

#include <chrono>
#include <new>
#include <optional>
#include <string>
#include <vector>

namespace lomaris {
namespace {

using test::Lines;

class Execute : public test::ExecuteWorld {};

/// Streams whose input does not fit into memory.
class OversizedInput final : public test::RecordedStreams {
public:
    std::optional<std::string> readInput() override { throw std::bad_alloc(); }
};

TEST_F(Execute, PrintsTheUsageTextWithoutArguments) {
    EXPECT_EQ(run({}), 0);
    EXPECT_EQ(streams.output, Lines{utf8FromText(CommandLineOptions::usage()) + "\n"});
    EXPECT_EQ(streams.error, Lines());
    EXPECT_EQ(desktop.journal(), Lines());
}

TEST_F(Execute, PrintsTheUsageTextForHelpAndFurtherArguments) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"-h"}, {"--help"}, {"--help", "read-selection"}, {"-h", "--delay", "99"}}) {
        streams.output.clear();
        EXPECT_EQ(run(arguments), 0);
        EXPECT_EQ(streams.output, Lines{utf8FromText(CommandLineOptions::usage()) + "\n"});
    }
    EXPECT_EQ(streams.error, Lines());
    EXPECT_EQ(streams.inputReads, 0);
    EXPECT_EQ(desktop.journal(), Lines());
}

TEST_F(Execute, PrintsGrantedIfTrusted) {
    EXPECT_EQ(run({"permission-status"}), 0);
    EXPECT_EQ(streams.output, Lines{"granted\n"});
    EXPECT_EQ(streams.error, Lines());
}

TEST_F(Execute, PrintsNotGrantedWithStatusTwoIfUntrusted) {
    desktop.setTrusted(false);
    EXPECT_EQ(run({"permission-status"}), 2);
    EXPECT_EQ(streams.output, Lines{"not-granted\n"});
    EXPECT_EQ(streams.error, Lines());
}

TEST_F(Execute, RequestsPermissionWithPromptOption) {
    desktop.setTrusted(false);
    desktop.setPromptAnswer(true);
    EXPECT_EQ(run({"permission-status", "--prompt"}), 0);
    EXPECT_EQ(streams.output, Lines{"granted\n"});
    EXPECT_EQ(desktop.journal(), Lines{"0.000000000 isProcessTrusted(ask) -> true"});
}

TEST_F(Execute, PrintsNotGrantedAfterADeniedPrompt) {
    desktop.setTrusted(false);
    EXPECT_EQ(run({"permission-status", "--prompt"}), 2);
    EXPECT_EQ(streams.output, Lines{"not-granted\n"});
    EXPECT_EQ(desktop.journal(), Lines{"0.000000000 isProcessTrusted(ask) -> false"});
}

TEST_F(Execute, WritesTheSelectedTextAndALineFeedInOneWrite) {
    EXPECT_EQ(run({"read-selection"}), 0);
    EXPECT_EQ(streams.output, Lines{"brown fox\n"});
}

TEST_F(Execute, WritesJsonAndThenOneLineFeed) {
    EXPECT_EQ(run({"read-selection", "--json", "--before-chars", "4"}), 0);
    const std::string json =
        "{\n"
        "  \"applicationName\" : \"Notes\",\n"
        "  \"bundleIdentifier\" : \"com.example.notes\",\n"
        "  \"contextAfter\" : \"\",\n"
        "  \"contextBefore\" : \"ick \",\n"
        "  \"inputActivity\" : {\n"
        "    \"keyDownCount\" : 1,\n"
        "    \"leftMouseDownCount\" : 2,\n"
        "    \"otherMouseDownCount\" : 4,\n"
        "    \"rightMouseDownCount\" : 3\n"
        "  },\n"
        "  \"processIdentifier\" : 812,\n"
        "  \"selectedRange\" : {\n"
        "    \"length\" : 9,\n"
        "    \"location\" : 10\n"
        "  },\n"
        "  \"selectedText\" : \"brown fox\",\n"
        "  \"selectionMethod\" : \"accessibility\",\n"
        "  \"supportsDirectReplacement\" : true\n"
        "}";
    EXPECT_EQ(streams.output, (Lines{json, "\n"}));
}

TEST_F(Execute, ReportsALineFeedThatCannotBeWrittenAfterTheJson) {
    streams.acceptedWrites = 1;
    EXPECT_EQ(run({"read-selection", "--json"}), 1);
    EXPECT_EQ(streams.output.size(), 1U);
    EXPECT_EQ(streams.error, Lines{"Lomaris macOS bridge: Could not write to standard output.\n"});
}

TEST_F(Execute, DoesNotEscapeSlashesInTheSelection) {
    text.setText(u"a/b", TextRange{0, 3});
    EXPECT_EQ(run({"read-selection", "--json"}), 0);
    EXPECT_NE(streams.output.at(0).find("\"selectedText\" : \"a/b\""), std::string::npos) << streams.output.at(0);
}

TEST_F(Execute, CutsEachSideOfTheContextToItsOwnLimit) {
    text.select(TextRange{4, 5});
    EXPECT_EQ(run({"read-selection", "--json", "--before-chars", "2", "--after-chars", "3"}), 0);
    EXPECT_NE(streams.output.at(0).find("\"contextAfter\" : \" br\""), std::string::npos) << streams.output.at(0);
    EXPECT_NE(streams.output.at(0).find("\"contextBefore\" : \"e \""), std::string::npos) << streams.output.at(0);
}

TEST_F(Execute, ReadsAnElementThatCannotBeWritten) {
    text.answersSettable(attribute::selectedText, {AXError::success, false});
    EXPECT_EQ(run({"read-selection"}), 0);
    EXPECT_EQ(streams.output, Lines{"brown fox\n"});
}

TEST_F(Execute, ReadsInAFileManager) {
    const auto finder = desktop.addApplication(1, u"com.apple.finder", u"Finder");
    finder.element().answers(attribute::focusedUIElement, text.element());
    desktop.bringToFront(1);
    EXPECT_EQ(run({"read-selection"}), 0);
    EXPECT_EQ(streams.output, Lines{"brown fox\n"});
}

TEST_F(Execute, WaitsForTheDelayBeforeAnythingElse) {
    EXPECT_EQ(run({"read-selection", "--delay", "1.250000001"}), 0);
    EXPECT_EQ(desktop.now(), std::chrono::nanoseconds(1250000001));
    EXPECT_EQ(desktop.journal().at(0), "0.000000000 sleep(1.250000001)");
    EXPECT_EQ(desktop.journal().at(1).substr(0, 11), "1.250000001");
}

TEST_F(Execute, SleepsForTheLongestDelay) {
    EXPECT_EQ(run({"read-selection", "--delay", "60"}), 0);
    EXPECT_EQ(desktop.now(), std::chrono::minutes(1));
}

TEST_F(Execute, DoesNotSleepForADelayOfZeroOrMinusZero) {
    for (const auto* delay : {"0", "-0"}) {
        EXPECT_EQ(run({"read-selection", "--delay", delay}), 0);
    }
    for (const auto& line : desktop.journal()) {
        EXPECT_EQ(line.find("sleep"), std::string::npos) << line;
    }
}

TEST_F(Execute, WritesOneErrorLineIfAReadFails) {
    desktop.setTrusted(false);
    for (const auto& arguments :
         std::vector<std::vector<std::string>>{{"read-selection"}, {"read-selection", "--json"}}) {
        streams.error.clear();
        EXPECT_EQ(run(arguments), 1);
        EXPECT_EQ(streams.error,
                  Lines{"Lomaris macOS bridge: Accessibility permission is required. Open System Settings > Privacy & "
                        "Security > Accessibility and enable Lomaris (or the terminal running it).\n"});
        EXPECT_EQ(streams.output, Lines());
    }
}

TEST_F(Execute, WritesOneErrorLineIfTheArgumentsAreRefused) {
    EXPECT_EQ(run({"read-selection", "--delay", "99"}), 1);
    EXPECT_EQ(streams.error, Lines{"Lomaris macOS bridge: --delay must be between 0 and 60 seconds.\n"});
    EXPECT_EQ(streams.output, Lines());
    EXPECT_EQ(desktop.journal(), Lines());
}

TEST_F(Execute, ReportsAnOutputThatCannotBeWritten) {
    streams.acceptedWrites = 0;
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {}, {"permission-status"}, {"read-selection"}, {"read-selection", "--json"}}) {
        streams.error.clear();
        EXPECT_EQ(run(arguments), 1);
        EXPECT_EQ(streams.error, Lines{"Lomaris macOS bridge: Could not write to standard output.\n"});
    }
}

TEST_F(Execute, ReportsAnOutputThatCannotBeWrittenIfNotGranted) {
    desktop.setTrusted(false);
    streams.acceptedWrites = 0;
    EXPECT_EQ(run({"permission-status"}), 1);
    EXPECT_EQ(streams.error, Lines{"Lomaris macOS bridge: Could not write to standard output.\n"});
}

TEST_F(Execute, PrintsHalfASurrogatePairAsReplacementCharacter) {
    const auto odd = desktop.addApplication(900, std::nullopt, std::nullopt);
    odd.element().answers(attribute::focusedUIElement, odd.addTextElement(u"\U0001f600!", TextRange{1, 2}).element());
    desktop.bringToFront(900);
    EXPECT_EQ(run({"read-selection"}), 0);
    EXPECT_EQ(streams.output, Lines{"\ufffd!\n"});
}

TEST_F(Execute, ReplacesWithTheArgumentWithoutReadingStandardInput) {
    streams.input = "waiting";
    EXPECT_EQ(run({"replace-selection", "--replacement", "x"}), 0);
    EXPECT_EQ(streams.output, Lines{"replaced\n"});
    EXPECT_EQ(text.text(), u"The quick x");
    EXPECT_EQ(streams.inputReads, 0);
}

TEST_F(Execute, ReplacesWithStandardInputIncludingItsLineFeed) {
    streams.input = "hello\n";
    EXPECT_EQ(run({"replace-selection"}), 0);
    EXPECT_EQ(streams.output, Lines{"replaced\n"});
    EXPECT_EQ(text.text(), u"The quick hello\n");
}

TEST_F(Execute, KeepsAByteOrderMarkOfStandardInput) {
    streams.input = "\xef\xbb\xbfx";
    EXPECT_EQ(run({"replace-selection"}), 0);
    EXPECT_EQ(text.text(), u"The quick \ufeffx");
}

TEST_F(Execute, WritesNoOutputIfTheReplacementFails) {
    text.answersSet(attribute::selectedText, AXError::failure);
    EXPECT_EQ(run({"replace-selection", "--replacement", "x"}), 1);
    EXPECT_EQ(streams.output, Lines());
    EXPECT_EQ(streams.error, Lines{"Lomaris macOS bridge: Could not replace the selected text (AX error -25200).\n"});
}

TEST_F(Execute, RefusesAnEmptyOrMalformedReplacementBeforeAnyCall) {
    struct Example {
        std::vector<std::string> arguments;
        std::optional<std::string> input;
        std::string message;
    };
    const std::vector<Example> examples = {
        {{"replace-selection", "--replacement", ""}, "unused", "Replacement text must not be empty."},
        {{"replace-selection", "--delay", "5"},
         "",
         "Replacement text is empty. Supply --replacement <text> or pipe text to stdin."},
        {{"replace-selection", "--delay", "5"}, "a\xff", "Replacement input must be valid UTF-8."},
        {{"replace-selection", "--delay", "5"}, std::nullopt, "Could not read standard input."},
    };
    for (const auto& example : examples) {
        streams.error.clear();
        streams.input = example.input;
        EXPECT_EQ(run(example.arguments), 1);
        EXPECT_EQ(streams.error, Lines{"Lomaris macOS bridge: " + example.message + "\n"});
        EXPECT_EQ(streams.output, Lines());
    }
    EXPECT_EQ(desktop.journal(), Lines());
}

TEST_F(Execute, ReadsStandardInputBeforeTheDelay) {
    streams.input = "x";
    desktop.beforeCall(1, [this] { EXPECT_EQ(streams.inputReads, 1); });
    EXPECT_EQ(run({"replace-selection", "--delay", "2"}), 0);
    EXPECT_EQ(desktop.journal().at(0), "0.000000000 sleep(2.000000000)");
}

TEST_F(Execute, ReportsAnInputThatDoesNotFitIntoMemory) {
    OversizedInput endless;
    const std::vector<Text> arguments = {u"replace-selection"};
    EXPECT_EQ(runCommandLine(arguments, desktop, endless), 1);
    EXPECT_EQ(endless.output, Lines());
    EXPECT_EQ(endless.error,
              Lines{"Lomaris macOS bridge: Not enough memory. Close some applications and try again.\n"});
    EXPECT_EQ(desktop.journal(), Lines());
}

TEST_F(Execute, DoesNotUndoAReplacementWhoseOutputCannotBeWritten) {
    streams.acceptedWrites = 0;
    EXPECT_EQ(run({"replace-selection", "--replacement", "x"}), 1);
    EXPECT_EQ(text.text(), u"The quick x");
    EXPECT_EQ(streams.error, Lines{"Lomaris macOS bridge: Could not write to standard output.\n"});
}

TEST_F(Execute, KeepsTheStagedTextForATargetThatPastesAfterTheEnd) {
    text.answersSettable(attribute::selectedText, {AXError::success, false});
    notes.onCopy(copiesSelectionOf(text));
    notes.onPaste(pastesInto(text).after(std::chrono::milliseconds(500)));
    EXPECT_EQ(run({"replace-selection", "--replacement", "x"}), 0);
    EXPECT_EQ(streams.output, Lines{"replaced\n"});
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick x");
}

TEST(StandardStreamErrors, NameTheirStreamInDescriptionAndWhat) {
    const auto input = StandardStreamError::inputFailed();
    EXPECT_EQ(input.errorDescription(), u"Could not read standard input.");
    EXPECT_STREQ(input.what(), "inputFailed");
    const auto output = StandardStreamError::outputFailed();
    EXPECT_EQ(output.errorDescription(), u"Could not write to standard output.");
    EXPECT_STREQ(output.what(), "outputFailed");
}

}  // namespace
}  // namespace lomaris
