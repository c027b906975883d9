#pragma once

#include "tests/real/browser.h"
#include "tests/real/editor.h"
#include "tests/soak/figures.h"
#include "tests/x11/user_clipboard.h"

#include <memory>
#include <string>

namespace lomaris::test {

/// Whether a round counts. A round in which the browser copied late does not.
enum class RoundResult { counts, applicationWasSlow };

/// An editor whose text is read and written directly, a browser whose text is copied and pasted, and the user's
/// clipboard, which another program owns.
class SoakDesktop {
public:
    /// Starts the applications. Throws if they do not show their documents.
    SoakDesktop();

    /// Reads, replaces, and has a replacement refused, in the editor and in the browser. Throws if anything differs
    /// from the expected state. If the browser copies after the tool has stopped waiting, its copy overwrites the
    /// restored clipboard; such a round is not a failure and returns `applicationWasSlow`.
    [[nodiscard]] RoundResult runRound(Figures& figures);

private:
    void selectTheWords();
    void runInEditor(Figures& figures);
    void runInBrowser(Figures& figures);
    void ownClipboard();

    /// The words that are selected in the editor, and those that replace them. Swapped in each round.
    std::string current_ = "brown fox";
    std::string next_ = "red fox";
    std::unique_ptr<Editor> editor_;
    std::unique_ptr<Browser> browser_;
    std::unique_ptr<UserClipboard> clipboard_;
};

}  // namespace lomaris::test
