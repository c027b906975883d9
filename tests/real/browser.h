#pragma once

#include "platform/platform.h"
#include "tests/support/running_program.h"
#include "tests/support/temporary_directory.h"

#include <memory>
#include <string>

namespace lomaris::test {

/// A browser in front that shows one editable text with some of it selected. Killed with this object.
///
/// The page says in its title what stands in the text and which part of it is selected, so that what the browser has
/// done shows without the interfaces under test.
class Browser {
public:
    /// The text, and the part of it that is selected, whenever the page has been reset.
    static constexpr const char* document = "The quick brown fox jumps";
    static constexpr const char* selection = "brown fox";

    /// Starts it with a profile of its own. Throws where its page does not come to the front.
    Browser();
    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;
    ~Browser() = default;

    [[nodiscard]] pid_t processIdentifier() const { return program_->processIdentifier(); }

    /// Loads the page anew. Throws where the selection does not come to show to programs that assist the user.
    void reset();

    /// Has the page restore its text and its selection, which is faster than loading it again. Throws if it does not.
    void restore();

    /// Presses Shift; returns once the page, in front, has handled it, and so each key before. Throws where it never
    /// does.
    static void handleAllKeys();

    /// Whether the text and its selection ("10-19") come to be these.
    [[nodiscard]] static bool comesToShow(const std::string& text, const std::string& range);

private:
    void waitUntilItExposesTheSelection();
    /// The selection that the browser exposes over the accessibility bus, or why it exposes none.
    [[nodiscard]] std::string exposedSelection();

    /// First, so that it goes when the browser has ended.
    TemporaryDirectory directory_;
    std::unique_ptr<Platform> platform_;
    std::unique_ptr<RunningProgram> program_;
};

}  // namespace lomaris::test
