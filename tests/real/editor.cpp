#include "tests/real/editor.h"

#include "tests/real/desktop.h"
#include "tests/support/running_program.h"
#include "tests/support/waiting.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace lomaris::test {

namespace {

constexpr const char* documentName = "document.txt";

}  // namespace

// Each starts a new process, even while another one runs.
EditorProgram mousepad() { return {"Mousepad", {"mousepad", "--disable-server"}}; }
EditorProgram featherPad() { return {"FeatherPad", {"featherpad", "--standalone"}}; }

std::string missingFor(const EditorProgram& program) {
    return missingPrograms({program.commandLine.front(), "xdotool", "xclip"});
}

Editor::Editor(const EditorProgram& program, const std::string& text) {
    const std::filesystem::path document = directory_.path() / documentName;
    std::ofstream(document, std::ios::binary) << text;
    std::vector<std::string> commandLine = program.commandLine;
    commandLine.push_back(document.string());
    process_ = std::make_unique<RunningProgram>(std::move(commandLine));
    const bool isReady = waitFor([this] {
        return processInFront() == processIdentifier() && titleInFront().find(documentName) != std::string::npos;
    });
    if (!isReady) {
        throw std::runtime_error(program.name + " did not show its document");
    }
}

void Editor::mark(int start, int marked, const std::string& expected) {
    std::vector<std::string> keys{"ctrl+Home"};
    keys.insert(keys.end(), static_cast<std::size_t>(start), "Right");
    keys.insert(keys.end(), static_cast<std::size_t>(marked), "shift+Right");
    // A new window may miss the first keys. They can be repeated, as they start at the beginning of the document.
    for (int attempt = 0; attempt < 5; ++attempt) {
        pressKeys(keys);
        for (int look = 0; look < 40; ++look) {
            if (markedText() == expected) {
                return;
            }
        }
    }
    throw std::runtime_error("could not mark \"" + expected + "\"; marked: \"" + markedText().value_or("") + "\"");
}

}  // namespace lomaris::test
