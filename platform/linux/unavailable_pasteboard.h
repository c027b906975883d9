#pragma once

#include "platform/pasteboard.h"

namespace lomaris {

/// A pasteboard that nobody can reach: it has no items, takes none, and never changes.
class UnavailablePasteboard final : public Pasteboard {
public:
    [[nodiscard]] std::vector<std::unique_ptr<PasteboardItem>> items() override { return {}; }
    [[nodiscard]] std::optional<Text> string() override { return std::nullopt; }
    [[nodiscard]] std::int64_t changeCount() override { return 0; }
    void clearContents() override {}
    [[nodiscard]] bool writeItems(std::vector<NewPasteboardItem> /*items*/) override { return false; }
};

}  // namespace lomaris
