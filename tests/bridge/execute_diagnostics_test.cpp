#include "accessibility/service/accessibility_service.h"
#include "tests/bridge/execute_world.h"

#include <chrono>
#include <string>

namespace lomaris {
namespace {

using test::Lines;

using namespace std::chrono_literals;

const std::string permissionRequired =
    "Accessibility permission is required. Open System Settings > Privacy & Security > Accessibility and enable "
    "Lomaris (or the terminal running it).";

class ExecuteDiagnostics : public test::ExecuteWorld {};

TEST_F(ExecuteDiagnostics, WritesTheElementsAndThenOneLineFeed) {
    const std::string json = LomarisAccessibilityService(desktop).selectionDiagnosticJSON();
    EXPECT_EQ(run({"diagnose-selection"}), 0);
    EXPECT_EQ(streams.output, (Lines{json, "\n"}));
    EXPECT_EQ(streams.error, Lines());
    EXPECT_EQ(json.substr(0, 33), "{\n  \"applicationName\" : \"Notes\",\n");
    EXPECT_EQ(json.substr(json.size() - 2), "\n}");
}

TEST_F(ExecuteDiagnostics, WritesTheCompatibilityAndThenOneLineFeed) {
    EXPECT_EQ(run({"compatibility-check"}), 0);
    const std::string json =
        "{\n"
        "  \"applicationName\" : \"Notes\",\n"
        "  \"bundleIdentifier\" : \"com.example.notes\",\n"
        "  \"contextAfterLength\" : 0,\n"
        "  \"contextBeforeLength\" : 10,\n"
        "  \"schemaVersion\" : 1,\n"
        "  \"selectionLength\" : 9,\n"
        "  \"selectionMethod\" : \"accessibility\",\n"
        "  \"selectionReadable\" : true,\n"
        "  \"supportsDirectReplacement\" : true,\n"
        "  \"usesClipboardFallback\" : false\n"
        "}";
    EXPECT_EQ(streams.output, (Lines{json, "\n"}));
    EXPECT_EQ(streams.error, Lines());
}

TEST_F(ExecuteDiagnostics, EscapesSlashes) {
    const auto odd = desktop.addApplication(900, u"com.example.odd", u"A/B");
    odd.element().answers(attribute::focusedUIElement, odd.addTextElement(u"xyz", TextRange{1, 1}).element());
    desktop.bringToFront(900);
    for (const auto* command : {"diagnose-selection", "compatibility-check"}) {
        streams.output.clear();
        EXPECT_EQ(run({command}), 0);
        EXPECT_EQ(streams.output.at(0).substr(0, 32), "{\n  \"applicationName\" : \"A\\/B\",\n") << command;
    }
}

TEST_F(ExecuteDiagnostics, WaitsForTheDelayBeforeAnythingElse) {
    Moment waited{0};
    for (const auto* command : {"diagnose-selection", "compatibility-check"}) {
        const std::size_t start = desktop.journal().size();
        EXPECT_EQ(run({command, "--delay", "0.5"}), 0);
        EXPECT_NE(desktop.journal().at(start).find(" sleep(0.500000000)"), std::string::npos) << command;
        waited += 500ms;
        EXPECT_EQ(desktop.now(), waited) << command;
        EXPECT_EQ(streams.inputReads, 0) << command;
    }
}

TEST_F(ExecuteDiagnostics, WritesOneErrorLineWithoutPermission) {
    desktop.setTrusted(false);
    expectFailure({"diagnose-selection"}, permissionRequired);
    expectFailure({"compatibility-check"}, permissionRequired);
}

TEST_F(ExecuteDiagnostics, FailsWithTheErrorOfTheReadIfNothingIsSelected) {
    text.select({3, 0});
    notes.onCopy(copies(u""));
    expectFailure({"compatibility-check"}, "Select some text first.");
}

TEST_F(ExecuteDiagnostics, FailsWithTheErrorOfTheReadIfTheTargetDoesNotCopy) {
    text.select({3, 0});
    expectFailure({"compatibility-check"},
                  "Keyboard/clipboard fallback failed: the target application did not respond to Cmd+C after 3 "
                  "attempt(s)");
    EXPECT_EQ(desktop.now(), 3160ms);
}

TEST_F(ExecuteDiagnostics, ReportsAnOutputThatCannotBeWritten) {
    for (const auto* command : {"diagnose-selection", "compatibility-check"}) {
        streams.acceptedWrites = 0;
        expectFailure({command}, "Could not write to standard output.");
        streams.acceptedWrites = 1;
        EXPECT_EQ(run({command}), 1);
        EXPECT_EQ(streams.output.size(), 1U);
        streams.output.clear();
    }
}

TEST_F(ExecuteDiagnostics, AcceptOnlyTheDelayOption) {
    expectFailure({"diagnose-selection", "--json"}, "diagnose-selection only accepts --delay.");
    expectFailure({"compatibility-check", "--before-chars", "1"}, "compatibility-check only accepts --delay.");
    EXPECT_EQ(desktop.journal(), Lines());
}

}  // namespace
}  // namespace lomaris
