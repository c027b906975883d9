#pragma once

#include <optional>

namespace lomaris {

/// Turns the signals that ask the process to end into something that a wait can see, so that what must be put in order
/// first can be: while it lives, SIGTERM, SIGINT and SIGHUP are only noted. A signal that was ignored when it was
/// created (SIGHUP, under a program that shields from it) stays ignored.
///
/// Meant for the program, not for libraries in other programs: signals belong to the whole process. One at a time.
class TerminationSignals {
public:
    TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    /// Puts back what the signals did before. A signal that is pending is forgotten.
    ~TerminationSignals();

    /// A file that has something to read from the first signal on; not to be read or closed by anybody else. Negative
    /// where the system had none to give; `pending` works all the same.
    [[nodiscard]] int descriptor() const;

    /// The first signal that came. Any thread.
    [[nodiscard]] std::optional<int> pending() const;

    /// Whether a signal after the first one ends the process immediately, inside the handler, instead of being ignored.
    /// False at first. Any thread.
    void setSecondSignalEnds(bool ends);

    /// Ends the process by the pending signal, as if it had not been caught, so that whoever waits for the process sees
    /// why it ended. There must be one.
    [[noreturn]] void endProcess();
};

/// A file that has something to read once a signal that asks the process to end was caught, as long as signals are
/// caught; negative where they are not. For waits that do not know who catches them. Any thread.
[[nodiscard]] int terminationDescriptor();

}  // namespace lomaris
