#pragma once

#include "platform/macos/run_loop.h"
#include "platform/pasteboard.h"

#include <cstdint>
#include <memory>

namespace lomaris::macos {

/// The general pasteboard.
///
/// Nothing of it is touched before the first use. What is on it lives in the pasteboard server and outlasts this
/// process, but for promises: at the end they are kept with concrete data. Main thread only.
class MacOSPasteboard final : public Pasteboard {
public:
    /// `runLoop` outlives the pasteboard.
    explicit MacOSPasteboard(RunLoop& runLoop);
    ~MacOSPasteboard() override;

    [[nodiscard]] std::vector<std::unique_ptr<PasteboardItem>> items() override;
    [[nodiscard]] std::optional<Text> string() override;
    [[nodiscard]] std::int64_t changeCount() override;
    void clearContents() override;
    [[nodiscard]] bool writeItems(std::vector<NewPasteboardItem> items) override;
    /// A lock on a file in the user's directory for temporary files.
    [[nodiscard]] std::unique_ptr<PasteboardHold> tryHold() override;

    /// Answers the requests that wait already and keeps what is then still promised, if the pasteboard is still this
    /// process's. Also to be called before a signal ends the process, though not from its handler. Does not wait.
    void finish();

private:
    /// The promises that stand.
    class Promises;

    RunLoop& runLoop_;
    std::unique_ptr<Promises> promises_;
    std::int64_t lastChangeCount_ = 0;
};

}  // namespace lomaris::macos
