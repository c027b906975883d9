#pragma once

#include "platform/linux/process/linux_scheduling.h"
#include "platform/linux/x11/clipboard/linux_pasteboard.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {

/// Runs `action` on another thread, as another program that waits for this one, and the run loop until it returns.
/// Returns its result.
template <typename Action>
auto whileServing(Scheduling& scheduling, Action action) {
    auto result = std::async(std::launch::async, std::move(action));
    while (result.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        scheduling.runLoopSlice(std::chrono::milliseconds(2));
    }
    return result.get();
}

/// Provides the same bytes for every promised type, and records the types that were requested.
class TestProvider final : public PasteboardDataProvider {
public:
    explicit TestProvider(std::optional<Bytes> bytes) : bytes_(std::move(bytes)) {}

    void provideData(PromisedItem& item, const PasteboardType& type) override {
        asked.push_back(type);
        if (bytes_) {
            item.setData(*bytes_, type);
        }
    }

    [[nodiscard]] std::optional<Bytes> promisedData(const PasteboardType& /*type*/) const override { return bytes_; }

    std::vector<PasteboardType> asked;

private:
    std::optional<Bytes> bytes_;
};

/// The pasteboard under test, with the run loop that serves it.
class Clipboard : public testing::Test {
public:
    using Contents = std::vector<std::pair<PasteboardType, std::optional<Bytes>>>;

    Clipboard() { static_cast<void>(std::signal(SIGPIPE, SIG_IGN)); }

    [[nodiscard]] LinuxPasteboard& pasteboard() { return *pasteboard_; }
    [[nodiscard]] LinuxScheduling& scheduling() { return scheduling_; }

    /// Clears and writes. Returns the result of the write.
    [[nodiscard]] bool put(std::vector<NewPasteboardItem> items) {
        pasteboard_->clearContents();
        return pasteboard_->writeItems(std::move(items));
    }
    [[nodiscard]] bool put(std::vector<std::pair<PasteboardType, Bytes>> data) {
        std::vector<NewPasteboardItem> items(1);
        items[0].data = std::move(data);
        return put(std::move(items));
    }
    [[nodiscard]] bool putPromise(const std::shared_ptr<PasteboardDataProvider>& provider,
                                  std::vector<std::pair<PasteboardType, Bytes>> data = {}) {
        std::vector<NewPasteboardItem> items(1);
        items[0].data = std::move(data);
        items[0].promisedTypes.emplace_back(pasteboard_type::string);
        items[0].provider = provider;
        return put(std::move(items));
    }

    /// All items with all their types and bytes, in order.
    [[nodiscard]] std::vector<Contents> contents() {
        std::vector<Contents> all;
        for (const auto& item : pasteboard_->items()) {
            Contents& one = all.emplace_back();
            for (PasteboardType& type : item->types()) {
                std::optional<Bytes> bytes = item->data(type);
                one.emplace_back(std::move(type), std::move(bytes));
            }
        }
        return all;
    }

    /// Destroys the pasteboard, as at the end of the process.
    void end() { pasteboard_.reset(); }

private:
    LinuxScheduling scheduling_;
    std::unique_ptr<LinuxPasteboard> pasteboard_ = std::make_unique<LinuxPasteboard>(scheduling_, forkKeeper);
};

inline const PasteboardType stringType{pasteboard_type::string};
inline const PasteboardType concealedType{pasteboard_type::concealed};
inline const PasteboardType transientType{pasteboard_type::transient};

/// Pseudo-random bytes of all values. They do not repeat, so that a lost or duplicated piece is detected.
[[nodiscard]] inline Bytes longBytes(std::size_t size) {
    Bytes bytes(size, '\0');
    unsigned state = 1;
    for (char& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24U);
    }
    return bytes;
}

}  // namespace lomaris::test
