#pragma once

#include "accessibility/fallback/pasteboard_snapshot.h"
#include "platform/native_platform.h"

#include <memory>

namespace lomaris::test {

/// Restores the clipboard of the person who runs the tests on destruction.
class KeptClipboard {
public:
    KeptClipboard() : snapshot_(PasteboardSnapshot::capture(nativePlatform()->pasteboard())) {}
    KeptClipboard(const KeptClipboard&) = delete;
    KeptClipboard& operator=(const KeptClipboard&) = delete;
    ~KeptClipboard() { snapshot_.restore(nativePlatform()->pasteboard()); }

private:
    PasteboardSnapshot snapshot_;
};

}  // namespace lomaris::test
