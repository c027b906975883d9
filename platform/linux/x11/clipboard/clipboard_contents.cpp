#include "platform/linux/x11/clipboard/clipboard_contents.h"

#include "platform/linux/x11/clipboard/clipboard_targets.h"
#include "text/utf8.h"

#include <algorithm>
#include <utility>

namespace lomaris {

namespace {

PropertyForm formOf(std::string_view type, std::size_t size, const PropertyForms& forms) {
    const auto known = forms.find(PasteboardType(type));
    if (known != forms.end() && size % (known->second.format / 8U) == 0) {
        return known->second;
    }
    return {targetOfType(type), 8};
}

ServedTarget textOfType(std::string_view type, SharedBytes bytes) {
    ServedTarget served;
    served.form.type = type;
    served.bytes = std::move(bytes);
    return served;
}

SharedBytes share(Bytes bytes) { return std::make_shared<const Bytes>(std::move(bytes)); }

}  // namespace

/// Stores the bytes that a provider supplies.
class ClipboardContents::Fulfilment final : public PromisedItem {
public:
    explicit Fulfilment(Item& item) : item_(item) {}

    void setData(std::string_view bytes, const PasteboardType& type) override {
        if (Entry* const entry = find(item_, type)) {
            entry->bytes = share(Bytes(bytes));
        }
    }

private:
    Item& item_;
};

void ClipboardContents::append(std::vector<NewPasteboardItem> items, const PropertyForms& forms) {
    for (NewPasteboardItem& added : items) {
        Item item;
        item.entries.reserve(added.data.size() + added.promisedTypes.size());
        for (auto& [type, bytes] : added.data) {
            store(item, type, std::move(bytes), forms);
        }
        for (PasteboardType& type : added.promisedTypes) {
            if (find(item, type) == nullptr) {
                item.promisesText = item.promisesText || type == pasteboard_type::string;
                PropertyForm form{targetOfType(type), 8};
                item.entries.push_back({std::move(type), nullptr, std::move(form)});
            }
        }
        item.provider = std::move(added.provider);
        items_.push_back(std::move(item));
    }
    listOffers();
}

void ClipboardContents::store(Item& item, std::string_view type, Bytes bytes, const PropertyForms& forms) {
    PropertyForm form = formOf(type, bytes.size(), forms);
    Entry* entry = find(item, type);
    if (entry == nullptr) {
        entry = &item.entries.emplace_back();
        entry->type = type;
    }
    entry->form = std::move(form);
    entry->bytes = share(std::move(bytes));
}

ClipboardContents::Entry* ClipboardContents::find(Item& item, std::string_view type) {
    const auto found = std::find_if(item.entries.begin(), item.entries.end(),
                                    [type](const Entry& entry) { return entry.type == type; });
    return found == item.entries.end() ? nullptr : &*found;
}

SharedBytes ClipboardContents::fetch(Item& item, std::size_t entry) {
    if (!item.entries[entry].bytes && item.provider) {
        const std::shared_ptr<PasteboardDataProvider> provider = item.provider;
        const PasteboardType type = item.entries[entry].type;
        Fulfilment fulfilment(item);
        provider->provideData(fulfilment, type);
    }
    return item.entries[entry].bytes;
}

std::vector<PasteboardType> ClipboardContents::types(std::size_t item) const {
    std::vector<PasteboardType> types;
    types.reserve(items_[item].entries.size());
    for (const Entry& entry : items_[item].entries) {
        types.push_back(entry.type);
    }
    return types;
}

SharedBytes ClipboardContents::bytes(std::size_t item, std::string_view type) {
    const Entry* const entry = find(items_[item], type);
    return entry == nullptr ? nullptr
                            : fetch(items_[item], static_cast<std::size_t>(entry - items_[item].entries.data()));
}

std::optional<Text> ClipboardContents::string() {
    std::optional<Text> all;
    for (std::size_t item = 0; item < items_.size(); ++item) {
        const SharedBytes text = bytes(item, pasteboard_type::string);
        if (!text) {
            continue;
        }
        if (all) {
            *all += u'\n';
        } else {
            all.emplace();
        }
        *all += textFromUtf8(*text);
    }
    return all;
}

void ClipboardContents::offer(std::string_view target, Offer offer) {
    if (isContentsTarget(target) && offers_.try_emplace(std::string(target), offer).second) {
        targets_.emplace_back(target);
    }
}

void ClipboardContents::listOffers() {
    targets_.clear();
    offers_.clear();
    for (std::size_t item = 0; item < items_.size(); ++item) {
        for (std::size_t entry = 0; entry < items_[item].entries.size(); ++entry) {
            offer(targetOfType(items_[item].entries[entry].type), {item, entry, Encoding::asItIs});
        }
    }
    for (std::size_t item = 0; item < items_.size(); ++item) {
        const Entry* const text = find(items_[item], pasteboard_type::string);
        if (items_[item].promisesText) {
            const auto entry = static_cast<std::size_t>(text - items_[item].entries.data());
            offer(clipboard_target::utf8PlainText, {item, entry, Encoding::utf8});
            offer(clipboard_target::plainText, {item, entry, Encoding::utf8});
            offer(clipboard_target::string, {item, entry, Encoding::latin1});
            offer(clipboard_target::text, {item, entry, Encoding::anyText});
        }
        if (find(items_[item], pasteboard_type::concealed) != nullptr) {
            offer(clipboard_target::secretHint, {item, 0, Encoding::secret});
        }
    }
}

std::vector<std::string_view> ClipboardContents::targets() const { return {targets_.begin(), targets_.end()}; }

std::optional<ServedTarget> ClipboardContents::served(std::string_view target) {
    const auto found = offers_.find(std::string(target));
    if (found == offers_.end()) {
        return std::nullopt;
    }
    const Offer offer = found->second;
    const bool isSecret = offer.encoding == Encoding::secret;
    return encoded(target, offer, isSecret ? nullptr : fetch(items_[offer.item], offer.entry));
}

std::optional<ServedTarget> ClipboardContents::encoded(std::string_view target, const Offer& offer,
                                                       SharedBytes bytes) const {
    if (offer.encoding == Encoding::secret) {
        return textOfType(target, share("secret"));
    }
    if (!bytes) {
        return std::nullopt;
    }
    if (offer.encoding == Encoding::asItIs) {
        return ServedTarget{items_[offer.item].entries[offer.entry].form, std::move(bytes)};
    }
    if (offer.encoding == Encoding::utf8) {
        return textOfType(target, std::move(bytes));
    }
    if (auto latin1 = latin1FromUtf8(*bytes)) {
        return textOfType(clipboard_target::string, share(std::move(*latin1)));
    }
    if (offer.encoding == Encoding::latin1) {
        return std::nullopt;
    }
    return textOfType(clipboard_target::utf8String, std::move(bytes));
}

/// The bytes of each entry of an item. Calls `promisedData` of the provider, and `provideData` only if that has none.
std::vector<SharedBytes> ClipboardContents::inAdvance(Item& item) {
    std::vector<SharedBytes> all;
    all.reserve(item.entries.size());
    for (std::size_t entry = 0; entry < item.entries.size(); ++entry) {
        std::optional<Bytes> bytes;
        if (!item.entries[entry].bytes && item.provider) {
            bytes = item.provider->promisedData(item.entries[entry].type);
        }
        all.push_back(bytes ? share(std::move(*bytes)) : fetch(item, entry));
    }
    return all;
}

std::vector<KeptTarget> ClipboardContents::kept() {
    std::vector<std::vector<SharedBytes>> bytes;
    bytes.reserve(items_.size());
    for (Item& item : items_) {
        bytes.push_back(inAdvance(item));
    }
    std::vector<KeptTarget> all;
    all.reserve(targets_.size());
    for (const std::string& target : targets_) {
        const Offer offer = offers_.at(target);
        const bool isSecret = offer.encoding == Encoding::secret;
        auto served = encoded(target, offer, isSecret ? nullptr : bytes[offer.item][offer.entry]);
        if (!served) {
            continue;
        }
        const bool isPromised = !isSecret && !items_[offer.item].entries[offer.entry].bytes;
        all.push_back(
            {.target = target,
             .form = std::move(served->form),
             .bytes = std::move(served->bytes),
             .isPromisedText = isPromised && items_[offer.item].entries[offer.entry].type == pasteboard_type::string});
    }
    return all;
}

bool ClipboardContents::hasPromise() const {
    return std::any_of(items_.begin(), items_.end(), [](const Item& item) {
        return item.provider && std::any_of(item.entries.begin(), item.entries.end(),
                                            [](const Entry& entry) { return entry.bytes == nullptr; });
    });
}

void ClipboardContents::noteTextRead() {
    for (Item& item : items_) {
        for (std::size_t entry = 0; entry < item.entries.size(); ++entry) {
            if (item.entries[entry].type == pasteboard_type::string) {
                static_cast<void>(fetch(item, entry));
            }
        }
    }
}

void ClipboardContents::keepPromises() {
    for (Item& item : items_) {
        for (std::size_t entry = 0; entry < item.entries.size(); ++entry) {
            static_cast<void>(fetch(item, entry));
        }
        item.provider.reset();
    }
}

}  // namespace lomaris
