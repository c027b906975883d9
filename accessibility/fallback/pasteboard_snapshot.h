#pragma once

#include "platform/pasteboard.h"

#include <vector>

namespace lomaris {

/// A saved copy of everything on the pasteboard, taken before it is disturbed and written back afterwards. A value that
/// owns its bytes; it stays valid whatever becomes of the pasteboard, and can be restored any number of times.
class PasteboardSnapshot {
public:
    /// Reads every type of every item, which fetches what other applications only promised. A type without data is left
    /// out; an item of which nothing came is kept, empty. Never fails. Main thread.
    [[nodiscard]] static PasteboardSnapshot capture(Pasteboard& pasteboard);

    /// Clears the pasteboard and writes the items back, in their order. What the pasteboard refuses is lost; nothing is
    /// reported. Main thread.
    void restore(Pasteboard& pasteboard) const;

    [[nodiscard]] const std::vector<PasteboardItemContents>& items() const { return items_; }

private:
    std::vector<PasteboardItemContents> items_;
};

}  // namespace lomaris
