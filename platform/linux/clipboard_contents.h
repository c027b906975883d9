#pragma once

#include "platform/pasteboard.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lomaris {

/// Bytes that a transfer to a slow reader may still need when the contents are long gone.
using SharedBytes = std::shared_ptr<const Bytes>;

/// How an X11 program describes the bytes of a target: the name of their type, and the bits of one unit (8, 16, 32).
struct PropertyForm {
    std::string type;
    std::uint8_t format = 8;

    friend bool operator==(const PropertyForm&, const PropertyForm&) = default;
};

/// The forms of pasteboard types for which it is not simply the name of the target and 8 bits.
using PropertyForms = std::map<PasteboardType, PropertyForm>;

/// What answers a request for one target.
struct ServedTarget {
    PropertyForm form;
    SharedBytes bytes;
};

/// What this process has put on the clipboard: its items, and the targets under which other programs find them. Knows
/// nothing of a connection. Main thread.
class ClipboardContents {
public:
    /// Adds items. `forms` says how to describe types that another program owned once and that now come back.
    void append(std::vector<NewPasteboardItem> items, const PropertyForms& forms);

    [[nodiscard]] std::size_t itemCount() const { return items_.size(); }

    /// The types of an item, in its order, each once.
    [[nodiscard]] std::vector<PasteboardType> types(std::size_t item) const;

    /// The bytes of a type of an item, null where there are none. Asks the provider for what is only promised.
    [[nodiscard]] SharedBytes bytes(std::size_t item, std::string_view type);

    /// The plain texts of all items, a line feed between two; nothing where no item has any.
    [[nodiscard]] std::optional<Text> string();

    /// The targets to offer, in order, each once: the types of all items; for a promised plain text its other names;
    /// for a concealed item the hint that keeps it out of clipboard histories. Asks no provider.
    [[nodiscard]] std::vector<std::string_view> targets() const;

    /// The answer for one of the targets, or nothing where there are no bytes for it. Of several items that have it
    /// the first one wins. Asks the provider for what is only promised.
    [[nodiscard]] std::optional<ServedTarget> served(std::string_view target);

    /// Asks the providers for everything that is still only promised.
    void keepPromises();

private:
    struct Entry {
        PasteboardType type;
        SharedBytes bytes;
        PropertyForm form;
    };
    struct Item {
        std::vector<Entry> entries;
        std::shared_ptr<PasteboardDataProvider> provider;
        bool promisesText = false;
    };
    enum class Encoding : std::uint8_t { asItIs, utf8, latin1, anyText, secret };
    struct Offer {
        std::size_t item = 0;
        std::size_t entry = 0;
        Encoding encoding = Encoding::asItIs;
    };
    class Fulfilment;

    void store(Item& item, std::string_view type, Bytes bytes, const PropertyForms& forms);
    [[nodiscard]] static Entry* find(Item& item, std::string_view type);
    [[nodiscard]] SharedBytes fetch(Item& item, std::size_t entry);
    void listOffers();
    void offer(std::string_view target, Offer offer);

    std::vector<Item> items_;
    std::vector<std::string> targets_;
    std::unordered_map<std::string, Offer> offers_;
};

}  // namespace lomaris
