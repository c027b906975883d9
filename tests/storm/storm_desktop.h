#pragma once

#include "tests/real/browser.h"
#include "tests/storm/findings.h"
#include "tests/support/process.h"
#include "tests/x11/user_clipboard.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace lomaris::test {

/// The texts that the calls of a storm write.
extern const std::string firstReplacement;
extern const std::string secondReplacement;

/// Returns the document of the browser with this text in place of the selection.
[[nodiscard]] std::string documentWith(const std::string& replacement);

/// A browser and the user's clipboard, with the checks of their state after each round.
class StormDesktop {
public:
    /// Brings the desktop into the state in which each round starts: the browser is in front with its words selected,
    /// another program owns the user's clipboard with its three targets, and no process of the tool is left. If one is
    /// left although another program owns the clipboard, adds a violation and kills it. Then waits until a clipboard
    /// manager has noticed the clipboard. Throws if the desktop cannot be brought into that state.
    void startRound(Findings& findings, std::chrono::milliseconds timeForManager);

    /// Adds a violation unless these are the complete contents of the clipboard within 4 s.
    void expectClipboard(Findings& findings, const std::string& when, const ClipboardContents& expected);

    /// The same if any of several contents are allowed.
    void expectClipboard(Findings& findings, const std::string& when, const std::vector<ClipboardContents>& expected);

    /// Waits until the browser has handled all keys, adds a violation unless its text is one of these within 4 s, and
    /// returns the text.
    std::string expectDocument(Findings& findings, const std::vector<std::string>& expected);

    /// Adds a violation if more than one process of the tool is left (one may serve the clipboard) or a key is held
    /// down.
    void expectNothingLeft(Findings& findings);

private:
    Browser browser_;
    std::unique_ptr<UserClipboard> clipboard_;
};

/// Returns the desktop of this program. The first call starts the browser and throws if it does not start.
[[nodiscard]] StormDesktop& stormDesktop();
/// Ends the browser and the clipboard owner.
void endStormDesktop();

/// True if the call failed as documented: no output, one line on standard error, status 1.
[[nodiscard]] bool isDocumentedError(const ProcessResult& result);

}  // namespace lomaris::test
