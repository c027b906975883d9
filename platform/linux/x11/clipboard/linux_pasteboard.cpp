#include "platform/linux/x11/clipboard/linux_pasteboard.h"

#include "platform/inert_pasteboard_hold.h"
#include "platform/linux/x11/clipboard/clipboard_desk.h"

#include <utility>

namespace lomaris {

/// The exclusive use of the clipboard by one operation. Has no effect once the clipboard is gone.
class LinuxPasteboard::Hold final : public PasteboardHold {
public:
    Hold(LinuxPasteboard& pasteboard, std::weak_ptr<ClipboardDesk> desk, std::shared_ptr<void> mark)
        : pasteboard_(pasteboard), desk_(std::move(desk)), mark_(std::move(mark)) {}
    ~Hold() override {
        if (const auto desk = desk_.lock()) {
            desk->endOperation();
        }
    }

    void protect(const std::vector<PasteboardItemContents>& saved) override {
        const auto desk = desk_.lock();
        if (!desk) {
            return;
        }
        desk->protect(saved);
        pasteboard_.watchKeeper();
        pasteboard_.reportProtection(desk->isProtected());
    }

    void expectCopy(std::optional<ProcessIdentifier> target, Duration wait) override {
        if (const auto desk = desk_.lock()) {
            desk->expectCopy(target, wait);
        }
    }

    void expectPaste(Duration minimumWait, Duration graceWait) override {
        if (const auto desk = desk_.lock()) {
            desk->expectPaste(minimumWait, graceWait);
        }
    }

    [[nodiscard]] bool retake() override {
        const auto desk = desk_.lock();
        return !desk || desk->beginOperation();
    }

private:
    LinuxPasteboard& pasteboard_;
    std::weak_ptr<ClipboardDesk> desk_;
    /// Exists as long as the hold does.
    std::shared_ptr<void> mark_;
};

LinuxPasteboard::LinuxPasteboard(RunLoop& runLoop, KeeperStart startKeeper, ProtectionListener listener)
    : runLoop_(runLoop), startKeeper_(std::move(startKeeper)), listener_(std::move(listener)) {}

LinuxPasteboard::~LinuxPasteboard() { finish(); }

std::shared_ptr<ClipboardDesk> LinuxPasteboard::desk() {
    if (state_ == State::unopened) {
        state_ = State::gone;
        auto opened = std::make_shared<ClipboardDesk>(startKeeper_);
        if (opened->open()) {
            state_ = State::open;
            desk_ = std::move(opened);
            runLoop_.addReader(desk_->descriptor(), [this] { serve(); });
        }
    }
    if (desk_ && !desk_->isAlive()) {
        letGo();
    }
    return desk_;
}

void LinuxPasteboard::letGo() {
    runLoop_.removeReader(desk_->descriptor());
    runLoop_.removeReader(std::exchange(watchedKeeper_, -1));
    desk_.reset();
    state_ = State::gone;
}

void LinuxPasteboard::serve() {
    if (const auto desk = this->desk()) {
        desk->serve();
        watchKeeper();
        // The descriptor of a lost connection stays readable: `desk` removes it from the run loop.
        static_cast<void>(this->desk());
    }
}

/// Lets the run loop watch the keeper's descriptor while there is a keeper.
void LinuxPasteboard::watchKeeper() {
    const int keeper = desk_ ? desk_->keeperDescriptor() : -1;
    if (keeper == watchedKeeper_) {
        return;
    }
    if (watchedKeeper_ >= 0) {
        runLoop_.removeReader(watchedKeeper_);
    }
    watchedKeeper_ = keeper;
    if (keeper >= 0) {
        runLoop_.addReader(keeper, [this] { serve(); });
    } else {
        reportProtection(false);
    }
}

void LinuxPasteboard::reportProtection(bool isProtected) const {
    if (listener_) {
        listener_(isProtected);
    }
}

std::vector<std::unique_ptr<PasteboardItem>> LinuxPasteboard::items() {
    const auto desk = this->desk();
    return desk ? desk->items() : std::vector<std::unique_ptr<PasteboardItem>>();
}

std::optional<Text> LinuxPasteboard::string() {
    const auto desk = this->desk();
    return desk ? desk->string() : std::nullopt;
}

std::int64_t LinuxPasteboard::changeCount() {
    if (const auto desk = this->desk()) {
        lastChangeCount_ = desk->changeCount();
    }
    return lastChangeCount_;
}

void LinuxPasteboard::clearContents() {
    if (const auto desk = this->desk()) {
        desk->clear();
        watchKeeper();
    }
}

bool LinuxPasteboard::writeItems(std::vector<NewPasteboardItem> items) {
    const auto desk = this->desk();
    const bool isWritten = desk && desk->write(std::move(items));
    watchKeeper();
    return isWritten;
}

std::unique_ptr<PasteboardHold> LinuxPasteboard::tryHold() {
    const auto desk = this->desk();
    if (!desk) {
        return std::make_unique<InertPasteboardHold>();
    }
    if (!hold_.expired() || !desk->beginOperation()) {
        return nullptr;
    }
    watchKeeper();
    const auto mark = std::make_shared<char>();
    hold_ = mark;
    return std::make_unique<Hold>(*this, desk, mark);
}

void LinuxPasteboard::finish() {
    state_ = State::gone;
    if (const auto desk = desk_) {
        letGo();
        desk->finish();
    }
}

}  // namespace lomaris
