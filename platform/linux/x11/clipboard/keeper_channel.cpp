#include "platform/linux/x11/clipboard/keeper_channel.h"

#include "platform/linux/process/monotonic_clock.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace lomaris {

namespace {

/// The buffer for one file descriptor in the ancillary data of a message.
union FileSlot {
    std::array<char, CMSG_SPACE(sizeof(int))> bytes;
    cmsghdr alignment;
};

/// Blocks until the socket is readable. Returns false if the deadline passes first.
bool awaitInput(int socket, Moment deadline) {
    for (;;) {
        const auto left = std::max(deadline - monotonicNow(), Duration::zero());
        const auto timeout = std::chrono::ceil<std::chrono::milliseconds>(left);
        pollfd request{.fd = socket, .events = POLLIN, .revents = 0};
        const int ready = poll(&request, 1, static_cast<int>(timeout.count()));
        if (ready > 0) {
            return true;
        }
        if (ready == 0 || errno != EINTR) {
            return false;
        }
    }
}

/// The file received with a message; empty if there is none.
FileDescriptor takeFile(msghdr& header) {
    const cmsghdr* const control = CMSG_FIRSTHDR(&header);
    if (control == nullptr || control->cmsg_level != SOL_SOCKET || control->cmsg_type != SCM_RIGHTS ||
        control->cmsg_len != CMSG_LEN(sizeof(int))) {
        return {};
    }
    int number = -1;
    std::memcpy(&number, CMSG_DATA(control), sizeof number);
    return FileDescriptor(number);
}

}  // namespace

bool KeeperChannel::send(const KeeperMessage& message, int file) {
    if (!socket_) {
        return false;
    }
    KeeperMessage copy = message;
    iovec bytes{.iov_base = &copy, .iov_len = sizeof copy};
    FileSlot slot{};
    msghdr header{};
    header.msg_iov = &bytes;
    header.msg_iovlen = 1;
    if (file >= 0) {
        header.msg_control = &slot;
        header.msg_controllen = sizeof slot.bytes;
        cmsghdr* const control = CMSG_FIRSTHDR(&header);
        control->cmsg_level = SOL_SOCKET;
        control->cmsg_type = SCM_RIGHTS;
        control->cmsg_len = CMSG_LEN(sizeof(int));
        std::memcpy(CMSG_DATA(control), &file, sizeof file);
    }
    ssize_t sent = -1;
    do {
        sent = sendmsg(socket_.number(), &header, MSG_NOSIGNAL | MSG_DONTWAIT);
    } while (sent < 0 && errno == EINTR);
    return sent >= 0;
}

std::optional<ReceivedMessage> KeeperChannel::receive(Moment deadline) {
    if (!socket_ || !awaitInput(socket_.number(), deadline)) {
        return std::nullopt;
    }
    ReceivedMessage received;
    iovec bytes{.iov_base = &received.message, .iov_len = sizeof received.message};
    FileSlot slot{};
    msghdr header{};
    header.msg_iov = &bytes;
    header.msg_iovlen = 1;
    header.msg_control = &slot;
    header.msg_controllen = sizeof slot.bytes;
    ssize_t size = -1;
    do {
        size = recvmsg(socket_.number(), &header, MSG_CMSG_CLOEXEC | MSG_DONTWAIT);
        // If the other end closed with unread messages, the first call fails; messages that it sent can still be read.
    } while (size < 0 && (errno == EINTR || errno == ECONNRESET));
    if (size > 0) {
        received.file = takeFile(header);
    }
    if (size != static_cast<ssize_t>(sizeof received.message)) {
        // The other end is closed, or has sent something that is no message of this build.
        socket_.reset();
        return std::nullopt;
    }
    return received;
}

KeeperChannelEnds makeKeeperChannel() {
    std::array<int, 2> ends{-1, -1};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return {};
    }
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

}  // namespace lomaris
