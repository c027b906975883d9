#pragma once

#include "tests/faults/fault_platform.h"
#include "tests/faults/worlds.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lomaris::test {

/// The commands of the tool.
enum class Command {
    permissionStatus,
    permissionPrompt,
    readText,
    readJson,
    replace,
    replaceIfCurrent,
    diagnose,
    compatibilityCheck,
};

[[nodiscard]] const std::vector<Command>& commands();
/// The command as it is typed.
[[nodiscard]] std::string nameOf(Command command);
[[nodiscard]] inline bool isReplacement(Command command) {
    return command == Command::replace || command == Command::replaceIfCurrent;
}
[[nodiscard]] inline bool isRead(Command command) {
    return command == Command::readText || command == Command::readJson || command == Command::compatibilityCheck;
}

/// The user does something just before the `number`-th call of the tool.
struct Disturbance {
    UserAct act{};
    std::size_t number = 0;
};

/// Another process takes the use of the clipboard just before the `number`-th call of the tool, or before the command
/// begins (0), and keeps it for a time.
struct Contention {
    std::size_t number = 0;
    Duration duration{};
};

/// The tool is killed just before the `number`-th line of the journal, on a desktop with a keeper or without one.
struct Kill {
    enum class Keeper { exists, isMissing };
    /// What the user does at once afterwards.
    enum class Aftermath { none, userCopies };

    std::size_t number = 0;
    Keeper keeper = Keeper::exists;
    Aftermath aftermath = Aftermath::none;
};

/// One command on one desktop, with what goes wrong meanwhile. At most one of disturbance, contention and kill.
struct Scenario {
    WorldPlan world;
    Command command{};
    std::optional<Fault> fault = std::nullopt;
    std::optional<Disturbance> disturbance = std::nullopt;
    std::optional<Contention> contention = std::nullopt;
    std::optional<Kill> kill = std::nullopt;

    [[nodiscard]] bool isDisturbedBy(UserAct act) const { return disturbance && disturbance->act == act; }
};

/// The scenario in words, for a message.
[[nodiscard]] std::string describe(const Scenario& scenario);

/// What became of it.
struct Run {
    int status = 0;
    std::vector<std::string> output;
    std::vector<std::string> error;
    /// Virtual time.
    Duration elapsed{0};
    Happenings happenings;
    std::vector<ToldItems> told;
    /// The clipboard at first, and when the command had ended but not yet the process.
    std::vector<StandingItem> clipboardBefore;
    std::vector<StandingItem> clipboardAfter;
    /// The clipboard in the end, when nothing more was to come from anybody, and whether another process could use it.
    std::vector<StandingItem> clipboardAtEnd;
    bool isClipboardFree = true;
    /// The documents at first, and when the process had ended and the target had pasted what it was told to paste.
    Document targetBefore;
    Document otherBefore;
    Document targetAfter;
    Document otherAfter;
    std::vector<PostedKeyStroke> posted;
    /// The journal of the desktop.
    std::vector<std::string> journal;
    /// Whether there were as many calls as the fault and the disturbance, contention or kill wait for; yes where there
    /// is none.
    bool faultWasReached = true;
    bool disturbanceWasReached = true;

    [[nodiscard]] bool succeeded() const { return error.empty(); }
};

[[nodiscard]] Run perform(const Scenario& scenario);

/// The journal with what the desktop did not see in its place: refused calls and acts of the user.
[[nodiscard]] std::string annotatedJournal(const Run& run);

}  // namespace lomaris::test
