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

/// The bytes of one pasteboard type.
using Bytes = std::string;

/// Identifier of a kind of contents: a uniform type identifier in UTF-8 ("public.utf8-plain-text").
using PasteboardType = std::string;

namespace pasteboard_type {

/// Plain text in UTF-8.
inline constexpr std::string_view string = "public.utf8-plain-text";
/// If present, other programs should neither record nor display the contents.
inline constexpr std::string_view concealed = "org.nspasteboard.ConcealedType";
/// If present, the contents will be replaced soon.
inline constexpr std::string_view transient = "org.nspasteboard.TransientType";

}  // namespace pasteboard_type

/// One item of a pasteboard snapshot. Returns no data once the pasteboard's contents have changed.
class PasteboardItem {
public:
    PasteboardItem() = default;
    PasteboardItem(const PasteboardItem&) = delete;
    PasteboardItem& operator=(const PasteboardItem&) = delete;
    virtual ~PasteboardItem() = default;

    /// The types that the item offers, in its order and without duplicates.
    [[nodiscard]] virtual std::vector<PasteboardType> types() = 0;

    /// The bytes of one type; nullopt if there are none or they did not arrive in time. The bytes of a promised type
    /// are requested from the program that promised it.
    [[nodiscard]] virtual std::optional<Bytes> data(const PasteboardType& type) = 0;
};

/// An item with promised types, as its provider sees it.
class PromisedItem {
public:
    PromisedItem() = default;
    PromisedItem(const PromisedItem&) = delete;
    PromisedItem& operator=(const PromisedItem&) = delete;
    virtual ~PromisedItem() = default;

    /// Supplies the bytes of a promised type; they are copied.
    virtual void setData(std::string_view bytes, const PasteboardType& type) = 0;
};

/// Supplies the bytes of promised types when a reader requests them. The pasteboard shares ownership of it until the
/// promise is fulfilled or replaced.
class PasteboardDataProvider {
public:
    PasteboardDataProvider() = default;
    PasteboardDataProvider(const PasteboardDataProvider&) = delete;
    PasteboardDataProvider& operator=(const PasteboardDataProvider&) = delete;
    virtual ~PasteboardDataProvider() = default;

    /// Called when a reader requests `type`; sets the bytes on `item`, or nothing if it has none. Called on the main
    /// thread while the run loop runs, while this process itself reads the type, or when the platform ends. Must not
    /// throw.
    virtual void provideData(PromisedItem& item, const PasteboardType& type) = 0;

    /// The bytes that `provideData` would set for `type`; nullopt if they are not known in advance. Does not count as a
    /// reader's request. A platform whose keeper process fulfils the promise calls it when the item is written, and
    /// calls `provideData` when a reader has requested the type from the keeper. Must not throw.
    [[nodiscard]] virtual std::optional<Bytes> promisedData(const PasteboardType& /*type*/) const {
        return std::nullopt;
    }
};

/// An item to write: types with their bytes, and promised types whose bytes are supplied on request.
struct NewPasteboardItem {
    std::vector<std::pair<PasteboardType, Bytes>> data;
    std::vector<PasteboardType> promisedTypes;
    /// Supplies the promised types; null if there are none.
    std::shared_ptr<PasteboardDataProvider> provider;
};

/// The bytes of one item by type, in the order of the item.
using PasteboardItemContents = std::vector<std::pair<PasteboardType, Bytes>>;

/// Exclusive use of the pasteboard by one operation, among all processes of the desktop. Also determines what happens
/// to the pasteboard if this process dies during the operation. Returned by `Pasteboard::tryHold`; owned by the caller.
///
/// Destroying the hold ends the operation and leaves the pasteboard's contents as they are. Exclusive use then ends at
/// once; after `expectPaste` it ends when the target has read the promised text, when the grace wait is over, or when
/// the contents change, whichever is first, even if this process has ended by then. If this process dies, the system
/// releases the hold.
///
/// A platform may have a keeper, a separate process that restores the pasteboard if this process dies. Without one, all
/// functions but `retake` do nothing. Main thread only; never throws.
class PasteboardHold {
public:
    PasteboardHold() = default;
    PasteboardHold(const PasteboardHold&) = delete;
    PasteboardHold& operator=(const PasteboardHold&) = delete;
    virtual ~PasteboardHold() = default;

    /// Sets the contents to restore if this process dies from now on; they are copied. Call it before the operation
    /// changes the pasteboard. A later call replaces the contents.
    virtual void protect(const std::vector<PasteboardItemContents>& saved) = 0;

    /// Call it just before the target is told to copy. Contents that the target writes within `wait` belong to this
    /// operation, even if this process dies first; contents that any other program writes do not.
    virtual void expectCopy(std::optional<ProcessIdentifier> target, Duration wait) = 0;

    /// Call it just before the target is told to paste what was written last, and again just after. If this process
    /// dies from now on, the saved contents are restored once the promised text has been read, but not before
    /// `minimumWait` and not later than `graceWait` from now.
    virtual void expectPaste(Duration minimumWait, Duration graceWait) = 0;

    /// Makes the use exclusive again after `expectPaste`, for another operation of this process. False if another
    /// process holds the pasteboard by now. Does not wait.
    [[nodiscard]] virtual bool retake() = 0;
};

/// The general pasteboard. Main thread only; never throws.
///
/// If the service ends while this process owns the pasteboard's contents, it first requests all promised bytes from
/// their provider, so that a target that pastes a moment later still gets its text. It does not wait.
class Pasteboard {
public:
    Pasteboard() = default;
    Pasteboard(const Pasteboard&) = delete;
    Pasteboard& operator=(const Pasteboard&) = delete;
    virtual ~Pasteboard() = default;

    /// The items in order; empty if there are none or the pasteboard cannot be read. The caller owns the items, which
    /// must not outlive the pasteboard.
    [[nodiscard]] virtual std::vector<std::unique_ptr<PasteboardItem>> items() = 0;

    /// The plain text of all items, combined by the platform's own rules; nullopt if no item has plain text.
    [[nodiscard]] virtual std::optional<Text> string() = 0;

    /// A number that changes whenever any program clears the pasteboard or becomes its owner. A write directly after
    /// this process's own `clearContents` may leave it unchanged; fulfilling a promise always does.
    [[nodiscard]] virtual std::int64_t changeCount() = 0;

    /// Empties the pasteboard and makes this process its owner. Earlier contents and promises are lost.
    virtual void clearContents() = 0;

    /// Writes items to the pasteboard after `clearContents`. True if the pasteboard accepted them. Takes ownership of
    /// the items.
    [[nodiscard]] virtual bool writeItems(std::vector<NewPasteboardItem> items) = 0;

    /// Begins exclusive use of the pasteboard. Null if another process, or another hold of this process, has it. Does
    /// not wait. If there is no pasteboard to hold, returns a hold that does nothing. The caller owns the hold, which
    /// must not outlive the pasteboard.
    [[nodiscard]] virtual std::unique_ptr<PasteboardHold> tryHold() = 0;
};

}  // namespace lomaris
