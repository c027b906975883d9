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

/// An action of the user just before the `number`-th call of the tool.
struct Disturbance {
    UserAct act{};
    std::size_t number = 0;
};

/// Another process begins to use the clipboard just before the `number`-th call of the tool, or before the command (0),
/// and uses it for `duration`.
struct Contention {
    std::size_t number = 0;
    Duration duration{};
};

/// The tool is killed just before the `number`-th line of the journal, on a desktop with or without a keeper.
struct Kill {
    enum class Keeper { exists, isMissing };
    /// What the user does just after the kill.
    enum class Aftermath { none, userCopies };

    std::size_t number = 0;
    Keeper keeper = Keeper::exists;
    Aftermath aftermath = Aftermath::none;
};

/// One command on one desktop, with its faults. At most one of disturbance, contention and kill is set.
struct Scenario {
    WorldPlan world;
    Command command{};
    std::optional<Fault> fault = std::nullopt;
    std::optional<Disturbance> disturbance = std::nullopt;
    std::optional<Contention> contention = std::nullopt;
    std::optional<Kill> kill = std::nullopt;

    [[nodiscard]] bool isDisturbedBy(UserAct act) const { return disturbance && disturbance->act == act; }
};

/// A description of the scenario for messages.
[[nodiscard]] std::string describe(const Scenario& scenario);

/// The result of a scenario.
struct Run {
    int status = 0;
    std::vector<std::string> output;
    std::vector<std::string> error;
    /// In virtual time.
    Duration elapsed{0};
    Happenings happenings;
    std::vector<ToldItems> told;
    /// The clipboard before the command, and after the command but before the end of the process.
    std::vector<StandingItem> clipboardBefore;
    std::vector<StandingItem> clipboardAfter;
    /// The clipboard once all programs have finished their actions, and whether another process could use it.
    std::vector<StandingItem> clipboardAtEnd;
    bool isClipboardFree = true;
    /// The documents before the command, and after the end of the process, when the target has pasted what it was told
    /// to paste.
    Document targetBefore;
    Document otherBefore;
    Document targetAfter;
    Document otherAfter;
    std::vector<PostedKeyStroke> posted;
    /// The journal of the desktop.
    std::vector<std::string> journal;
    /// Whether the run made enough calls to reach the fault, and the disturbance, contention or kill. True if there is
    /// none.
    bool faultWasReached = true;
    bool disturbanceWasReached = true;

    [[nodiscard]] bool succeeded() const { return error.empty(); }
};

[[nodiscard]] Run perform(const Scenario& scenario);

/// The journal with additional lines for what it does not record: refused calls and actions of the user.
[[nodiscard]] std::string annotatedJournal(const Run& run);

}  // namespace lomaris::test
