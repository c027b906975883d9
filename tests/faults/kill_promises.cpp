#include "tests/faults/kill_promises.h"

#include "accessibility/fallback/key_strokes.h"
#include "text/utf8.h"

#include <algorithm>
#include <string_view>

namespace lomaris::test {
namespace {

bool wasPosted(const Run& run, KeyStroke keyStroke) {
    return std::any_of(run.posted.begin(), run.posted.end(),
                       [&](const PostedKeyStroke& posted) { return posted.keyStroke == keyStroke; });
}

bool wasWrittenDirectly(const Run& run) {
    return std::any_of(run.journal.begin(), run.journal.end(), [](std::string_view line) {
        return line.find(" setAttribute(812/") != std::string_view::npos &&
               line.find(", AXSelectedText, ") != std::string_view::npos && line.ends_with(" -> success");
    });
}

Document expectedTarget(const Scenario& scenario, const Run& run) {
    Document document = run.targetBefore;
    if (wasPosted(run, key_stroke::collapseSelection)) {
        document = withSelectionDeleted(std::move(document));
    }
    if (wasPosted(run, key_stroke::paste) || wasWrittenDirectly(run)) {
        document = withSelectionReplaced(std::move(document), scenario.world.replacement);
    }
    return document;
}

std::vector<StandingItem> plainText(TextView text) {
    return {{.data = {{"public.utf8-plain-text", utf8FromText(text)}}, .promised = {}}};
}

/// True if the clipboard has the user's contents in the end, or what the target copied after the user did.
bool isTheUsers(const Scenario& scenario, const Run& run) {
    if (scenario.kill->aftermath == Kill::Aftermath::none) {
        return run.clipboardAtEnd == run.clipboardBefore;
    }
    const bool copiesLate = scenario.world.copyKey == CopyKey::copiesAfter40Milliseconds;
    return run.clipboardAtEnd == plainText(world::copiedMeanwhile) ||
           (copiesLate && run.clipboardAtEnd == plainText(run.targetBefore.selectedText()));
}

}  // namespace

std::vector<std::string> brokenPromisesOfAKill(const Scenario& scenario, const Run& run) {
    std::vector<std::string> broken;
    if (!isTheUsers(scenario, run)) {
        broken.emplace_back("the clipboard is not the user's");
    }
    if (!run.isClipboardFree) {
        broken.emplace_back("the clipboard is still in use");
    }
    const Document expected = expectedTarget(scenario, run);
    if (run.targetAfter != expected) {
        broken.push_back("the document is \"" + utf8FromText(run.targetAfter.text) + "\" and not \"" +
                         utf8FromText(expected.text) + "\"");
    }
    if (run.otherAfter != run.otherBefore) {
        broken.emplace_back("the other application's document changed");
    }
    return broken;
}

}  // namespace lomaris::test
