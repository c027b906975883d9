#pragma once

#include "tests/real/browser.h"
#include "tests/real/editor.h"
#include "tests/soak/figures.h"
#include "tests/x11/user_clipboard.h"

#include <memory>
#include <string>

namespace lomaris::test {

enum class RoundResult { counts, applicationWasSlow };

/// An editor whose text is read and written directly, a browser in which it is copied and pasted, and the user's
/// clipboard, which another program owns.
class SoakDesktop {
public:
    /// Starts the applications. Throws if they do not show their documents.
    SoakDesktop();

    /// Reads, replaces, and has a replacement refused, in the editor and in the browser. Throws what differs from the
    /// expected state. A browser that copies later than the tool waits puts its copy over the restored clipboard;
    /// such a round is no failure and does not count.
    [[nodiscard]] RoundResult runRound(Figures& figures);

private:
    void markTheWords();
    void runInEditor(Figures& figures);
    void runInBrowser(Figures& figures);
    void ownClipboard();

    /// The words that are selected in the editor, and those that replace them; they change places in each round.
    std::string current_ = "brown fox";
    std::string next_ = "red fox";
    std::unique_ptr<Editor> editor_;
    std::unique_ptr<Browser> browser_;
    std::unique_ptr<UserClipboard> clipboard_;
};

}  // namespace lomaris::test
