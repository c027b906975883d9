#include "platform/simulated/simulated_pasteboard.h"

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

/// An item as the boundary returns it.
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

/// Receives the bytes of a provider and stores them in the item.
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
    // Copied, because fulfilling a promise may change the pasteboard.
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
    std::optional<Text> text = composeString();
    const std::vector<std::shared_ptr<StoredItem>> items = items_;
    for (const auto& item : items) {
        noteRead(*item, stringType);
    }
    return text;
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
    const auto shielded = process_.shield();
    if (!journal_.admits()) {
        return;
    }
    journal_.begin("clearContents()");
    latency_.pass("clearContents");
    if (process_.isOver()) {
        return;
    }
    isOwnedHere_ = true;
    clear();
    isJustCleared_ = true;
    if (SimulatedKeeper* const keeper = use_->keeper()) {
        keeper->publish();
    }
}

bool SimulatedPasteboard::writeItems(std::vector<NewPasteboardItem> items) {
    const auto shielded = process_.shield();
    if (!journal_.admits()) {
        return false;
    }
    const std::size_t call = journal_.begin("writeItems(");
    appendList(journal_.line(call), items, appendNewItem);
    latency_.pass("writeItems");
    if (process_.isOver()) {
        return false;
    }
    ++writeCount_;
    if (refusals_ > 0 || refusedNumbers_.contains(writeCount_) || !isOwnedHere_) {
        refusals_ = refusals_ > 0 ? refusals_ - 1 : 0;
        journal_.line(call) += ") -> false";
        return false;
    }
    for (NewPasteboardItem& item : items) {
        append(storedItemOf(std::move(item)));
    }
    if (SimulatedKeeper* const keeper = use_->keeper()) {
        for (const auto& item : items_) {
            item->handPromisesToKeeper();
        }
        keeper->publish();
    }
    if (!std::exchange(isJustCleared_, false)) {
        ++changeCount_;
    }
    journal_.line(call) += ") -> true";
    return true;
}

std::unique_ptr<PasteboardHold> SimulatedPasteboard::tryHold() { return use_->tryHold(); }

void SimulatedPasteboard::addKeeper() {
    use_->setKeeper(std::make_unique<SimulatedKeeper>(
        scheduler_, [this](const std::vector<PasteboardItemContents>& saved) { restore(saved); }));
}

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

void SimulatedPasteboard::copyAsOther(const std::vector<CopiedItem>& items, std::optional<ProcessIdentifier> copier) {
    isOwnedHere_ = false;
    clear();
    for (const CopiedItem& item : items) {
        append(storedItemOf(item));
    }
    if (SimulatedKeeper* const keeper = use_->keeper()) {
        keeper->noteCopy(copier);
    }
}

void SimulatedPasteboard::restore(const std::vector<PasteboardItemContents>& saved) {
    isOwnedHere_ = false;
    clear();
    for (const PasteboardItemContents& contents : saved) {
        append(storedItemOf(CopiedItem{.data = contents, .promises = {}}));
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
        finish({item, type, std::move(whenRead)});
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

void SimulatedPasteboard::loseProcess(ThisProcess::Ending ending) {
    SimulatedKeeper* const keeper = use_->keeper();
    if (keeper != nullptr) {
        for (const auto& item : items_) {
            item->letKeeperKeepPromises();
        }
    }
    // Programs that wait for the text get it from the keeper; without a keeper they get nothing.
    for (const Reading& reading : std::exchange(readings_, {})) {
        finish(reading);
    }
    if (keeper == nullptr) {
        return;
    }
    if (ending == ThisProcess::Ending::orderly) {
        keeper->end();
    }
    keeper->losePartner();
}

void SimulatedPasteboard::clear() {
    ++changeCount_;
    isJustCleared_ = false;
    for (const auto& item : std::exchange(items_, {})) {
        item->isGone = true;
    }
    // Programs that wait for a promise of the old contents get nothing.
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
    finish(reading);
}

void SimulatedPasteboard::finish(const Reading& reading) {
    std::optional<Bytes> bytes = fetch(reading.item, reading.type);
    scheduler_.act([&] { reading.whenRead(std::move(bytes)); });
    noteRead(*reading.item, reading.type);
}

void SimulatedPasteboard::noteRead(StoredItem& item, const PasteboardType& type) {
    SimulatedKeeper* const keeper = use_->keeper();
    const StoredEntry* const entry = item.isGone ? nullptr : item.find(type);
    if (keeper != nullptr && type == stringType && entry != nullptr && entry->wasPromisedHere && entry->bytes) {
        keeper->noteTextRead();
    }
}

}  // namespace lomaris::simulated
