#pragma once

#include "platform/platform.h"
#include "tests/support/running_program.h"
#include "tests/support/temporary_directory.h"

#include <memory>
#include <string>

namespace lomaris::test {

/// A browser in front that shows one editable text with some of it selected. Killed with this object.
///
/// The title of the page has its text and selection, so that a test can check them without the interfaces under test.
class Browser {
public:
    /// The text, and its selected part, after the page was reset.
    static constexpr const char* document = "The quick brown fox jumps";
    static constexpr const char* selection = "brown fox";

    /// Starts it with its own profile. Throws if its page does not appear in front.
    Browser();
    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;
    ~Browser() = default;

    [[nodiscard]] pid_t processIdentifier() const { return program_->processIdentifier(); }

    /// Reloads the page. Throws if the browser does not expose the selection on the accessibility bus.
    void reset();

    /// Lets the page restore its text and its selection, which is faster than a reload. Throws if that fails.
    void restore();

    /// Presses Shift, and returns when the page in front has handled it, and therefore all keys before it. Throws after
    /// a timeout.
    static void handleAllKeys();

    /// Waits until the text and its selection ("10-19") are these. Returns false after a timeout.
    [[nodiscard]] static bool comesToShow(const std::string& text, const std::string& range);

private:
    void waitUntilItExposesTheSelection();
    /// The selection that the browser exposes on the accessibility bus, or the reason why there is none.
    [[nodiscard]] std::string exposedSelection();

    /// The first member, so that it is removed after the browser has ended.
    TemporaryDirectory directory_;
    std::unique_ptr<Platform> platform_;
    std::unique_ptr<RunningProgram> program_;
};

}  // namespace lomaris::test
