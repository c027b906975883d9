#pragma once

#include "platform/accessibility.h"
#include "platform/scheduling.h"
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

    /// The bytes that `provideData` would set for `type`, or nothing if they cannot be known in advance. Does not count
    /// as a reader's request. A platform that has another process keep the promise calls it when the item is written,
    /// and calls `provideData` when a reader has requested the type there. Must not throw.
    [[nodiscard]] virtual std::optional<Bytes> promisedData(const PasteboardType& /*type*/) const {
        return std::nullopt;
    }
};

/// An item to be written: bytes that are handed over at once, and types that are only promised.
struct NewPasteboardItem {
    std::vector<std::pair<PasteboardType, Bytes>> data;
    std::vector<PasteboardType> promisedTypes;
    /// Asked for the promised types; null where there are none.
    std::shared_ptr<PasteboardDataProvider> provider;
};

/// The bytes of one item by type, in the order of the item.
using PasteboardItemContents = std::vector<std::pair<PasteboardType, Bytes>>;

/// Exclusive use of the pasteboard by one operation, among all processes of the desktop, and what happens to the
/// pasteboard if this process dies during it. Returned by `Pasteboard::tryHold`; owned by the caller.
///
/// Destroying it ends the operation: the pasteboard keeps its contents, and exclusive use ends, at once or, after
/// `expectPaste`, when the target has read the staged text, at the latest when the grace wait is over or the contents
/// change. That holds also if the process has ended by then. The system releases the hold of a process that dies.
///
/// A platform may have a keeper, a process of its own that restores the pasteboard after a sudden death of this one. If
/// it has none, or cannot start it, everything but `retake` does nothing. Main thread; never throws.
class PasteboardHold {
public:
    PasteboardHold() = default;
    PasteboardHold(const PasteboardHold&) = delete;
    PasteboardHold& operator=(const PasteboardHold&) = delete;
    virtual ~PasteboardHold() = default;

    /// The contents to restore if this process dies from now on; they are copied. Called before the operation changes
    /// the pasteboard; once more with new contents, these count.
    virtual void protect(const std::vector<PasteboardItemContents>& saved) = 0;

    /// The target is about to be told to copy: contents that it writes within `wait` belong to this operation, also
    /// after a death. Contents that any other program writes do not.
    virtual void expectCopy(std::optional<ProcessIdentifier> target, Duration wait) = 0;

    /// The target is about to be told to paste what was written last, or was just told. After a death from now on, the
    /// contents stay until their promised text was read, `minimumWait` from now at the earliest and `graceWait` from
    /// now at the latest. Called before the first key and again after the last one.
    virtual void expectPaste(Duration minimumWait, Duration graceWait) = 0;

    /// Makes the use exclusive again for another operation of this process, after `expectPaste`. False if another
    /// process holds the pasteboard by now. Does not wait.
    [[nodiscard]] virtual bool retake() = 0;
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

    /// Begins exclusive use of the pasteboard, or returns null if another process, or another hold of this one, has it.
    /// Does not wait. If there is no pasteboard to hold, the result is a hold that does nothing. The pasteboard
    /// outlives its holds.
    [[nodiscard]] virtual std::unique_ptr<PasteboardHold> tryHold() = 0;
};

}  // namespace lomaris
