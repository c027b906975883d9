#pragma once

#include "platform/posix/file_descriptor.h"
#include "platform/scheduling.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace lomaris {

/// A message between a process that uses the clipboard, the partner, and its keeper. Both are from the same build.
struct KeeperMessage {
    enum class Kind : std::uint32_t {
        // To the keeper, in the order of the calls of a `PasteboardHold`.

        /// An operation begins.
        began,
        /// The file has the contents to restore. Confirmed.
        protect,
        /// The file has the contents to serve from now on, unless `deadline` has passed. Confirmed.
        publish,
        /// `process` may copy within `firstWait`. The process that copied is identified by its windows; one without a
        /// window counts as another program.
        copyExpected,
        /// The target is about to paste. `firstWait` is the minimum wait, `secondWait` the grace wait.
        pasteExpected,
        /// The operation has ended.
        ended,

        // From the keeper.

        /// The request with this `serial` was carried out, or failed if `window` is 0. Carried out means for `publish`
        /// that the keeper became the owner; another program may have become the owner since.
        confirmed,
        /// A program has read the promised text of the contents published with this `serial`. Sent once for them.
        textRead,
    };

    Kind kind{};
    /// The number of a request that is confirmed; increases by 1.
    std::uint32_t serial = 0;
    /// 0 if there is none.
    std::int32_t process = 0;
    /// The window with which the keeper owns the selection.
    std::uint32_t window = 0;
    /// Nanoseconds.
    std::int64_t firstWait = 0;
    std::int64_t secondWait = 0;
    /// Nanoseconds of the monotonic clock, which is the same for all processes of a machine.
    std::int64_t deadline = 0;
};

/// A received message. `file` is empty if the message came without one.
struct ReceivedMessage {
    KeeperMessage message;
    FileDescriptor file;
};

/// One end of the connection between a process and its keeper. Delivers whole messages in order, also those that a
/// process sent before it ended. Never raises SIGPIPE. Main thread.
class KeeperChannel {
public:
    KeeperChannel() = default;
    explicit KeeperChannel(FileDescriptor socket) : socket_(std::move(socket)) {}

    [[nodiscard]] int descriptor() const { return socket_.number(); }

    /// False after `close`, or after `receive` has found the other end closed.
    [[nodiscard]] bool isOpen() const { return static_cast<bool>(socket_); }
    void close() { socket_.reset(); }

    /// Sends a message, with a file unless `file` is negative. Does not block. Returns false if the other end is
    /// closed, or if the buffer is full. The channel stays open, as messages of the other end may still be unread.
    bool send(const KeeperMessage& message, int file = -1);

    /// Returns the next message. Blocks until `deadline`; without one, does not block. nullopt if there is none, or if
    /// the other end is closed, in which case this end is closed too.
    [[nodiscard]] std::optional<ReceivedMessage> receive(Moment deadline = Moment::zero());

private:
    FileDescriptor socket_;
};

/// The two ends of a new channel, which are closed on exec. Both are empty if the system cannot create one.
struct KeeperChannelEnds {
    FileDescriptor partner;
    FileDescriptor keeper;
};
[[nodiscard]] KeeperChannelEnds makeKeeperChannel();

}  // namespace lomaris
