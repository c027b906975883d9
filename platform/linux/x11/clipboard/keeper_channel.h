#pragma once

#include "platform/posix/file_descriptor.h"
#include "platform/scheduling.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace lomaris {

/// A message between a process that uses the clipboard and its keeper. Both are the same build.
struct KeeperMessage {
    enum class Kind : std::uint32_t {
        // To the keeper, in the order of the calls of a `PasteboardHold`.
        /// An operation begins.
        began,
        /// The file holds the contents to restore. Confirmed.
        protect,
        /// The file holds the contents to serve from now on, unless `deadline` has passed. Confirmed, with `window` if
        /// the keeper put them on the clipboard, where another program may have replaced them since.
        publish,
        /// `process` may copy within `firstWait`; any process without a window counts as another program.
        copyExpected,
        /// `firstWait` is the minimum wait, `secondWait` the grace wait.
        pasteExpected,
        /// The operation is over.
        ended,

        // From the keeper.
        /// The request with this `serial` was carried out, or failed if `window` is 0.
        confirmed,
        /// A program has read the promised text of the contents published with this `serial`. Sent once for them.
        textRead,
    };

    Kind kind{};
    /// Numbers the confirmed requests of a channel.
    std::uint32_t serial = 0;
    /// 0 if there is none.
    std::int32_t process = 0;
    /// The window with which the keeper owns the selection.
    std::uint32_t window = 0;
    /// Nanoseconds.
    std::int64_t firstWait = 0;
    std::int64_t secondWait = 0;
    /// In nanoseconds of the monotonic clock, which all processes of a machine share.
    std::int64_t deadline = 0;
};

/// What arrived: a message, perhaps with a file.
struct ReceivedMessage {
    KeeperMessage message;
    FileDescriptor file;
};

/// One end of the connection between a process and its keeper: whole messages, in their order. Messages of a process
/// that died are still received. Never raises SIGPIPE. Main thread.
class KeeperChannel {
public:
    KeeperChannel() = default;
    explicit KeeperChannel(FileDescriptor socket) : socket_(std::move(socket)) {}

    [[nodiscard]] int descriptor() const { return socket_.number(); }

    /// Whether the connection is there, as far as this end has noticed.
    [[nodiscard]] bool isOpen() const { return static_cast<bool>(socket_); }
    void close() { socket_.reset(); }

    /// Sends a message with a file, if `file` is not negative. False if the other end is gone, or has read nothing for
    /// so long that the message would have to wait. The channel stays open: what the other end sent before is still
    /// there.
    bool send(const KeeperMessage& message, int file = -1);

    /// The next message, or nothing if none arrives before `deadline`, or at all: then the channel is closed. Without a
    /// deadline it does not wait.
    [[nodiscard]] std::optional<ReceivedMessage> receive(Moment deadline = Moment::zero());

private:
    FileDescriptor socket_;
};

/// Two ends of a new channel; both are empty if the system has none to give. Neither is inherited by programs that are
/// started later.
struct KeeperChannelEnds {
    FileDescriptor partner;
    FileDescriptor keeper;
};
[[nodiscard]] KeeperChannelEnds makeKeeperChannel();

}  // namespace lomaris
