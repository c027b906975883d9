#include "platform/simulated/simulated_pasteboard.h"

#include "platform/inert_pasteboard_hold.h"
#include "platform/simulated/describe.h"
#include "text/utf8.h"

#include <cstddef>
#include <string>
#include <utility>

namespace lomaris::simulated {
namespace {

const PasteboardType stringType{pasteboard_type::string};

void appendItemName(std::string& line, const StoredItem& item) {
    line += "item ";
    appendInteger(line, item.number);
}

void appendNewItem(std::string& line, const NewPasteboardItem& item) {
    line += '{';
    const char* separator = "";
    for (const auto& [type, bytes] : item.data) {
        line += separator;
        line += type;
        line += ": ";
        appendQuoted(line, std::string_view(bytes));
        separator = ", ";
    }
    for (const PasteboardType& type : item.promisedTypes) {
        line += separator;
        line += type;
        line += ": promised";
        separator = ", ";
    }
    line += '}';
}

/// An item as the boundary hands it out.
class SimulatedItem final : public PasteboardItem {
public:
    SimulatedItem(SimulatedPasteboard& pasteboard, Journal& journal, CallLatency& latency,
                  std::shared_ptr<StoredItem> item)
        : pasteboard_(pasteboard), journal_(journal), latency_(latency), item_(std::move(item)) {}

    std::vector<PasteboardType> types() override {
        if (!journal_.admits()) {
            return {};
        }
        const std::size_t call = journal_.begin("types(");
        appendItemName(journal_.line(call), *item_);
        latency_.pass("types");
        std::vector<PasteboardType> types;
        if (!item_->isGone) {
            for (const StoredEntry& entry : item_->entries) {
                types.push_back(entry.type);
            }
        }
        journal_.line(call) += ") -> ";
        appendList(journal_.line(call), types, [](std::string& line, const PasteboardType& type) { line += type; });
        return types;
    }

    std::optional<Bytes> data(const PasteboardType& type) override {
        if (!journal_.admits()) {
            return std::nullopt;
        }
        const std::size_t call = journal_.begin("data(");
        appendItemName(journal_.line(call), *item_);
        journal_.line(call) += ", ";
        journal_.line(call) += type;
        journal_.line(call) += ")";
        latency_.pass("data");
        std::optional<Bytes> bytes = pasteboard_.fetch(item_, type);
        journal_.line(call) += " -> ";
        appendBytes(journal_.line(call), bytes);
        return bytes;
    }

private:
    SimulatedPasteboard& pasteboard_;
    Journal& journal_;
    CallLatency& latency_;
    std::shared_ptr<StoredItem> item_;
};

/// Where a provider puts the bytes that it was asked for.
class Fulfilment final : public PromisedItem {
public:
    explicit Fulfilment(StoredItem& item) : item_(item) {}

    void setData(std::string_view bytes, const PasteboardType& type) override { item_.store(type, bytes); }

private:
    StoredItem& item_;
};

}  // namespace

std::vector<std::unique_ptr<PasteboardItem>> SimulatedPasteboard::items() {
    if (!journal_.admits()) {
        return {};
    }
    const std::size_t call = journal_.begin("items() -> ");
    latency_.pass("items");
    std::vector<std::unique_ptr<PasteboardItem>> items;
    for (const auto& item : items_) {
        items.push_back(std::make_unique<SimulatedItem>(*this, journal_, latency_, item));
    }
    appendList(journal_.line(call), items_, [](std::string& line, const auto& item) { appendItemName(line, *item); });
    return items;
}

std::optional<Text> SimulatedPasteboard::string() {
    if (!journal_.admits()) {
        return std::nullopt;
    }
    const std::size_t call = journal_.begin("string()");
    latency_.pass("string");
    std::optional<Text> answer = composeString();
    std::string& line = journal_.line(call);
    line += " -> ";
    if (answer) {
        appendQuoted(line, TextView(*answer));
    } else {
        line += "nothing";
    }
    return answer;
}

std::optional<Text> SimulatedPasteboard::composeString() {
    std::optional<Text> composed;
    // Keeping a promise may change the pasteboard.
    const std::vector<std::shared_ptr<StoredItem>> items = items_;
    for (const auto& item : items) {
        const std::optional<Bytes> bytes = fetch(item, stringType);
        if (!bytes) {
            continue;
        }
        if (composed) {
            *composed += u'\n';
        } else {
            composed.emplace();
        }
        *composed += textFromUtf8(*bytes);
    }
    return composed;
}

std::optional<Text> SimulatedPasteboard::stringForOthers() {
    if (scheduler_.isActing()) {
        abortScenario("an action cannot wait for a promise; it reads as another program instead");
    }
    return composeString();
}

std::int64_t SimulatedPasteboard::changeCount() {
    if (!journal_.admits()) {
        return 0;
    }
    const std::size_t call = journal_.begin("changeCount() -> ");
    latency_.pass("changeCount");
    appendInteger(journal_.line(call), changeCount_);
    return changeCount_;
}

void SimulatedPasteboard::clearContents() {
    if (!journal_.admits()) {
        return;
    }
    journal_.begin("clearContents()");
    latency_.pass("clearContents");
    isOwnedHere_ = true;
    clear();
    isJustCleared_ = true;
}

bool SimulatedPasteboard::writeItems(std::vector<NewPasteboardItem> items) {
    if (!journal_.admits()) {
        return false;
    }
    const std::size_t call = journal_.begin("writeItems(");
    appendList(journal_.line(call), items, appendNewItem);
    latency_.pass("writeItems");
    ++writeCount_;
    if (refusals_ > 0 || refusedNumbers_.contains(writeCount_) || !isOwnedHere_) {
        refusals_ = refusals_ > 0 ? refusals_ - 1 : 0;
        journal_.line(call) += ") -> false";
        return false;
    }
    for (NewPasteboardItem& item : items) {
        append(storedItemOf(std::move(item)));
    }
    if (!std::exchange(isJustCleared_, false)) {
        ++changeCount_;
    }
    journal_.line(call) += ") -> true";
    return true;
}

std::unique_ptr<PasteboardHold> SimulatedPasteboard::tryHold() { return std::make_unique<InertPasteboardHold>(); }

std::optional<Bytes> SimulatedPasteboard::fetch(const std::shared_ptr<StoredItem>& item, const PasteboardType& type) {
    StoredEntry* entry = item->isGone ? nullptr : item->find(type);
    if (entry == nullptr) {
        return std::nullopt;
    }
    if (entry->promiseOfOther) {
        const auto promise = entry->promiseOfOther;
        std::optional<Bytes> bytes;
        scheduler_.act([&] { bytes = promise(); });
        if (bytes) {
            item->store(type, *bytes);
        }
        return bytes;
    }
    if (entry->isPromisedHere && !process_.isOver()) {
        Fulfilment fulfilment(*item);
        item->provider->provideData(fulfilment, type);
        entry = item->find(type);
    }
    return entry->bytes;
}

void SimulatedPasteboard::copyAsOther(const std::vector<CopiedItem>& items) {
    isOwnedHere_ = false;
    clear();
    for (const CopiedItem& item : items) {
        append(storedItemOf(item));
    }
}

void SimulatedPasteboard::readAsOther(const PasteboardType& type, WhenRead whenRead) {
    for (const auto& item : items_) {
        const StoredEntry* entry = item->find(type);
        if (entry == nullptr) {
            continue;
        }
        if (entry->isPromisedHere && !process_.isOver()) {
            readings_.push_back({item, type, std::move(whenRead)});
            runLoop_.requestService([this] { serveNextReading(); });
            return;
        }
        std::optional<Bytes> bytes = fetch(item, type);
        scheduler_.act([&] { whenRead(std::move(bytes)); });
        return;
    }
    scheduler_.act([&] { whenRead(std::nullopt); });
}

std::vector<StandingItem> SimulatedPasteboard::contents() const {
    std::vector<StandingItem> contents;
    for (const auto& item : items_) {
        contents.push_back(standingItemOf(*item));
    }
    return contents;
}

void SimulatedPasteboard::resolvePromises() {
    while (!readings_.empty()) {
        serveNextReading();
    }
    const std::vector<std::shared_ptr<StoredItem>> items = items_;
    for (const auto& item : items) {
        for (const PasteboardType& type : standingItemOf(*item).promised) {
            const StoredEntry* entry = item->find(type);
            if (entry->isPromisedHere) {
                static_cast<void>(fetch(item, type));
            }
        }
    }
}

void SimulatedPasteboard::clear() {
    ++changeCount_;
    isJustCleared_ = false;
    for (const auto& item : std::exchange(items_, {})) {
        item->isGone = true;
    }
    // Whoever waits for a promise of the old contents gets nothing.
    for (const Reading& reading : std::exchange(readings_, {})) {
        scheduler_.act([&] { reading.whenRead(std::nullopt); });
    }
}

void SimulatedPasteboard::append(std::shared_ptr<StoredItem> item) {
    item->number = ++itemCount_;
    items_.push_back(std::move(item));
}

void SimulatedPasteboard::serveNextReading() {
    if (readings_.empty()) {
        return;
    }
    const Reading reading = std::move(readings_.front());
    readings_.pop_front();
    std::optional<Bytes> bytes = fetch(reading.item, reading.type);
    scheduler_.act([&] { reading.whenRead(std::move(bytes)); });
}

}  // namespace lomaris::simulated
