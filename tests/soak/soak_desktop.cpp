#include "tests/soak/soak_desktop.h"

#include "tests/real/desktop.h"
#include "tests/real/desktop_census.h"
#include "tests/real/expected_clipboard.h"
#include "tests/real/guarded_request.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <exception>
#include <functional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace lomaris::test {

namespace {

using nlohmann::json;

/// One emoji before the words: 1 character for the editor, 2 units for the tool.
const std::string beforeTheWords = "\U0001F44B ";
const std::string afterTheWords = " jumps\nover the lazy dog";
constexpr int rangeLocation = 3;

/// The times that the tool waits for one copy, and at most for three copies in a row.
constexpr double oneCopyMilliseconds = 1000;
constexpr double threeCopiesMilliseconds = 4000;

struct Operation {
    std::string name;
    std::string route;
};

const std::string direct = "direct";
const std::string byClipboard = "clipboard";
const std::string read = "read";
const std::string replace = "guarded replacement";
const std::string refuse = "refused replacement";

struct ApplicationWasSlow {};

void expectResult(const ProcessResult& actual, const ProcessResult& expected) {
    if (actual != expected) {
        throw std::runtime_error("the tool ended with " + testing::PrintToString(actual) + ", expected " +
                                 testing::PrintToString(expected));
    }
}

void expectClipboard(const ClipboardContents& expected) {
    if (const ClipboardContents actual = clipboardContents(); actual != expected) {
        throw std::runtime_error("the clipboard holds " + describe(actual) + ", expected " + describe(expected));
    }
}

/// Only the process of the tool that serves the replacement may be left.
void expectOneServer() {
    if (!waitFor([] { return toolProcesses().size() <= 1; })) {
        throw std::runtime_error(std::to_string(toolProcesses().size()) + " processes of the tool are left");
    }
}

void expectEditorDocument(const std::string& text) {
    if (!documentBecomes(text)) {
        throw std::runtime_error("the document is \"" + markedText().value_or("") + "\", expected \"" + text + '"');
    }
}

void expectBrowserDocument(const std::string& text, const std::string& range) {
    if (!Browser::comesToShow(text, range)) {
        throw std::runtime_error("the page shows " + titleInFront() + ", expected \"" + text + "\" " + range);
    }
}

json expectSelection(const ProcessResult& result, json expected) {
    if (result.status != 0 || !result.error.empty()) {
        throw std::runtime_error("the tool ended with " + testing::PrintToString(result));
    }
    json selection = json::parse(result.output);
    for (const auto& [key, value] : expected.items()) {
        if (selection.value(key, json()) != value) {
            throw std::runtime_error("the selection is " + selection.dump() + ", expected " + expected.dump());
        }
    }
    return selection;
}

/// Runs the tool, calls `check` with its result and adds the call to the figures. If `check` throws, throws
/// `ApplicationWasSlow` if the call waited for a late copy, otherwise the error with the name of the operation.
void perform(Figures& figures, const Operation& operation, const std::vector<std::string>& arguments,
             const std::string& input, const std::function<void(const ProcessResult&)>& check) {
    const ToolCall call = callTool(arguments, input);
    try {
        check(call.result);
        figures.add(operation.name, operation.route, call, Figures::Outcome::expected);
    } catch (const std::exception& difference) {
        if (operation.route == byClipboard && call.milliseconds > oneCopyMilliseconds &&
            call.milliseconds < threeCopiesMilliseconds) {
            figures.add(operation.name, operation.route, call, Figures::Outcome::slowApplication);
            throw ApplicationWasSlow();
        }
        figures.add(operation.name, operation.route, call, Figures::Outcome::failed);
        throw std::runtime_error(operation.name + ", " + operation.route + ": " + difference.what());
    }
}

json performRead(Figures& figures, const std::string& route, const json& expected) {
    json selection;
    perform(figures, {read, route}, {"read-selection", "--json"}, "", [&](const ProcessResult& result) {
        selection = expectSelection(result, expected);
        expectClipboard(UserClipboard::contents());
    });
    return selection;
}

void performRequest(Figures& figures, const Operation& operation, const json& request,
                    const std::function<void(const ProcessResult&)>& check) {
    perform(figures, operation, {"replace-selection-request"}, request.dump(), check);
}

}  // namespace

SoakDesktop::SoakDesktop()
    : editor_(std::make_unique<Editor>(mousepad(), beforeTheWords + current_ + afterTheWords)),
      browser_(std::make_unique<Browser>()) {}

RoundResult SoakDesktop::runRound(Figures& figures) {
    ownClipboard();
    RoundResult result = RoundResult::counts;
    try {
        runInEditor(figures);
        runInBrowser(figures);
    } catch (const ApplicationWasSlow&) {
        result = RoundResult::applicationWasSlow;
    }
    ownClipboard();
    return result;
}

void SoakDesktop::selectTheWords() {
    // Moves past the emoji and the space, then selects two words.
    pressKeys({"ctrl+Home", "Right", "Right", "ctrl+shift+Right", "ctrl+shift+Right"});
    if (!waitFor([this] { return markedText() == current_; })) {
        throw std::runtime_error("the editor did not mark \"" + current_ + "\": " + markedText().value_or(""));
    }
}

void SoakDesktop::runInEditor(Figures& figures) {
    bringToFront(editor_->processIdentifier());
    selectTheWords();
    const json first = performRead(figures, direct,
                                   {{"selectedText", current_},
                                    {"contextBefore", beforeTheWords},
                                    {"contextAfter", afterTheWords},
                                    {"selectedRange", {{"location", rangeLocation}, {"length", current_.size()}}},
                                    {"selectionMethod", "accessibility"}});
    performRequest(figures, {replace, direct}, requestFor(first, next_), [this](const ProcessResult& result) {
        expectResult(result, requestCarriedOut);
        expectEditorDocument(beforeTheWords + next_ + afterTheWords);
        expectClipboard(UserClipboard::contents());
    });
    std::swap(current_, next_);

    selectTheWords();
    const json second = performRead(figures, direct, {{"selectedText", current_}});
    pressKeys({"shift+Right"});
    if (!waitFor([this] { return markedText() == current_ + " "; })) {
        throw std::runtime_error("the editor did not extend its selection");
    }
    performRequest(figures, {refuse, direct}, requestFor(second, next_), [this](const ProcessResult& result) {
        expectResult(result, requestRefused);
        expectEditorDocument(beforeTheWords + current_ + afterTheWords);
        expectClipboard(UserClipboard::contents());
    });
}

void SoakDesktop::runInBrowser(Figures& figures) {
    const std::string replacement = "red fox";
    bringToFront(browser_->processIdentifier());
    browser_->restore();
    const json selection = performRead(
        figures, byClipboard, {{"selectedText", Browser::selection}, {"selectionMethod", "keyboardClipboardFallback"}});

    pressKeys({"shift+Right"});
    expectBrowserDocument(Browser::document, "10-20");
    performRequest(figures, {refuse, byClipboard}, requestFor(selection, replacement), [](const ProcessResult& result) {
        expectResult(result, requestRefused);
        expectClipboard(UserClipboard::contents());
        // Returns after pending keys have had their effect.
        Browser::handleAllKeys();
        expectBrowserDocument(Browser::document, "10-20");
    });

    browser_->restore();
    performRequest(figures, {replace, byClipboard}, requestFor(selection, replacement),
                   [&replacement](const ProcessResult& result) {
                       expectResult(result, requestCarriedOut);
                       expectBrowserDocument("The quick red fox jumps", "17-17");
                       expectClipboard(pastedContents(replacement));
                       expectOneServer();
                   });
}

void SoakDesktop::ownClipboard() {
    // The next owner starts before the previous one ends, so that the clipboard always has an owner.
    auto next = std::make_unique<UserClipboard>();
    clipboard_ = std::move(next);
}

}  // namespace lomaris::test
