#include "tests/real/desktop.h"

#include "tests/real/running_program.h"
#include "tests/real/waiting.h"
#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>

namespace lomaris::test {

namespace {

/// Keys that tests press must never reach the desktop of the person who runs them.
class PrivateDesktopOnly : public testing::Environment {
public:
    void SetUp() override {
        ASSERT_NE(std::getenv("LOMARIS_VIRTUAL_DESKTOP"), nullptr)
            << "these tests press keys; run them through tools/virtual-desktop";
    }
};

const auto* const environment = testing::AddGlobalTestEnvironment(new PrivateDesktopOnly);

std::string packageOf(const std::string& program) { return program == "Xvfb" ? "xvfb" : program; }

std::string firstLineOf(const std::string& text) { return text.substr(0, text.find('\n')); }

std::optional<pid_t> processOf(const std::string& line) {
    const long number = std::strtol(line.c_str(), nullptr, 10);
    return number > 0 ? std::optional(static_cast<pid_t>(number)) : std::nullopt;
}

/// Moves the hands of the person at the desktop.
void handle(const std::vector<std::string>& commandLine) {
    if (const ProcessResult result = runProcess(commandLine); result.status != 0) {
        throw std::runtime_error("could not use keyboard and pointer: " + result.error);
    }
}

}  // namespace

std::string missingPrograms(const std::vector<std::string>& programs) {
    std::string missing;
    for (const std::string& program : programs) {
        if (!isInstalled(program)) {
            missing += program + " is missing; install the Debian package " + packageOf(program) + ". ";
        }
    }
    return missing;
}

std::optional<pid_t> processInFront() {
    const ProcessResult result = runProcess({"xdotool", "getactivewindow", "getwindowpid"});
    return result.status == 0 ? processOf(firstLineOf(result.output)) : std::nullopt;
}

std::string titleInFront() {
    const ProcessResult result = runProcess({"xdotool", "getactivewindow", "getwindowname"});
    return result.status == 0 ? firstLineOf(result.output) : "";
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
