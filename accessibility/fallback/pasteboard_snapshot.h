#pragma once

#include "platform/pasteboard.h"

#include <vector>

namespace lomaris {

/// A saved copy of all pasteboard contents. Owns its bytes, does not depend on the pasteboard afterwards, and can be
/// restored any number of times.
class PasteboardSnapshot {
public:
    /// Reads every type of every item, including data that other applications only promised. Omits types without data;
    /// keeps an item even if no type of it is left. Never fails. Main thread.
    [[nodiscard]] static PasteboardSnapshot capture(Pasteboard& pasteboard);

    /// Clears the pasteboard and writes the items back in their order. Does not report it if the pasteboard refuses
    /// them. Main thread.
    void restore(Pasteboard& pasteboard) const;

    [[nodiscard]] const std::vector<PasteboardItemContents>& items() const { return items_; }

private:
    std::vector<PasteboardItemContents> items_;
};

}  // namespace lomaris
