#include "tests/real/browser.h"

#include "platform/attributes.h"
#include "platform/native_platform.h"
#include "tests/real/desktop.h"
#include "tests/support/waiting.h"
#include "text/utf8.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace lomaris::test {

namespace {

/// A few seconds.
constexpr int looksBeforeSettingAgain = 400;

// The counter distinguishes a reloaded page from the one before.
constexpr const char* page = R"(<!doctype html><meta charset=utf-8><title>Opening</title>
<textarea id=t rows=4 cols=60 autocomplete=off></textarea>
<script>
let shifts = 0;
const show = () => {
  document.title = `page ${count}: "${t.value}" ${t.selectionStart}-${t.selectionEnd} end after ${shifts} shifts`;
};
const count = Number(sessionStorage.count || 0) + 1;
sessionStorage.count = count;
const restore = () => { t.value = 'The quick brown fox jumps'; t.focus(); t.setSelectionRange(10, 19); show(); };
onload = restore;
t.oninput = show;
t.onselectionchange = show;
onkeyup = event => { if (event.key === 'Shift') { ++shifts; show(); } else if (event.key === 'F2') restore(); };
</script>)";

/// The number of the page in front. Empty if there is none.
std::string pageInFront() {
    const std::string title = titleInFront();
    return title.starts_with("page ") ? title.substr(0, title.find(':')) : "";
}

/// The part of its title that says how often Shift was pressed on that page.
std::string shiftsInFront() {
    const std::string title = titleInFront();
    const std::size_t start = title.find(" end after ");
    return start != std::string::npos ? title.substr(start, title.find(" shifts") - start) : "";
}

}  // namespace

Browser::Browser() : platform_(nativePlatform()) {
    std::filesystem::create_directory(directory_.path() / "profile");
    std::ofstream(directory_.path() / "page.html", std::ios::binary) << page;
    program_ = std::make_unique<RunningProgram>(
        std::vector<std::string>{"firefox-esr", "--new-instance", "--profile", (directory_.path() / "profile").string(),
                                 "file://" + (directory_.path() / "page.html").string()});
    if (!waitFor([this] { return processInFront() == processIdentifier() && comesToShow(document, "10-19"); })) {
        throw std::runtime_error("the browser did not show its page");
    }
}

void Browser::reset() {
    const std::string before = pageInFront();
    pressKeys({"F5"});
    const bool isReset = waitFor([&before] { return !pageInFront().empty() && pageInFront() != before; });
    if (!isReset || !comesToShow(document, "10-19")) {
        throw std::runtime_error("the page did not load again");
    }
    waitUntilItExposesTheSelection();
}

void Browser::restore() {
    pressKeys({"F2"});
    if (!comesToShow(document, "10-19")) {
        throw std::runtime_error("the page did not restore its text");
    }
    waitUntilItExposesTheSelection();
}

void Browser::handleAllKeys() {
    const std::string before = shiftsInFront();
    pressKeys({"shift"});
    if (!waitFor([&before] { return !shiftsInFront().empty() && shiftsInFront() != before; })) {
        throw std::runtime_error("the page does not handle its keys");
    }
}

bool Browser::comesToShow(const std::string& text, const std::string& range) {
    const std::string shown = "\"" + text + "\" " + range + " end";
    return waitFor([&shown] { return titleInFront().find(shown) != std::string::npos; });
}

void Browser::waitUntilItExposesTheSelection() {
    // The browser exposes a page some time after it shows it. About once in 300 times it never exposes a selection that
    // the page has set, to any client, until the page sets it again.
    int looks = 0;
    const auto isExposed = [this, &looks] {
        if (exposedSelection() == selection) {
            return true;
        }
        if (++looks % looksBeforeSettingAgain == 0) {
            pressKeys({"F2"});
        }
        return false;
    };
    if (!waitFor(isExposed)) {
        throw std::runtime_error("the browser does not expose its selection: " + exposedSelection());
    }
}

std::string Browser::exposedSelection() {
    Accessibility& accessibility = platform_->accessibility();
    const Element application = accessibility.applicationElement(processIdentifier());
    const ElementAnswer focused = accessibility.copyElementAttribute(application, attribute::focusedUIElement);
    if (!focused.element) {
        return "focused element, error " + std::to_string(static_cast<int>(focused.error));
    }
    const AttributeAnswer selected = accessibility.copyAttribute(*focused.element, attribute::selectedText);
    const Text* const text = std::get_if<Text>(&selected.value);
    return text != nullptr ? utf8FromText(*text)
                           : "selected text, error " + std::to_string(static_cast<int>(selected.error));
}

}  // namespace lomaris::test
