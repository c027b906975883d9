#pragma once

#include "platform/linux/x11/clipboard/kept_contents.h"
#include "platform/linux/x11/clipboard/served_contents.h"
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

/// The forms of pasteboard types for which it is not simply the name of the target and 8 bits.
using PropertyForms = std::map<PasteboardType, PropertyForm>;

/// What this process has put on the clipboard: its items, and the targets under which other programs find them. Knows
/// nothing of a connection. Main thread.
class ClipboardContents final : public ServedContents {
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
    [[nodiscard]] std::vector<std::string_view> targets() const override;

    /// The answer for one of the targets, or nothing where there are no bytes for it. Of several items that have it
    /// the first one wins. Asks the provider for what is only promised.
    [[nodiscard]] std::optional<ServedTarget> served(std::string_view target) override;

    /// Everything that is offered, for another process to serve. What is promised comes from the provider in advance,
    /// or, if it cannot know the bytes in advance, as if a reader had requested it.
    [[nodiscard]] std::vector<KeptTarget> kept();

    /// A reader has requested the promised text from the process that serves these contents.
    void noteTextRead();

    /// Whether anything is still only promised.
    [[nodiscard]] bool hasPromise() const;

    /// Asks the providers for everything that is still only promised.
    void keepPromises();

private:
    struct Entry {
        PasteboardType type;
        /// Null while the bytes are only promised.
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
    [[nodiscard]] std::vector<SharedBytes> inAdvance(Item& item);
    [[nodiscard]] std::optional<ServedTarget> encoded(std::string_view target, const Offer& offer,
                                                      SharedBytes bytes) const;
    void listOffers();
    void offer(std::string_view target, Offer offer);

    std::vector<Item> items_;
    std::vector<std::string> targets_;
    std::unordered_map<std::string, Offer> offers_;
};

}  // namespace lomaris
