#pragma once

#include "platform/macos/run_loop.h"
#include "platform/pasteboard.h"

#include <cstdint>
#include <memory>

namespace lomaris::macos {

/// The general pasteboard.
///
/// Does not access the pasteboard before the first use. The pasteboard server stores the contents, so they outlive this
/// process, except for promises; `finish` replaces those with data. Main thread only.
class MacOSPasteboard final : public Pasteboard {
public:
    /// `runLoop` must outlive the pasteboard.
    explicit MacOSPasteboard(RunLoop& runLoop);
    ~MacOSPasteboard() override;

    [[nodiscard]] std::vector<std::unique_ptr<PasteboardItem>> items() override;
    [[nodiscard]] std::optional<Text> string() override;
    [[nodiscard]] std::int64_t changeCount() override;
    void clearContents() override;
    [[nodiscard]] bool writeItems(std::vector<NewPasteboardItem> items) override;
    /// Locks a file in the user's directory for temporary files.
    [[nodiscard]] std::unique_ptr<PasteboardHold> tryHold() override;

    /// Serves the requests that are already pending, then fulfils the remaining promises if this process still owns
    /// the pasteboard. Must also be called before a signal ends the process, but not from its handler. Does not wait.
    void finish();

private:
    /// The promises of this process that are not yet fulfilled or replaced.
    class Promises;

    RunLoop& runLoop_;
    std::unique_ptr<Promises> promises_;
    std::int64_t lastChangeCount_ = 0;
};

}  // namespace lomaris::macos
