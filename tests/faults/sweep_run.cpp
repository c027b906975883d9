#include "tests/faults/sweep_run.h"

#include "tests/bridge/execute_world.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <utility>

namespace lomaris::test {
namespace {

std::vector<Text> argumentsOf(const Scenario& scenario) {
    switch (scenario.command) {
        case Command::permissionStatus:
            return {u"permission-status"};
        case Command::permissionPrompt:
            return {u"permission-status", u"--prompt"};
        case Command::readText:
            return {u"read-selection"};
        case Command::readJson:
            return {u"read-selection", u"--json"};
        case Command::replace:
            return {u"replace-selection", u"--replacement", scenario.world.replacement};
        case Command::replaceIfCurrent:
            return {u"replace-selection-request"};
        case Command::diagnose:
            return {u"diagnose-selection"};
        case Command::compatibilityCheck:
            return {u"compatibility-check"};
    }
    return {};
}

std::string nameOf(Failure failure) {
    switch (failure) {
        case Failure::noAnswer:
            return "nobody answers";
        case Failure::elementGone:
            return "the element is gone";
        case Failure::noValue:
            return "there is no value";
        case Failure::answerLost:
            return "the answer is lost";
    }
    return {};
}

std::string annotation(const Happening& happening) {
    if (happening.who == Who::user) {
        return "            the user " + happening.what;
    }
    return "            " + happening.what + "(" + happening.about +
           (happening.fate == Fate::refused ? ") fails" : ") loses its answer");
}

}  // namespace

const std::vector<Command>& commands() {
    static const std::vector<Command> all = {
        Command::permissionStatus, Command::permissionPrompt, Command::readText, Command::readJson,
        Command::replace,          Command::replaceIfCurrent, Command::diagnose, Command::compatibilityCheck,
    };
    return all;
}

std::string nameOf(Command command) {
    std::string name;
    for (const Text& argument : argumentsOf({.world = {}, .command = command})) {
        name += (name.empty() ? "" : " ") + utf8FromText(argument);
    }
    return name;
}

std::string describe(const Scenario& scenario) {
    std::string description = nameOf(scenario.command) + " on the desktop " + scenario.world.name;
    if (const auto& fault = scenario.fault) {
        description += "; from call " + std::to_string(fault->number) + " of those that can fail so";
        description += (fault->persistence == Persistence::once ? " for once " : " on ") + nameOf(fault->failure);
    }
    if (const auto& disturbance = scenario.disturbance) {
        description += "; before call " + std::to_string(disturbance->number) + " the user ";
        description += nameOf(disturbance->act);
    }
    if (const auto& contention = scenario.contention) {
        description += "; before call " + std::to_string(contention->number) + " another process takes the clipboard";
    }
    if (const auto& kill = scenario.kill) {
        description += "; killed before line " + std::to_string(kill->number) + " of the journal";
        description += kill->aftermath == Kill::Aftermath::userCopies ? ", and the user copies" : "";
    }
    return description;
}

Run perform(const Scenario& scenario) {
    Run run;
    FaultWorld world(scenario.world, run.happenings);
    run.clipboardBefore = world.desktop.pasteboardContents();
    run.targetBefore = world.targetDocument();
    run.otherBefore = world.otherDocument();
    std::optional<Interruption> interruption;
    if (const auto& disturbance = scenario.disturbance) {
        interruption = {disturbance->number, [&world, act = disturbance->act] { world.userDoes(act); }};
    }
    if (const auto& contention = scenario.contention) {
        const auto take = [&desktop = world.desktop, duration = contention->duration] {
            const bool isForGood = duration > Moment::max() - desktop.now();
            static_cast<void>(desktop.holdPasteboardUntil(isForGood ? Moment::max() : desktop.now() + duration));
        };
        if (contention->number == 0) {
            take();
        } else {
            interruption = {contention->number, take};
        }
    }
    if (const auto& kill = scenario.kill) {
        if (kill->keeper == Kill::Keeper::exists) {
            world.desktop.addKeeper();
        }
        world.desktop.beforeCall(kill->number, [&world, aftermath = kill->aftermath] {
            world.desktop.kill();
            if (aftermath == Kill::Aftermath::userCopies) {
                world.userDoes(UserAct::copies);
            }
        });
    }
    CallGate gate(
        run.happenings, [&world](Happening& happening) { world.observe(happening); }, scenario.fault, interruption);
    FaultPlatform platform(world.desktop, gate);
    RecordedStreams streams;
    streams.input = world.guardedRequest();

    const Moment start = world.desktop.now();
    try {
        run.status = runCommandLine(argumentsOf(scenario), platform, streams);
    } catch (const SimulatedTermination&) {
        // Expected for a kill; otherwise the run received a signal that is not part of the scenario.
        EXPECT_TRUE(scenario.kill) << describe(scenario);
    }
    run.elapsed = world.desktop.now() - start;
    run.clipboardAfter = world.desktop.pasteboardContents();
    world.desktop.endProcess();
    run.clipboardAtEnd = world.desktop.pasteboardContents();
    run.isClipboardFree = world.desktop.holdPasteboardUntil(world.desktop.now());

    run.output = std::move(streams.output);
    run.error = std::move(streams.error);
    run.told = platform.told();
    run.targetAfter = world.targetDocument();
    run.otherAfter = world.otherDocument();
    run.posted = world.desktop.postedKeyStrokes();
    run.journal = world.desktop.journal();
    run.faultWasReached = !scenario.fault || gate.wasFaultReached();
    run.disturbanceWasReached = scenario.kill ? world.desktop.endedBySignal().has_value()  //
                                              : !interruption || gate.wasInterrupted();
    return run;
}

std::string annotatedJournal(const Run& run) {
    std::string text;
    std::size_t written = 0;
    const auto writeUpTo = [&](std::size_t end) {
        for (; written < end; ++written) {
            text += run.journal[written] + "\n";
        }
    };
    for (const Happening& happening : run.happenings) {
        if (happening.who == Who::user || happening.fate != Fate::answered) {
            writeUpTo(happening.journalLines);
            text += annotation(happening) + "\n";
        }
    }
    writeUpTo(run.journal.size());
    return text;
}

}  // namespace lomaris::test
