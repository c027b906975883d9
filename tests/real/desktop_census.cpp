#include "tests/real/desktop_census.h"

#include "tests/support/process.h"
#include "tests/x11/clipboard_peer.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace lomaris::test {

namespace {

using std::filesystem::path;

std::string contentsOf(const path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// The variable that every process of the private desktop inherits.
std::string markOfTheDesktop() {
    const char* const directory = std::getenv("LOMARIS_VIRTUAL_DESKTOP");
    if (directory == nullptr) {
        throw std::runtime_error("not on a private desktop; run this through tools/virtual-desktop");
    }
    return std::string("LOMARIS_VIRTUAL_DESKTOP=") + directory + '\0';
}

bool isNumber(const std::string& name) { return name.find_first_not_of("0123456789") == std::string::npos; }

/// Calls `visit` with the directory of each process of the private desktop in /proc. The environment of a process
/// that has ended is empty.
void forEachProcess(const std::function<void(const path&)>& visit) {
    const std::string mark = markOfTheDesktop();
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        if (isNumber(entry.path().filename().string()) &&
            contentsOf(entry.path() / "environ").find(mark) != std::string::npos) {
            visit(entry.path());
        }
    }
}

/// The file that the process executes. Empty if the process has ended.
path programOf(const path& process) {
    std::error_code ignored;
    return std::filesystem::read_symlink(process / "exe", ignored);
}

bool isTool(const path& process) {
    static const path tool = std::filesystem::canonical(toolCommandLine({}).front());
    return programOf(process) == tool;
}

/// Zero if the process has ended.
std::size_t countOpenFiles(const path& process) {
    std::error_code error;
    std::size_t count = 0;
    for (std::filesystem::directory_iterator files(process / "fd", error), end; !error && files != end;
         files.increment(error)) {
        ++count;
    }
    return count;
}

std::size_t countWindowsBelow(xcb_connection_t* connection, xcb_window_t window) {
    const std::unique_ptr<xcb_query_tree_reply_t, FreeEvent> tree(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
    if (!tree) {
        return 0;
    }
    std::size_t count = 0;
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());
    for (int index = 0; index < xcb_query_tree_children_length(tree.get()); ++index) {
        count += 1 + countWindowsBelow(connection, children[index]);
    }
    return count;
}

std::size_t countWindows() {
    const ClipboardPeer peer;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(peer.handle())).data->root;
    return countWindowsBelow(peer.handle(), root);
}

}  // namespace

DesktopCensus takeCensus() {
    DesktopCensus census;
    census.windows = countWindows();
    forEachProcess([&census](const path& process) {
        if (isTool(process)) {
            ++census.toolProcesses;
            return;
        }
        const std::string name = programOf(process).filename().string();
        if (name.empty()) {
            return;
        }
        ProgramCount& program = census.programs[name];
        ++program.processes;
        program.openFiles += countOpenFiles(process);
    });
    return census;
}

std::vector<pid_t> toolProcesses() {
    std::vector<pid_t> processes;
    forEachProcess([&processes](const path& process) {
        if (isTool(process)) {
            processes.push_back(std::stoi(process.filename().string()));
        }
    });
    return processes;
}

}  // namespace lomaris::test
