#pragma once

#include "text/text.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris {

/// Raw contents of one pasteboard type.
using Bytes = std::string;

/// Identifier of a kind of contents, a uniform type identifier in UTF-8 ("public.utf8-plain-text").
using PasteboardType = std::string;

namespace pasteboard_type {

/// Plain text, as UTF-8 bytes.
inline constexpr std::string_view string = "public.utf8-plain-text";
/// Presence of this type asks other readers to keep the contents out of histories and displays.
inline constexpr std::string_view concealed = "org.nspasteboard.ConcealedType";
/// Presence of this type says that the contents are there for a moment only.
inline constexpr std::string_view transient = "org.nspasteboard.TransientType";

}  // namespace pasteboard_type

/// One item that stands on the pasteboard, as it was when the items were asked for; it answers nothing more once the
/// pasteboard has other contents.
class PasteboardItem {
public:
    PasteboardItem() = default;
    PasteboardItem(const PasteboardItem&) = delete;
    PasteboardItem& operator=(const PasteboardItem&) = delete;
    virtual ~PasteboardItem() = default;

    /// The types that the item offers, in its order, each once. The result is the caller's.
    [[nodiscard]] virtual std::vector<PasteboardType> types() = 0;

    /// The bytes of one type, or nothing where there are none or they did not come in time. A promise is fetched from
    /// the program that made it. The result is the caller's.
    [[nodiscard]] virtual std::optional<Bytes> data(const PasteboardType& type) = 0;
};

/// The item for which promised data is being asked, as its provider sees it.
class PromisedItem {
public:
    PromisedItem() = default;
    PromisedItem(const PromisedItem&) = delete;
    PromisedItem& operator=(const PromisedItem&) = delete;
    virtual ~PromisedItem() = default;

    /// Hands the promised bytes over; they are copied.
    virtual void setData(std::string_view bytes, const PasteboardType& type) = 0;
};

/// Provides the bytes of promised types when a reader asks for them. The pasteboard shares ownership of it for as long
/// as the promise stands.
class PasteboardDataProvider {
public:
    PasteboardDataProvider() = default;
    PasteboardDataProvider(const PasteboardDataProvider&) = delete;
    PasteboardDataProvider& operator=(const PasteboardDataProvider&) = delete;
    virtual ~PasteboardDataProvider() = default;

    /// A reader asks for `type`; the provider may set it on `item`. Called on the thread whose run loop turns, during a
    /// run-loop slice, when this process itself reads the type, or at the end of the platform. Must not throw.
    virtual void provideData(PromisedItem& item, const PasteboardType& type) = 0;
};

/// An item to be written: bytes that are handed over at once, and types that are only promised.
struct NewPasteboardItem {
    std::vector<std::pair<PasteboardType, Bytes>> data;
    std::vector<PasteboardType> promisedTypes;
    /// Asked for the promised types; null where there are none.
    std::shared_ptr<PasteboardDataProvider> provider;
};

/// The general pasteboard. Called on the main thread; never throws.
///
/// When the service ends while contents of this process stand on the pasteboard, it first resolves what is still
/// promised by asking the provider, so that a target that pastes a moment later still finds its text. It does not wait.
class Pasteboard {
public:
    Pasteboard() = default;
    Pasteboard(const Pasteboard&) = delete;
    Pasteboard& operator=(const Pasteboard&) = delete;
    virtual ~Pasteboard() = default;

    /// The items, in order; empty where there are none or they cannot be read. The items are the caller's.
    [[nodiscard]] virtual std::vector<std::unique_ptr<PasteboardItem>> items() = 0;

    /// The plain text of all items together as the platform composes it, or nothing where no item has plain text.
    [[nodiscard]] virtual std::optional<Text> string() = 0;

    /// A number that changes whenever any program clears the pasteboard or takes it over otherwise. A write directly
    /// after this process's own clear may leave it as it is; keeping a promise always does.
    [[nodiscard]] virtual std::int64_t changeCount() = 0;

    /// Empties the pasteboard and takes it over; earlier contents and promises are gone.
    virtual void clearContents() = 0;

    /// Writes items onto the pasteboard after a `clearContents`; answers whether the pasteboard took them. Takes the
    /// items over.
    [[nodiscard]] virtual bool writeItems(std::vector<NewPasteboardItem> items) = 0;
};

}  // namespace lomaris
