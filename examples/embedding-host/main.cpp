// A host in small: captures the selection of the application in front, and on Enter replaces it if it is still the
// same.
//
//     embedding-host [--chat] [--no-clipboard] REPLACEMENT

#include "accessibility/model/bridge_error.h"
#include "accessibility/model/capture_trace.h"
#include "accessibility/model/guard_trace.h"
#include "accessibility/service/accessibility_service.h"
#include "accessibility/service/app_selection_session.h"
#include "platform/native_platform.h"
#include "text/utf8.h"

#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace {

using namespace std::chrono_literals;

struct Request {
    bool chat = false;
    bool clipboard = true;
    lomaris::Text replacement;
};

std::optional<Request> parse(int argumentCount, char** arguments) {
    Request request;
    int index = 1;
    for (; index < argumentCount - 1; ++index) {
        const std::string_view argument = arguments[index];
        request.chat = request.chat || argument == "--chat";
        request.clipboard = request.clipboard && argument != "--no-clipboard";
        if (argument != "--chat" && argument != "--no-clipboard") {
            return std::nullopt;
        }
    }
    if (index != argumentCount - 1) {
        return std::nullopt;
    }
    request.replacement = lomaris::textFromUtf8(arguments[index]);
    return request;
}

/// The session outlives the service that captured it; only the platform must stay.
std::unique_ptr<lomaris::AppSelectionSession> capture(lomaris::Platform& platform, const Request& request) {
    lomaris::LomarisAccessibilityService service(platform);
    const lomaris::SelectionReadOptions options{.limits = {.before = 500, .after = 500},
                                                .allowClipboardFallback = request.clipboard};
    return request.chat ? service.captureSelectionOrChat(options) : service.captureSelection(options);
}

/// A text on one line.
std::string line(lomaris::TextView text) {
    std::string shown;
    for (const char byte : lomaris::utf8FromText(text)) {
        shown += byte == '\n' ? "\\n" : std::string(1, byte);
    }
    return shown;
}

void print(const lomaris::AppSelectionDetails& details) {
    std::cout << "applicationName=" << line(details.applicationName) << '\n'
              << "selectedText=" << line(details.selectedText) << '\n'
              << "contextBefore=" << line(details.contextBefore) << '\n'
              << "contextAfter=" << line(details.contextAfter) << '\n'
              << "selectionMethod=" << line(details.selectionMethod) << '\n'
              << "usesClipboardFallback=" << (details.usesClipboardFallback ? "yes" : "no") << std::endl;
}

/// Whether the user pressed Enter, rather than closing the input. A program with windows waits in its main loop; on
/// macOS that serves the library too, elsewhere a timer turns the run loop for an instant. Without it nobody can paste
/// what the library has put back on an X11 clipboard.
bool waitForEnter(lomaris::Scheduling& scheduling) {
    pollfd standardInput{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
    while (poll(&standardInput, 1, 0) == 0) {
        scheduling.runLoopSlice(20ms);
    }
    std::string input;
    return static_cast<bool>(std::getline(std::cin, input));
}

/// Replaces the selection, and turns the run loop until the user's clipboard is back after a paste: the text must stay
/// there until the application has fetched it, and no longer than 2.5 seconds. A program whose main loop runs on anyway
/// just calls `replaceIfCurrent`.
void replace(lomaris::Platform& platform, lomaris::AppSelectionSession& session, lomaris::TextView replacement) {
    lomaris::Scheduling& scheduling = platform.scheduling();
    const std::int64_t before = platform.pasteboard().changeCount();
    session.replaceIfCurrent(replacement);
    const std::int64_t after = platform.pasteboard().changeCount();
    const lomaris::Moment end = scheduling.now() + 3s;
    while (after != before && platform.pasteboard().changeCount() == after && scheduling.now() < end) {
        scheduling.runLoopSlice(20ms);
    }
}

void printTraces() {
    for (const auto& [name, value] : lomaris::SelectionCaptureTrace::shared().snapshot()) {
        std::cout << "capture." << name << '=' << value << '\n';
    }
    for (const auto& [name, value] : lomaris::ReplacementGuardTrace::shared().snapshot()) {
        std::cout << "guard." << name << '=' << value << '\n';
    }
}

int fail(std::string_view message) {
    std::cerr << "embedding-host: " << message << '\n';
    return 1;
}

int run(const Request& request) {
    // Made here rather than by the service, as this program has no main loop that would turn its run loop.
    const auto platform = lomaris::nativePlatform(lomaris::ProcessRole::host, LOMARIS_CLIPBOARD_KEEPER);
    try {
        const auto session = capture(*platform, request);
        print(session->details());
        if (!waitForEnter(platform->scheduling())) {
            return fail("Nothing was submitted.");
        }
        session->markSubmitted();
        replace(*platform, *session, request.replacement);
    } catch (const lomaris::BridgeError& error) {
        return fail(lomaris::utf8FromText(error.errorDescription()));
    }
    return 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    // Other programs may close their end of a connection at any time.
    std::signal(SIGPIPE, SIG_IGN);
    const auto request = parse(argumentCount, arguments);
    if (!request) {
        return fail("Usage: embedding-host [--chat] [--no-clipboard] REPLACEMENT");
    }
    const int status = run(*request);
    printTraces();
    return status;
}
