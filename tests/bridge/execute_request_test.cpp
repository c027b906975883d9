#include "tests/bridge/execute_world.h"

#include <chrono>
#include <string>

namespace lomaris {
namespace {

using test::Lines;

using namespace std::chrono_literals;

constexpr const char* command = "replace-selection-request";

class ExecuteRequest : public test::ExecuteWorld {
protected:
    static std::string requestFor(const std::string& expected, const std::string& replacement) {
        return R"({"expectedText":")" + expected + R"(","replacementText":")" + replacement +
               R"(","expectedProcessIdentifier":812,"expectedBundleIdentifier":"com.example.notes",)" +
               R"("expectedSelectedRange":{"location":10,"length":9},"expectedInputActivity":{"keyDownCount":1,)" +
               R"("leftMouseDownCount":2,"rightMouseDownCount":3,"otherMouseDownCount":4}})";
    }

    const std::string selectionChanged =
        "The original selection changed while Lomaris was working, so your document was left untouched. Select the "
        "text and try again.";
};

TEST_F(ExecuteRequest, PrintsReplacedInOneWrite) {
    streams.input = requestFor("brown fox", "red fox") + "\n";
    EXPECT_EQ(run({command}), 0);
    EXPECT_EQ(streams.output, Lines{"replaced\n"});
    EXPECT_EQ(streams.error, Lines());
    EXPECT_EQ(streams.inputReads, 1);
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(ExecuteRequest, AcceptsTheOutputOfReadSelection) {
    EXPECT_EQ(run({"read-selection", "--json"}), 0);
    const std::string& read = streams.output.at(0);
    const auto from = [&read](const std::string& key) {
        const auto start = read.find('{', read.find("\"" + key + "\""));
        return read.substr(start, read.find('}', start) + 1 - start);
    };
    streams.input = R"({"expectedText":"brown fox","replacementText":"red fox","expectedProcessIdentifier":812,)"
                    R"("expectedBundleIdentifier":"com.example.notes","expectedInputActivity":)" +
                    from("inputActivity") + R"(,"expectedSelectedRange":)" + from("selectedRange") + "}";
    EXPECT_EQ(run({command, "--before-chars", "0", "--after-chars", "10000"}), 0);
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(ExecuteRequest, ReadsTheRequestThenWaitsThenSamplesInput) {
    streams.input = requestFor("brown fox", "red fox");
    desktop.beforeCall(1, [this] { EXPECT_EQ(streams.inputReads, 1); });
    EXPECT_EQ(run({command, "--delay", "5"}), 0);
    ASSERT_GE(desktop.journal().size(), 2U);
    EXPECT_EQ(desktop.journal().at(0), "0.000000000 sleep(5.000000000)");
    EXPECT_EQ(desktop.journal().at(1), "5.000000000 inputCounter(10) -> 1");
    EXPECT_EQ(desktop.now(), 5s);
}

TEST_F(ExecuteRequest, RefusesAfterInputDuringTheDelay) {
    streams.input = requestFor("brown fox", "red fox");
    text.answers(attribute::selectedTextRange, AXError::noValue);
    desktop.at(3s, [this] { desktop.userTypes(); });
    expectFailure({command, "--delay", "5"}, selectionChanged);
    EXPECT_EQ(text.text(), u"The quick brown fox");
}

TEST_F(ExecuteRequest, RefusesAMissingRequestBeforeTheDelay) {
    expectFailure({command, "--delay", "5"}, "Expected a guarded replacement request on stdin.");
    EXPECT_EQ(desktop.journal(), Lines());
    EXPECT_EQ(desktop.now(), 0s);
}

TEST_F(ExecuteRequest, RefusesAnUnreadableInputBeforeTheDelay) {
    streams.input.reset();
    expectFailure({command, "--delay", "5"}, "Could not read standard input.");
    EXPECT_EQ(desktop.journal(), Lines());
}

TEST_F(ExecuteRequest, RefusesAMalformedRequestAfterTheDelay) {
    struct Example {
        std::string input;
        std::string message;
    };
    const std::vector<Example> examples = {
        {"\n", "Guarded replacement request is invalid JSON."},
        {"{}", "Guarded replacement request is invalid JSON."},
        {requestFor("brown fox", "red fox").substr(0, 100), "Guarded replacement request is invalid JSON."},
        {requestFor("", "red fox"), "Expected and replacement text must not be empty."},
        {requestFor("brown fox", ""), "Expected and replacement text must not be empty."},
    };
    Lines sleeps;
    for (const auto& example : examples) {
        streams.input = example.input;
        sleeps.push_back(std::to_string(5 * sleeps.size()) + ".000000000 sleep(5.000000000)");
        expectFailure({command, "--delay", "5"}, example.message);
    }
    EXPECT_EQ(desktop.journal(), sleeps);
    EXPECT_EQ(desktop.now(), 25s);
}

TEST_F(ExecuteRequest, ReportsAChangedSelectionAndWritesNothing) {
    streams.input = requestFor("brown dog", "red fox");
    expectFailure({command}, selectionChanged);
    EXPECT_EQ(text.text(), u"The quick brown fox");
}

TEST_F(ExecuteRequest, ReportsAChangedSelectionIfUntrusted) {
    streams.input = requestFor("brown fox", "red fox");
    desktop.setTrusted(false);
    expectFailure({command}, selectionChanged);
}

TEST_F(ExecuteRequest, ReportsWhyAWriteFailed) {
    streams.input = requestFor("brown fox", "red fox");
    text.answersSet(attribute::selectedText, AXError::failure);
    expectFailure({command}, "Could not replace the selected text (AX error -25200).");
}

TEST_F(ExecuteRequest, DoesNotUndoAReplacementWhoseOutputCannotBeWritten) {
    streams.input = requestFor("brown fox", "red fox");
    streams.acceptedWrites = 0;
    expectFailure({command}, "Could not write to standard output.");
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(ExecuteRequest, PastesIfTheElementCannotBeWritten) {
    streams.input = requestFor("brown fox", "red fox");
    text.answersSettable(attribute::selectedText, {AXError::success, false});
    notes.onPaste(pastesInto(text).after(500ms));
    EXPECT_EQ(run({command}), 0);
    EXPECT_EQ(streams.output, Lines{"replaced\n"});
    EXPECT_EQ(desktop.now(), 0s);
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(ExecuteRequest, RefusesArgumentsWithoutReadingTheRequest) {
    expectFailure({command, "--json"}, "replace-selection-request accepts context limits and --delay only.");
    EXPECT_EQ(streams.inputReads, 0);
}

}  // namespace
}  // namespace lomaris
