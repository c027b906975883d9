#pragma once

#include "platform/pasteboard.h"

namespace lomaris {

/// A hold that does nothing, for a platform that has no pasteboard or cannot reach it.
class InertPasteboardHold final : public PasteboardHold {
public:
    void protect(const std::vector<PasteboardItemContents>& /*saved*/) override {}
    void expectCopy(std::optional<ProcessIdentifier> /*target*/, Duration /*wait*/) override {}
    void expectPaste(Duration /*minimumWait*/, Duration /*graceWait*/) override {}
    [[nodiscard]] bool retake() override { return true; }
};

}  // namespace lomaris
