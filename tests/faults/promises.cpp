#include "tests/faults/promises.h"

#include "accessibility/model/selection_json.h"
#include "bridge/execute.h"
#include "tests/faults/expected_documents.h"
#include "tests/faults/last_look.h"
#include "tests/faults/writing_promises.h"
#include "text/utf8.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <string_view>

namespace lomaris::test {
namespace {

using std::chrono::milliseconds;

std::string joined(const std::vector<std::string>& writes) {
    std::string text;
    for (const std::string& write : writes) {
        text += write;
    }
    return text;
}

Broken speaksOnce(const Scenario& scenario, const Run& run) {
    if (run.status == exit_status::failure) {
        const bool isOneLine = run.error.size() == 1 && run.error.front().starts_with("Lomaris macOS bridge: ") &&
                               run.error.front().find('\n') == run.error.front().size() - 1;
        if (!isOneLine || !run.output.empty()) {
            return "a failure is one line on standard error and nothing on standard output";
        }
        return std::nullopt;
    }
    if (!run.error.empty()) {
        return "nothing is said on standard error unless the status is 1";
    }
    const bool asksForPermission =
        scenario.command == Command::permissionStatus || scenario.command == Command::permissionPrompt;
    const std::string output = joined(run.output);
    if (run.status == exit_status::notGranted) {
        return asksForPermission && output == "not-granted\n" ? Broken()
                                                              : "status 2 is that of a missing permission alone";
    }
    if (run.status != exit_status::success) {
        return "no command ends with this status";
    }
    if (asksForPermission) {
        return output == "granted\n" ? Broken() : "status 0 is that of a granted permission";
    }
    if (isReplacement(scenario.command)) {
        return output == "replaced\n" ? Broken() : "a replacement ends with one word";
    }
    const bool isRecord = output.starts_with("{\n") && output.ends_with("\n}\n");
    if (scenario.command != Command::readText && !isRecord) {
        return "a record is one object";
    }
    return output.size() > 1 && output.ends_with('\n') ? Broken() : "a result is not empty and ends with a line feed";
}

Broken endsInTime(const Scenario& scenario, const Run& run) {
    return run.elapsed <= longestTime(scenario)
               ? Broken()
               : "it took " + std::to_string(std::chrono::duration_cast<milliseconds>(run.elapsed).count()) + " ms";
}

/// True if the tool could not save all that the user copied: the pasteboard returned no data, or its contents changed
/// during the saving, or were lost earlier because a write was refused.
bool wasKeptFromSaving(const Run& run) {
    bool isSaving = false;
    for (const Happening& happening : run.happenings) {
        const bool isPasteboardCall = happening.isCall("items") || happening.isCall("types") ||
                                      happening.isCall("data") || happening.isCall("writeItems");
        if (isPasteboardCall && happening.fate == Fate::refused) {
            return true;
        }
        isSaving = (isSaving || happening.isCall("items")) && !happening.isCall("clearContents");
        if (isSaving && happening.who == Who::user && happening.what == nameOf(UserAct::copies)) {
            return true;
        }
    }
    return false;
}

/// The item that the tool writes for the replacement.
const std::vector<StandingItem>& stagedText() {
    static const std::vector<StandingItem> staged = {
        {.data = {{"org.nspasteboard.ConcealedType", ""}, {"org.nspasteboard.TransientType", ""}},
         .promised = {"public.utf8-plain-text"}}};
    return staged;
}

std::vector<StandingItem> copiedByUser() {
    return {{.data = {{"public.utf8-plain-text", utf8FromText(world::copiedMeanwhile)}}, .promised = {}}};
}

/// The expected clipboard when the command has ended. The tool saves the clipboard and clears it. In the end it clears
/// it again and writes what it saved. Therefore:
/// - what another program copies between saving and restoring is lost, and what it copies later remains;
/// - after a paste the replacement remains, because the tool ends before the target has read it;
/// - data that the pasteboard did not return cannot be restored, and nothing can if it refuses the write.
std::vector<StandingItem> expectedClipboard(const Run& run) {
    std::vector<StandingItem> users = run.clipboardBefore;
    bool isEmptied = false;
    bool isRefused = false;
    for (const Happening& happening : run.happenings) {
        if (happening.who == Who::user && happening.what == nameOf(UserAct::copies)) {
            users = copiedByUser();
            isEmptied = false;
        } else if (happening.isCall("clearContents")) {
            isEmptied = true;
            isRefused = false;
        } else if (happening.isCall("writeItems")) {
            isRefused = happening.fate == Fate::refused;
        }
    }
    if (!isEmptied) {
        return users;
    }
    if (std::any_of(run.happenings.begin(), run.happenings.end(), isPaste)) {
        return stagedText();
    }
    return isRefused ? std::vector<StandingItem>() : run.told.back();
}

Broken keepsTheClipboard(const Scenario& /*scenario*/, const Run& run) {
    if (!wasKeptFromSaving(run)) {
        for (const ToldItems& told : run.told) {
            if (told != run.clipboardBefore && told != copiedByUser()) {
                return "something else is saved than what the user copied";
            }
        }
    }
    return run.clipboardAfter == expectedClipboard(run) ? Broken() : "the user's clipboard is not what it must be";
}

Broken touchesNothingInUse(const Scenario& scenario, const Run& run) {
    const bool isInUse =
        scenario.contention && scenario.contention->number == 0 && scenario.contention->duration == Duration::max();
    if (!isInUse) {
        return std::nullopt;
    }
    for (const Happening& happening : run.happenings) {
        if (happening.isCall("items") || happening.isCall("clearContents") || isPost(happening)) {
            return "a clipboard that another operation uses was touched";
        }
    }
    return std::nullopt;
}

Broken postsEachKeyStrokeOnce(const Scenario& /*scenario*/, const Run& run) {
    std::optional<std::string> made;
    for (const Happening& happening : run.happenings) {
        if (happening.isCall("createKeyStroke") && happening.fate == Fate::answered) {
            if (made) {
                return "a key stroke was made and not posted";
            }
            made = happening.about;
        } else if (isPost(happening)) {
            if (made != happening.about) {
                return "a key stroke was posted that was not made just before";
            }
            made.reset();
        }
    }
    return made ? Broken("a key stroke was made and not posted") : Broken();
}

Broken leavesTheDocumentsAsExpected(const Scenario& scenario, const Run& run) {
    const Documents expected = expectedDocuments(scenario, run);
    if (run.targetAfter != expected.target) {
        return "the document is \"" + utf8FromText(run.targetAfter.text) + "\" and not \"" +
               utf8FromText(expected.target.text) + "\"";
    }
    return run.otherAfter == expected.other ? Broken() : "the other application's document changed";
}

Broken leavesTheOtherApplicationAlone(const Scenario& scenario, const Run& run) {
    if (run.otherAfter == run.otherBefore) {
        return std::nullopt;
    }
    // The tool cannot prevent the user from switching after it has determined the frontmost application and before it
    // posts the key.
    for (std::size_t position = 1; position < run.happenings.size(); ++position) {
        const Happening& before = run.happenings[position - 1];
        if (run.happenings[position].isCall("postToSession") && before.who == Who::user &&
            scenario.isDisturbedBy(UserAct::switchesApplication)) {
            return std::nullopt;
        }
    }
    return "the other application was written into";
}

/// The text in the output of a successful read; nullopt if the output does not contain it.
std::optional<Text> textRead(const Scenario& scenario, const Run& run) {
    const std::string output = joined(run.output);
    if (scenario.command == Command::readText) {
        return textFromUtf8(std::string_view(output).substr(0, output.size() - 1));
    }
    if (scenario.command == Command::readJson) {
        const auto payload = decodeSelectionPayload(output);
        return payload ? std::optional(payload->selectedText) : std::nullopt;
    }
    return std::nullopt;
}

Broken readsWhatWasSelected(const Scenario& scenario, const Run& run) {
    if (run.status != exit_status::success || !isRead(scenario.command)) {
        return std::nullopt;
    }
    const auto text = textRead(scenario, run);
    if (!text) {
        return scenario.command == Command::compatibilityCheck ? Broken() : "the selection cannot be decoded";
    }
    // The tool cannot distinguish the target's copy from one that another program makes at the same time.
    if (*text == world::copiedMeanwhile && scenario.isDisturbedBy(UserAct::copies)) {
        return std::nullopt;
    }
    const auto last = lastLookBefore(run.happenings, run.happenings.size());
    return last && last->selectedText == *text ? Broken() : "what was read is not what was selected at the last look";
}

}  // namespace

Duration longestTime(const Scenario& scenario) {
    // The focused element is requested from two elements, from each five times with pauses of 0.1 s.
    constexpr Duration focus = milliseconds(800);
    // Three waits of 1 s for the target's copy, with pauses of 0.08 s in between.
    constexpr Duration copying = milliseconds(3160);
    constexpr Duration secondLookForCopyCommand = milliseconds(50);
    constexpr Duration raisingTheWindow = milliseconds(100);
    constexpr Duration afterDeleting = milliseconds(80);
    constexpr Duration waitForTheClipboard = milliseconds(10000);

    if (!isRead(scenario.command) && !isReplacement(scenario.command)) {
        return Duration::zero();
    }
    Duration longest = focus + copying;
    if (scenario.world.isBrowser()) {
        // A browser is read by copying first; if that yields no text, the copying that follows any failed read is done
        // as well.
        longest += secondLookForCopyCommand + copying;
    }
    if (scenario.contention) {
        longest += waitForTheClipboard;
    }
    if (scenario.command == Command::replaceIfCurrent) {
        longest += raisingTheWindow + secondLookForCopyCommand;
    }
    if (scenario.command == Command::replace) {
        // One more copy checks that the selection is still the same.
        longest += copying;
    }
    const bool mayDelete = isReplacement(scenario.command) && scenario.world.replacesByWebAddress;
    return mayDelete ? longest + afterDeleting : longest;
}

std::vector<std::string> brokenPromises(const Scenario& scenario, const Run& run) {
    std::vector<std::string> broken;
    for (const auto promise :
         {speaksOnce, endsInTime, keepsTheClipboard, touchesNothingInUse, postsEachKeyStrokeOnce,
          writesOnceAndReportsIt, deletesOnlyForAWebAddress, writesOverWhatItSaw, writesOverWhatWasExpected,
          leavesTheDocumentsAsExpected, leavesTheOtherApplicationAlone, readsWhatWasSelected}) {
        if (auto message = promise(scenario, run)) {
            broken.push_back(std::move(*message));
        }
    }
    return broken;
}

}  // namespace lomaris::test
