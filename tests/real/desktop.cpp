#include "tests/real/desktop.h"

#include "tests/support/process.h"
#include "tests/support/waiting.h"
#include "tests/x11/clipboard_peer.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace lomaris::test {

namespace {

std::string firstLineOf(const std::string& text) { return text.substr(0, text.find('\n')); }

std::string bytesOf(ClipboardPeer& peer, xcb_window_t window, const char* property) {
    constexpr std::uint32_t longestProperty = 16384;
    const auto cookie =
        xcb_get_property(peer.handle(), 0, window, peer.atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty);
    const std::unique_ptr<xcb_get_property_reply_t, FreeEvent> reply(
        xcb_get_property_reply(peer.handle(), cookie, nullptr));
    if (!reply) {
        return "";
    }
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

std::optional<std::uint32_t> numberOf(ClipboardPeer& peer, xcb_window_t window, const char* property) {
    const std::string bytes = bytesOf(peer, window, property);
    std::uint32_t number = 0;
    if (bytes.size() < sizeof number) {
        return std::nullopt;
    }
    std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

std::optional<xcb_window_t> windowInFront(ClipboardPeer& peer) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(peer.handle())).data->root;
    const auto window = numberOf(peer, root, "_NET_ACTIVE_WINDOW");
    return window && *window != XCB_WINDOW_NONE ? window : std::nullopt;
}

/// Runs xdotool, which acts as the user's keyboard and mouse.
void handle(const std::vector<std::string>& commandLine) {
    if (const ProcessResult result = runProcess(commandLine); result.status != 0) {
        throw std::runtime_error("could not use keyboard and pointer: " + result.error);
    }
}

}  // namespace

std::optional<pid_t> processInFront() {
    ClipboardPeer peer;
    const auto window = windowInFront(peer);
    const auto process = window ? numberOf(peer, *window, "_NET_WM_PID") : std::nullopt;
    return process ? std::optional(static_cast<pid_t>(*process)) : std::nullopt;
}

std::string titleInFront() {
    ClipboardPeer peer;
    const auto window = windowInFront(peer);
    return window ? firstLineOf(bytesOf(peer, *window, "_NET_WM_NAME")) : "";
}

void bringToFront(pid_t processIdentifier) {
    const bool isInFront = waitFor([processIdentifier] {
        if (processInFront() == processIdentifier) {
            return true;
        }
        const ProcessResult windows =
            runProcess({"xdotool", "search", "--onlyvisible", "--pid", std::to_string(processIdentifier)});
        const ProcessResult ignored = runProcess({"xdotool", "windowactivate", firstLineOf(windows.output)});
        return false;
    });
    if (!isInFront) {
        throw std::runtime_error("the window did not come to the front");
    }
}

void bringToFront(const std::string& title) {
    const bool isInFront = waitFor([&title] {
        if (titleInFront().find(title) != std::string::npos) {
            return true;
        }
        const ProcessResult windows = runProcess({"xdotool", "search", "--onlyvisible", "--name", title});
        const ProcessResult ignored = runProcess({"xdotool", "windowactivate", firstLineOf(windows.output)});
        return false;
    });
    if (!isInFront) {
        throw std::runtime_error("no window with the title \"" + title + "\" came to the front");
    }
}

void pressKeys(const std::vector<std::string>& keys) {
    std::vector<std::string> commandLine{"xdotool", "key", "--delay", "2"};
    commandLine.insert(commandLine.end(), keys.begin(), keys.end());
    handle(commandLine);
}

void movePointerAside() { handle({"xdotool", "mousemove", "10000", "10000"}); }

void clickAside() {
    movePointerAside();
    handle({"xdotool", "click", "2"});
}

std::optional<std::string> markedText() {
    const ProcessResult result = runProcess({"xclip", "-out", "-selection", "primary", "-target", "UTF8_STRING"});
    return result.status == 0 ? std::optional(result.output) : std::nullopt;
}

bool documentBecomes(const std::string& text) {
    return waitFor([&text] {
        pressKeys({"ctrl+Home", "ctrl+shift+End"});
        return markedText() == text;
    });
}

}  // namespace lomaris::test
