#pragma once

#include "platform/pasteboard.h"
#include "platform/posix/file_descriptor.h"

#include <memory>
#include <string>

namespace lomaris {

/// Exclusive use of a pasteboard that the system serves itself: a lock on a file that all processes of the user share.
/// The system releases the lock when the process dies. There is no keeper: nothing is restored after a sudden death,
/// and exclusive use ends with the hold. The file is empty and is never removed.
class FileLockHold final : public PasteboardHold {
public:
    /// Takes the lock on `path`. Null if another process, or another hold of this process, has it. If the file cannot
    /// be opened, returns a hold that excludes no other process. Does not wait.
    [[nodiscard]] static std::unique_ptr<PasteboardHold> tryHold(const std::string& path);

    void protect(const std::vector<PasteboardItemContents>& /*saved*/) override {}
    void expectCopy(std::optional<ProcessIdentifier> /*target*/, Duration /*wait*/) override {}
    void expectPaste(Duration /*minimumWait*/, Duration /*graceWait*/) override {}
    /// Always true, because the lock was never released.
    [[nodiscard]] bool retake() override { return true; }

private:
    explicit FileLockHold(FileDescriptor file) : file_(std::move(file)) {}

    FileDescriptor file_;
};

}  // namespace lomaris
