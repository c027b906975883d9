#include "tests/faults/promises.h"

#include "tests/bridge/execute_world.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

using Lines = std::vector<std::string>;

const WorldPlan& planNamed(std::string_view name) {
    const auto& plans = worldPlans();
    return *std::find_if(plans.begin(), plans.end(), [name](const WorldPlan& plan) { return plan.name == name; });
}

/// A good run with one change that breaks a promise, and the message for that promise.
struct Breach {
    std::string what;
    Command command{};
    std::string world;
    std::function<void(Run&)> spoil;
    std::string message;
    /// What the user does in the good run.
    std::optional<Disturbance> disturbance = std::nullopt;
};

Happening& firstCall(Run& run, std::string_view call, std::string_view about = {}) {
    return *std::find_if(run.happenings.begin(), run.happenings.end(), [&](const Happening& happening) {
        return happening.isCall(call) && (about.empty() || happening.about == about);
    });
}

/// Inserts a happening just before the first call of this kind.
void addBefore(Run& run, std::string_view call, std::string_view about, const Happening& happening) {
    const auto position = &firstCall(run, call, about) - run.happenings.data();
    run.happenings.insert(run.happenings.begin() + position, happening);
}

/// Replaces every call of this kind by a harmless call.
void forget(Run& run, std::string_view call, std::string_view about) {
    for (Happening& happening : run.happenings) {
        if (happening.isCall(call, about)) {
            happening.what = "changeCount";
        }
    }
}

void addDeletionBeforePaste(Run& run) {
    addBefore(run, "createKeyStroke", "paste", {.what = "createKeyStroke", .about = "delete"});
    addBefore(run, "createKeyStroke", "paste", {.what = "postToSession", .about = "delete"});
}

/// Makes this the selection at the time of every read.
void selectAllAlong(Run& run, TextRange selection) {
    for (Happening& happening : run.happenings) {
        happening.document.selection = selection;
    }
}

void makeTheUserActFirst(Run& run) {
    const auto act = std::find_if(run.happenings.begin(), run.happenings.end(),
                                  [](const Happening& happening) { return happening.who == Who::user; });
    std::rotate(run.happenings.begin(), act, act + 1);
}

void makeItFail(Run& run) {
    run.status = 1;
    run.output.clear();
    run.error = {"Lomaris macOS bridge: no\n"};
}

/// The user clicks after the guarded replacement has sampled the input counters.
constexpr Disturbance clickAfterTheCounters{.act = UserAct::clicks, .number = 8};

const std::vector<Breach>& breaches() {
    static const std::vector<Breach> all = {
        {"a failure that says two things", Command::replace, "NothingCopies",
         [](Run& run) { run.error.push_back(run.error.front()); },
         "a failure is one line on standard error and nothing on standard output"},
        {"a failure that shows a result", Command::readText, "NothingCopies",
         [](Run& run) { run.output = {"brown fox\n"}; },
         "a failure is one line on standard error and nothing on standard output"},
        {"a success that complains", Command::replace, "Editor",
         [](Run& run) { run.error = {"Lomaris macOS bridge: no\n"}; },
         "nothing is said on standard error unless the status is 1"},
        {"a status of its own", Command::readText, "Editor", [](Run& run) { run.status = 3; },
         "no command ends with this status"},
        {"status 2 of a read", Command::readText, "Editor", [](Run& run) { run.status = 2; },
         "status 2 is that of a missing permission alone"},
        {"a permission in other words", Command::permissionStatus, "Editor", [](Run& run) { run.output = {"yes\n"}; },
         "status 0 is that of a granted permission"},
        {"a replacement in other words", Command::replace, "Editor", [](Run& run) { run.output = {"done\n"}; },
         "a replacement ends with one word"},
        {"half a record", Command::diagnose, "Editor",
         [](Run& run) {
             run.output = {"{", "\n"};
         },
         "a record is one object"},
        {"a moment too long", Command::readText, "KeyOnly",
         [](Run& run) { run.elapsed = std::chrono::milliseconds(3961); }, "it took 3961 ms"},
        {"a pause that only a web address needs", Command::replace, "KeyOnly",
         [](Run& run) { run.elapsed = std::chrono::milliseconds(7121); }, "it took 7121 ms"},
        {"a clipboard without its second item", Command::readText, "KeyOnly",
         [](Run& run) { run.clipboardAfter.pop_back(); }, "the user's clipboard is not what it must be"},
        {"private text that is left behind", Command::readText, "KeyOnly",
         [](Run& run) { run.clipboardAfter = {{.data = {}, .promised = {"public.utf8-plain-text"}}}; },
         "the user's clipboard is not what it must be"},
        {"a clipboard that is saved too late", Command::readText, "KeyOnly", [](Run& run) { run.told.back().clear(); },
         "something else is saved than what the user copied"},
        {"a key that is not posted", Command::readText, "KeyOnly",
         [](Run& run) { firstCall(run, "postToSession").what = "changeCount"; },
         "a key stroke was made and not posted"},
        {"a key that is posted twice", Command::readText, "KeyOnly",
         [](Run& run) { addBefore(run, "postToSession", "copy", firstCall(run, "postToSession")); },
         "a key stroke was posted that was not made just before"},
        {"a read that writes", Command::readText, "Editor",
         [](Run& run) {
             run.happenings.push_back({.who = Who::tool, .what = "setAttribute", .about = "AXSelectedText"});
             run.targetAfter = withSelectionReplaced(run.targetAfter, u"red fox");
         },
         "a command that only reads writes nothing"},
        {"a success without a write", Command::replace, "Editor",
         [](Run& run) {
             firstCall(run, "setAttribute").fate = Fate::refused;
             run.targetAfter = run.targetBefore;
         },
         "success was reported and nothing written"},
        {"a failure with a write", Command::replace, "Editor", makeItFail,
         "something was written and a failure reported"},
        {"a second write", Command::replace, "Editor",
         [](Run& run) {
             addBefore(run, "setAttribute", "AXSelectedText", firstCall(run, "setAttribute"));
             run.targetAfter = withSelectionReplaced(run.targetAfter, u"red fox");
         },
         "a selection is written once, by one way"},
        {"a deletion before other words", Command::replace, "KeyOnly", addDeletionBeforePaste,
         "a selection is deleted once, and for a web address alone"},
        {"a second deletion", Command::replace, "WebAddress",
         [](Run& run) {
             addDeletionBeforePaste(run);
             const Document deletedTwice = withSelectionDeleted(withSelectionDeleted(run.targetBefore));
             run.targetAfter = withSelectionReplaced(deletedTwice, u"https://example.org");
         },
         "a selection is deleted once, and for a web address alone"},
        {"a web address without a deletion", Command::replace, "WebAddress",
         [](Run& run) {
             forget(run, "createKeyStroke", "delete");
             forget(run, "postToSession", "delete");
         },
         "a web address was pasted over a selection that was not deleted"},
        {"a deletion without a paste", Command::replace, "WebAddress",
         [](Run& run) {
             forget(run, "createKeyStroke", "paste");
             forget(run, "postToSession", "paste");
             makeItFail(run);
             run.targetAfter = withSelectionDeleted(run.targetBefore);
             run.clipboardAfter = run.clipboardBefore;
         },
         "a selection was deleted and nothing pasted"},
        {"a write without a look", Command::replace, "Editor",
         [](Run& run) { forget(run, "copyAttribute", "AXSelectedText"); },
         "a selection was written that had not been looked at"},
        {"a paste without a look", Command::replace, "KeyOnly",
         [](Run& run) {
             std::erase_if(run.happenings, [](const Happening& happening) { return happening.who == Who::target; });
         },
         "a selection was written that had not been looked at"},
        {"another selection at the last look", Command::replace, "KeyOnly",
         [](Run& run) {
             const auto copy = std::find_if(run.happenings.rbegin(), run.happenings.rend(),
                                            [](const Happening& happening) { return happening.who == Who::target; });
             copy->document.selection = {4, 5};
         },
         "another text was selected at the last look"},
        {"a selection that stood elsewhere", Command::replace, "Editor",
         [](Run& run) {
             const auto range = std::find_if(
                 run.happenings.rbegin(), run.happenings.rend(),
                 [](const Happening& happening) { return happening.isCall("copyAttribute", "AXSelectedTextRange"); });
             range->document.selection = {26, 9};
         },
         "the selection stood elsewhere at the last look"},
        {"a write over another text than expected", Command::replaceIfCurrent, "Editor",
         [](Run& run) {
             selectAllAlong(run, {4, 5});
         },
         "another text was selected than the request expected"},
        {"a paste over another text than expected", Command::replaceIfCurrent, "KeyOnly",
         [](Run& run) {
             selectAllAlong(run, {4, 5});
         },
         "another text was selected than the request expected"},
        {"a write over another place than expected", Command::replaceIfCurrent, "Editor",
         [](Run& run) {
             selectAllAlong(run, {26, 9});
         },
         "the selection stood elsewhere than the request expected"},
        {"a paste over another place than expected", Command::replaceIfCurrent, "EditorForPastingOnly",
         [](Run& run) {
             selectAllAlong(run, {26, 9});
         },
         "the selection stood elsewhere than the request expected"},
        {"a click before the counters, and no range expected", Command::replaceIfCurrent, "EditorWithoutRange",
         makeTheUserActFirst, "nothing showed that the user had not touched the selection", clickAfterTheCounters},
        {"a click before the counters, and no range read", Command::replaceIfCurrent, "Editor",
         [](Run& run) {
             makeTheUserActFirst(run);
             forget(run, "copyAttribute", "AXSelectedTextRange");
         },
         "nothing showed that the user had not touched the selection", clickAfterTheCounters},
        {"a counter that is not told", Command::replaceIfCurrent, "EditorWithoutRange",
         [](Run& run) { firstCall(run, "inputCounter", "other mouse down").fate = Fate::refused; },
         "nothing showed that the user had not touched the selection"},
        {"another text in the document", Command::replace, "Editor", [](Run& run) { run.targetAfter.text += u"!"; },
         "the document is \"The quick red fox met a brown fox!\" and not \"The quick red fox met a brown fox\""},
        {"another text than was selected", Command::readText, "Editor",
         [](Run& run) { run.output = {"quick brown\n"}; }, "what was read is not what was selected at the last look"},
        {"a record of something else", Command::readJson, "Editor",
         [](Run& run) { run.output = {"{\n  \"a\": 1\n}\n"}; }, "the selection cannot be decoded"},
    };
    return all;
}

TEST(Promises, AreEachDetectedIfBroken) {
    for (const Breach& breach : breaches()) {
        const Scenario scenario{
            .world = planNamed(breach.world), .command = breach.command, .disturbance = breach.disturbance};
        auto run = perform(scenario);
        ASSERT_EQ(brokenPromises(scenario, run), Lines()) << breach.what;
        breach.spoil(run);
        EXPECT_EQ(brokenPromises(scenario, run), Lines{breach.message}) << breach.what;
    }
}

TEST(Promises, AreBrokenByAKeyToAnotherApplication) {
    const Scenario scenario{.world = planNamed("KeyOnly"), .command = Command::replace};
    auto run = perform(scenario);
    run.otherAfter = withSelectionReplaced(run.otherAfter, u"red fox");
    EXPECT_EQ(brokenPromises(scenario, run),
              (Lines{"the other application's document changed", "the other application was written into"}));
}

TEST(Promises, AreBrokenByATextWithoutALineFeed) {
    const Scenario scenario{.world = planNamed("Editor"), .command = Command::readText};
    auto run = perform(scenario);
    run.output = {"brown fox"};
    EXPECT_EQ(brokenPromises(scenario, run), (Lines{"a result is not empty and ends with a line feed",
                                                    "what was read is not what was selected at the last look"}));
}

TEST(Promises, LimitTheTimeToTheSumOfTheWaits) {
    using namespace std::chrono_literals;
    const auto longest = [](std::string_view world, Command command) {
        return longestTime({.world = planNamed(world), .command = command});
    };
    EXPECT_EQ(longest("Editor", Command::permissionStatus), 0ms);
    EXPECT_EQ(longest("Editor", Command::diagnose), 0ms);
    EXPECT_EQ(longest("Editor", Command::readText), 3960ms);
    EXPECT_EQ(longest("Browser", Command::readText), 7170ms);
    EXPECT_EQ(longest("Editor", Command::replace), 7120ms);
    EXPECT_EQ(longest("Browser", Command::replace), 10330ms);
    EXPECT_EQ(longest("Editor", Command::replaceIfCurrent), 4110ms);
    EXPECT_EQ(longest("Browser", Command::replaceIfCurrent), 7320ms);
    EXPECT_EQ(longest("WebAddress", Command::readText), 3960ms);
    EXPECT_EQ(longest("WebAddress", Command::replace), 7200ms);
    EXPECT_EQ(longest("WebAddress", Command::replaceIfCurrent), 4190ms);
}

}  // namespace
}  // namespace lomaris::test
