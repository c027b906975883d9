#pragma once

#include "platform/pasteboard.h"

namespace lomaris {

/// The hold of a platform that has no pasteboard, or cannot reach it: nothing to exclude others from, nothing to
/// restore.
class InertPasteboardHold final : public PasteboardHold {
public:
    void protect(const std::vector<PasteboardItemContents>& /*saved*/) override {}
    void expectCopy(std::optional<ProcessIdentifier> /*target*/, Duration /*wait*/) override {}
    void expectPaste(Duration /*minimumWait*/, Duration /*graceWait*/) override {}
    [[nodiscard]] bool retake() override { return true; }
};

}  // namespace lomaris
