#include "platform/posix/file_lock_hold.h"

#include "platform/inert_pasteboard_hold.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <utility>

namespace lomaris {

std::unique_ptr<PasteboardHold> FileLockHold::tryHold(const std::string& path) {
    constexpr int ownerOnly = 0600;
    // O_CLOEXEC: a program started in the meantime must not inherit the lock.
    FileDescriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, ownerOnly));
    if (!file) {
        return std::make_unique<InertPasteboardHold>();
    }
    int locked = -1;
    do {
        locked = flock(file.number(), LOCK_EX | LOCK_NB);
    } while (locked != 0 && errno == EINTR);
    if (locked != 0 && errno == EWOULDBLOCK) {
        return nullptr;
    }
    return std::unique_ptr<PasteboardHold>(new FileLockHold(std::move(file)));
}

}  // namespace lomaris
