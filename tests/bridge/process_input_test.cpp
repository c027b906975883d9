#include "tests/bridge/process_world.h"
#include "tests/support/temporary_directory.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <future>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace lomaris {
namespace {

using test::failure;
using test::ProcessOptions;
using test::ProcessResult;
using test::runTool;
using test::withoutDesktop;

using namespace std::chrono_literals;

const ProcessResult inputFailure = failure("Could not read standard input.");
const ProcessResult invalidRequest = failure("Guarded replacement request is invalid JSON.");
const ProcessResult selectionChanged = failure(
    "The original selection changed while Lomaris was working, so your document was left untouched. Select the text "
    "and try again.");

const std::string request =
    R"({"expectedText":"brown fox","replacementText":"red fox","expectedProcessIdentifier":812,)"
    R"("expectedInputActivity":{"keyDownCount":1,"leftMouseDownCount":2,"rightMouseDownCount":3,)"
    R"("otherMouseDownCount":4}})";

/// Runs the tool with a file as its standard input.
ProcessResult runToolOn(const std::string& file, const std::string& command) {
    const std::vector<std::string> commandLine = {"sh", "-c", R"(exec "$0" "$1" < "$2")", LOMARIS_TOOL, command, file};
    return test::runProcess(commandLine, withoutDesktop());
}

ProcessResult runWithInput(const std::vector<std::string>& arguments, const std::string& input) {
    ProcessOptions options = withoutDesktop();
    options.input = input;
    return runTool(arguments, options);
}

/// The tool while the other end of its standard input is open.
class WaitingTool {
public:
    explicit WaitingTool(const std::string& arguments) {
        if (mkfifo(path_.c_str(), 0600) != 0) {
            throw std::system_error(errno, std::generic_category(), "mkfifo");
        }
        const std::vector<std::string> commandLine = {"sh", "-c", "exec \"$0\" " + arguments + " < \"$1\"",
                                                      LOMARIS_TOOL, path_};
        result_ =
            std::async(std::launch::async, [commandLine] { return test::runProcess(commandLine, withoutDesktop()); });
        // Blocks until the tool opens the other end.
        writer_ = open(path_.c_str(), O_WRONLY | O_CLOEXEC);
    }
    WaitingTool(const WaitingTool&) = delete;
    WaitingTool& operator=(const WaitingTool&) = delete;
    ~WaitingTool() { closeInput(); }

    void write(std::string_view bytes) {
        ASSERT_EQ(::write(writer_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    void closeInput() {
        if (writer_ >= 0) {
            close(writer_);
            writer_ = -1;
        }
    }
    [[nodiscard]] bool endsWithin(std::chrono::milliseconds time) {
        return result_.wait_for(time) == std::future_status::ready;
    }
    ProcessResult result() { return result_.get(); }

private:
    test::TemporaryDirectory directory_;
    std::string path_ = (directory_.path() / "input").string();
    std::future<ProcessResult> result_;
    int writer_ = -1;
};

using ProcessInputWithoutDesktop = test::WithoutDesktopTest;

constexpr auto timeForAnEarlyEnd = 200ms;
constexpr auto longerThanAnyRun = 30s;

TEST(ProcessInput, IsReportedIfClosed) {
    ProcessOptions options = withoutDesktop();
    options.closedDescriptors = {0};
    EXPECT_EQ(runTool({"replace-selection"}, options), inputFailure);
    EXPECT_EQ(runTool({"replace-selection-request"}, options), inputFailure);
    options.closedDescriptors = {0, 1};
    EXPECT_EQ(runTool({"replace-selection-request"}, options), inputFailure);
    options.closedDescriptors = {0, 1, 2};
    EXPECT_EQ(runTool({"replace-selection-request"}, options), (ProcessResult{1, "", ""}));
}

TEST(ProcessInput, IsReportedIfADirectory) {
    const test::TemporaryDirectory directory;
    EXPECT_EQ(runToolOn(directory.path().string(), "replace-selection"), inputFailure);
    EXPECT_EQ(runToolOn(directory.path().string(), "replace-selection-request"), inputFailure);
}

TEST(ProcessInput, IsReportedIfEmpty) {
    const auto noReplacement = failure("Replacement text is empty. Supply --replacement <text> or pipe text to stdin.");
    const auto noRequest = failure("Expected a guarded replacement request on stdin.");
    EXPECT_EQ(runWithInput({"replace-selection", "--delay", "60"}, ""), noReplacement);
    EXPECT_EQ(runWithInput({"replace-selection-request", "--delay", "60"}, ""), noRequest);
    EXPECT_EQ(runToolOn("/dev/null", "replace-selection"), noReplacement);
    EXPECT_EQ(runToolOn("/dev/null", "replace-selection-request"), noRequest);
}

TEST(ProcessInput, IsReportedIfNotUtf8) {
    EXPECT_EQ(runWithInput({"replace-selection"}, "a\xff"), failure("Replacement input must be valid UTF-8."));
    EXPECT_EQ(runWithInput({"replace-selection"}, "a\xe2\x82"), failure("Replacement input must be valid UTF-8."));
}

TEST(ProcessInput, IsReportedIfTheRequestIsTruncated) {
    EXPECT_EQ(runWithInput({"replace-selection-request"}, request.substr(0, request.size() - 1)), invalidRequest);
    EXPECT_EQ(runWithInput({"replace-selection-request"}, request.substr(0, request.size() / 2)), invalidRequest);
    EXPECT_EQ(runWithInput({"replace-selection-request"}, "{"), invalidRequest);
    EXPECT_EQ(runWithInput({"replace-selection-request"}, std::string(1, '\0')), invalidRequest);
}

TEST_F(ProcessInputWithoutDesktop, IsReadCompletelyForARequest) {
    // More than the capacity of a pipe, most of it white space.
    EXPECT_EQ(runWithInput({"replace-selection-request"}, std::string(300000, ' ') + request), selectionChanged);
    EXPECT_EQ(runWithInput({"replace-selection-request"}, request + std::string(300000, '\n')), selectionChanged);
}

TEST_F(ProcessInputWithoutDesktop, IsReadCompletelyForAReplacement) {
    EXPECT_EQ(runWithInput({"replace-selection"}, std::string(300000, 'x')), test::permissionRequired());
}

TEST(ProcessInput, IsReportedIfALongReplacementEndsInInvalidUtf8) {
    EXPECT_EQ(runWithInput({"replace-selection"}, std::string(300000, 'x') + "\xff"),
              failure("Replacement input must be valid UTF-8."));
}

TEST_F(ProcessInputWithoutDesktop, IsAwaitedUntilItsWriterCloses) {
    WaitingTool tool("replace-selection-request");
    tool.write(request);
    EXPECT_FALSE(tool.endsWithin(timeForAnEarlyEnd));
    tool.write("\n");
    EXPECT_FALSE(tool.endsWithin(timeForAnEarlyEnd));
    tool.closeInput();
    ASSERT_TRUE(tool.endsWithin(longerThanAnyRun));
    EXPECT_EQ(tool.result(), selectionChanged);
}

TEST_F(ProcessInputWithoutDesktop, IsAwaitedIfStillEmpty) {
    WaitingTool tool("replace-selection");
    EXPECT_FALSE(tool.endsWithin(timeForAnEarlyEnd));
    tool.write("x");
    tool.closeInput();
    ASSERT_TRUE(tool.endsWithin(longerThanAnyRun));
    EXPECT_EQ(tool.result(), test::permissionRequired());
}

TEST_F(ProcessInputWithoutDesktop, IsNotReadIfTheReplacementIsAnArgument) {
    WaitingTool tool("replace-selection --replacement x");
    ASSERT_TRUE(tool.endsWithin(longerThanAnyRun));
    EXPECT_EQ(tool.result(), test::permissionRequired());
}

}  // namespace
}  // namespace lomaris
