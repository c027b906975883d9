#include "tests/real/terminal.h"

#include "tests/real/desktop.h"
#include "tests/support/process.h"
#include "tests/support/waiting.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace lomaris::test {

namespace {

/// The job keeps the signals of the terminal's keys enabled, and reads each byte at once. It ends when the terminal is
/// gone: the signal for that is noted as well, and `read` fails with 1 then, and with more than 128 after a signal.
constexpr const char* job = R"(#!/bin/bash
cd "${BASH_SOURCE[0]%/*}" || exit
stty -icanon -echo
for signal in HUP INT QUIT TSTP; do
    trap "printf '$signal ' >>received" "$signal"
done
printf 'wonderful words\r\n'
: >ready
while true; do
    if IFS= read -r -s -n 1 -d '' byte; then
        printf '%s' "$byte" >>received
    elif [ $? -eq 1 ]; then
        exit
    fi
done
)";

void xdotool(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "xdotool");
    if (const ProcessResult result = runProcess(arguments); result.status != 0) {
        throw std::runtime_error("xdotool: " + result.error);
    }
}

}  // namespace

TerminalProgram xfceTerminal() {
    return {
        "XfceTerminal",
        {"xfce4-terminal", "--disable-server", "--hide-menubar", "--hide-toolbar", "--hide-scrollbar", "--execute"}};
}
TerminalProgram xterm() { return {"XTerm", {"xterm", "-e"}}; }

std::string missingFor(const TerminalProgram& program) {
    return missingPrograms({program.commandLine.front(), "xdotool", "xclip"});
}

Terminal::Terminal(const TerminalProgram& program) {
    const std::filesystem::path script = directory_.path() / "job";
    std::ofstream(script, std::ios::binary) << job;
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    std::vector<std::string> commandLine = program.commandLine;
    commandLine.push_back(script.string());
    process_ = std::make_unique<RunningProgram>(std::move(commandLine));
    const bool isReady = waitFor([this] {
        return processInFront() == processIdentifier() && std::filesystem::exists(directory_.path() / "ready");
    });
    if (!isReady) {
        throw std::runtime_error(program.name + " did not run its job");
    }
    const std::string active = runProcess({"xdotool", "getactivewindow"}).output;
    window_ = active.substr(0, active.find('\n'));
}

void Terminal::selectWord() const {
    // The terminal draws the words with a delay.
    const bool isSelected = waitFor([this] {
        xdotool({"mousemove", "--window", window_, "20", "7", "click", "--repeat", "2", "--delay", "20", "1"});
        if (markedText() == word) {
            return true;
        }
        // Wait, so that the next two clicks do not count as part of the same multiple click.
        xdotool({"mousemove", "--window", window_, "60", "60", "click", "1", "sleep", "0.4"});
        return false;
    });
    if (!isSelected) {
        throw std::runtime_error("could not select a word; selected: \"" + markedText().value_or("") + "\"");
    }
}

void Terminal::setClass(const std::string& className) const { xdotool({"set_window", "--class", className, window_}); }

std::string Terminal::received() const {
    std::ifstream file(directory_.path() / "received", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace lomaris::test
