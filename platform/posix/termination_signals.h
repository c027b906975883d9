#pragma once

#include <csignal>
#include <optional>

namespace lomaris {

/// Catches the signals that request the end of the process, so that clean-up can run first: while an instance exists,
/// SIGTERM, SIGINT and SIGHUP are only recorded. A signal that was ignored before (for example SIGHUP under nohup)
/// stays ignored.
///
/// For programs, not for libraries: signal actions belong to the whole process. At most one instance at a time.
class TerminationSignals {
public:
    TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    /// Restores the previous signal actions. A pending signal is forgotten.
    ~TerminationSignals();

    /// A descriptor that is readable from the first signal on; other code must neither read nor close it. Negative if
    /// the system could not create one; `pending` works even then.
    [[nodiscard]] int descriptor() const;

    /// The first signal that was caught; nullopt if there was none. Any thread.
    [[nodiscard]] std::optional<int> pending() const;

    /// Sets whether a signal after the first one ends the process at once, inside the handler, instead of being
    /// ignored. False by default. Any thread.
    void setSecondSignalEnds(bool ends);

    /// Ends the process by the pending signal, as if it had not been caught, so that the parent process sees the
    /// reason. There must be a pending signal.
    [[noreturn]] void endProcess();
};

/// The `descriptor` of the current instance; negative if there is none. For waits that do not know which code catches
/// the signals. Any thread.
[[nodiscard]] int terminationDescriptor();

/// Blocks the signals that ask the process to end in the current thread until it is destroyed, on the same thread; they
/// are delivered then. For short work that must not be interrupted in the middle, in a process with one thread.
class TerminationSignalsBlock {
public:
    TerminationSignalsBlock();
    TerminationSignalsBlock(const TerminationSignalsBlock&) = delete;
    TerminationSignalsBlock& operator=(const TerminationSignalsBlock&) = delete;
    ~TerminationSignalsBlock();

private:
    sigset_t before_;
};

}  // namespace lomaris
