#include "tests/macos_native/text_edit.h"

#include "platform/attributes.h"
#include "tests/support/process.h"
#include "tests/support/waiting.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>
#include <variant>

namespace lomaris::test {

namespace {

std::set<pid_t> runningInstances() {
    std::istringstream output(runProcess({"/usr/bin/pgrep", "-x", "TextEdit"}).output);
    return {std::istream_iterator<pid_t>(output), std::istream_iterator<pid_t>()};
}

/// A running instance that is not one of these, or 0.
pid_t instanceBeside(const std::set<pid_t>& earlier) {
    const std::set<pid_t> now = runningInstances();
    const auto found = std::find_if(now.begin(), now.end(), [&](pid_t process) { return earlier.count(process) == 0; });
    return found == now.end() ? 0 : *found;
}

void require(bool holds, const char* otherwise) {
    if (!holds) {
        throw std::runtime_error(otherwise);
    }
}

}  // namespace

std::string missingForTextEdit(Platform& platform) {
    if (!platform.accessibility().isProcessTrusted(TrustPrompt::none)) {
        return "skipped: allow the program that runs the tests under System Settings > Privacy & Security > "
               "Accessibility, then run them again";
    }
    return "";
}

TextEdit::TextEdit(Platform& platform, const std::string& text) : platform_(platform) {
    const std::filesystem::path document = directory_.path() / "document.txt";
    std::ofstream(document) << text;
    const std::set<pid_t> earlier = runningInstances();
    // Opens a new instance without restoring the windows of the last one.
    const ProcessResult opened = runProcess({"/usr/bin/open", "-n", "-F", "-a", "TextEdit", document.string()});
    require(opened.status == 0, "TextEdit cannot be opened");
    require(waitFor([&] { return (process_ = instanceBeside(earlier)) != 0; }), "TextEdit did not start");
    require(waitFor([this] { return textArea().has_value(); }), "TextEdit shows no text");
    bringToFront();
}

void TextEdit::bringToFront() {
    Accessibility& accessibility = platform_.accessibility();
    static_cast<void>(accessibility.setAttribute(accessibility.applicationElement(process_), "AXFrontmost", true));
    require(waitFor([this] {
                const auto inFront = platform_.workspace().frontmostApplication();
                return inFront && inFront->processIdentifier == process_;
            }),
            "TextEdit did not come to the front");
}

void TextEdit::select(TextRange range) {
    require(waitFor([&] {
                const auto area = textArea();
                Accessibility& accessibility = platform_.accessibility();
                return area &&
                       accessibility.setAttribute(*area, attribute::selectedTextRange, range) == AXError::success &&
                       accessibility.copyAttribute(*area, attribute::selectedTextRange).value == AttributeValue(range);
            }),
            "TextEdit does not select");
}

Text TextEdit::contents() {
    const auto area = textArea();
    require(area.has_value(), "TextEdit shows no text");
    return std::get<Text>(platform_.accessibility().copyAttribute(*area, attribute::value).value);
}

void TextEdit::end() {
    if (process_ == 0) {
        return;
    }
    const pid_t process = std::exchange(process_, 0);
    kill(process, SIGKILL);
    // The process is a child of launchd, which reaps it.
    static_cast<void>(waitFor([process] { return kill(process, 0) != 0 && errno == ESRCH; }));
}

std::optional<Element> TextEdit::textArea() {
    Accessibility& accessibility = platform_.accessibility();
    const Element application = accessibility.applicationElement(process_);
    return accessibility.copyElementAttribute(application, attribute::focusedUIElement).element;
}

}  // namespace lomaris::test
