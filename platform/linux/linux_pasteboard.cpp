#include "platform/linux/linux_pasteboard.h"

#include "platform/inert_pasteboard_hold.h"
#include "platform/linux/clipboard_desk.h"
#include "platform/linux/clipboard_successor.h"

#include <utility>

namespace lomaris {

std::shared_ptr<ClipboardDesk> LinuxPasteboard::desk() {
    if (state_ == State::unopened) {
        state_ = State::gone;
        auto opened = std::make_shared<ClipboardDesk>();
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
    desk_.reset();
    state_ = State::gone;
}

void LinuxPasteboard::serve() {
    if (const auto desk = this->desk()) {
        desk->serve();
        // A connection that is lost has input for ever.
        static_cast<void>(this->desk());
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
    }
}

bool LinuxPasteboard::writeItems(std::vector<NewPasteboardItem> items) {
    const auto desk = this->desk();
    return desk && desk->write(std::move(items));
}

std::unique_ptr<PasteboardHold> LinuxPasteboard::tryHold() { return std::make_unique<InertPasteboardHold>(); }

void LinuxPasteboard::finish() {
    state_ = State::gone;
    const auto desk = desk_;
    if (!desk) {
        return;
    }
    letGo();
    if (desk->isAlive() && desk->keepPromises()) {
        static_cast<void>(leaveSuccessor(desk->descriptor(), [&desk] { desk->serveToTheEnd(); }));
    }
}

}  // namespace lomaris
