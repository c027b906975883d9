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

/// The property forms of the pasteboard types whose form is not the default one (the name of the target, format 8).
using PropertyForms = std::map<PasteboardType, PropertyForm>;

/// The contents that this process has written to the clipboard: its items, and the targets that they are offered as.
/// Does not use the X server. Main thread.
class ClipboardContents final : public ServedContents {
public:
    /// Adds items. `forms` has the property forms of types that were read from another program and are restored.
    void append(std::vector<NewPasteboardItem> items, const PropertyForms& forms);

    [[nodiscard]] std::size_t itemCount() const { return items_.size(); }

    /// The types of an item, in its order and without duplicates.
    [[nodiscard]] std::vector<PasteboardType> types(std::size_t item) const;

    /// The bytes of a type of an item. Null if there are none. Calls the provider for a promised type.
    [[nodiscard]] SharedBytes bytes(std::size_t item, std::string_view type);

    /// The plain texts of all items, joined by line feeds. nullopt if no item has one. Calls the providers.
    [[nodiscard]] std::optional<Text> string();

    /// The targets to offer, in order and without duplicates: the types of all items; for a promised plain text also
    /// the other text targets; for a concealed item the hint that keeps it out of clipboard histories. Calls no
    /// provider.
    [[nodiscard]] std::vector<std::string_view> targets() const override;

    /// The reply for a target, from the first item that has it. nullopt if there are no bytes for it. Calls the
    /// provider for a promised type.
    [[nodiscard]] std::optional<ServedTarget> served(std::string_view target) override;

    /// The targets with their bytes, for the keeper to serve. The bytes of a promised type are the provider's
    /// `promisedData`, or, if it does not know them in advance, are requested as for a reader.
    [[nodiscard]] std::vector<KeptTarget> kept();

    /// Calls the provider of a promised text. To be called when a reader has requested that text from the keeper.
    void noteTextRead();

    /// True if there is a promised type without bytes.
    [[nodiscard]] bool hasPromise() const;

    /// Calls the providers for all promised types without bytes, and releases them.
    void keepPromises();

private:
    struct Entry {
        PasteboardType type;
        /// Null if the type is promised and its provider has not been called.
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
