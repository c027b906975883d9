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

/// The document of the browser with this in the place of the selection.
[[nodiscard]] std::string documentWith(const std::string& replacement);

/// A browser, the user's clipboard, and what must be true of them after each round.
class StormDesktop {
public:
    /// Brings the desktop into the state in which each round starts: the words selected in the browser in front, the
    /// user's clipboard with its three targets owned by another program, no process of the tool. Adds a violation and
    /// ends the processes of the tool that do not end when another program owns the clipboard. Then waits as long as a
    /// clipboard manager takes to notice. Throws if the desktop cannot be brought into that state.
    void startRound(Findings& findings, std::chrono::milliseconds timeForManager);

    /// Whether these are the whole contents of the clipboard within 4 s; adds a violation if not.
    void expectClipboard(Findings& findings, const std::string& when, const ClipboardContents& expected);

    /// The same if either may be there.
    void expectClipboard(Findings& findings, const std::string& when, const std::vector<ClipboardContents>& expected);

    /// Handles all keys of the browser, and adds a violation unless its text is one of these within 4 s. Returns it.
    std::string expectDocument(Findings& findings, const std::vector<std::string>& expected);

    /// Adds violations if more than one process of the tool is left, which serves the clipboard, or a key is held.
    void expectNothingLeft(Findings& findings);

private:
    Browser browser_;
    std::unique_ptr<UserClipboard> clipboard_;
};

/// The desktop of this program; the browser starts with the first call. Throws if it does not.
[[nodiscard]] StormDesktop& stormDesktop();
/// Ends it.
void endStormDesktop();

/// Whether the call failed as documented: nothing on standard output, one line for the user, status 1.
[[nodiscard]] bool isDocumentedError(const ProcessResult& result);

}  // namespace lomaris::test
