#pragma once

#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace lomaris::test {

inline const PasteboardType stringType{pasteboard_type::string};

/// A provider that supplies "promised", or nothing if told so, and counts the requests.
class TextProvider final : public PasteboardDataProvider {
public:
    void provideData(PromisedItem& item, const PasteboardType& type) override {
        ++asked;
        if (provides) {
            item.setData("promised", type);
        }
    }

    int asked = 0;
    bool provides = true;
};

inline std::shared_ptr<TextProvider> promiseText(SimulatedDesktop& desktop) {
    const auto provider = std::make_shared<TextProvider>();
    std::vector<NewPasteboardItem> items(1);
    items[0].promisedTypes.push_back(stringType);
    items[0].provider = provider;
    desktop.pasteboard().clearContents();
    EXPECT_TRUE(desktop.pasteboard().writeItems(std::move(items)));
    return provider;
}

/// The signal that ended the process while `scenario` ran; nullopt if `scenario` returned.
inline std::optional<int> signalOf(const std::function<void()>& scenario) {
    try {
        scenario();
    } catch (const SimulatedTermination& termination) {
        return termination.signal;
    }
    return std::nullopt;
}

/// A desktop whose process ends.
class SimulatedProcessEnd : public testing::Test {
protected:
    void countChanges() { static_cast<void>(desktop.pasteboard().changeCount()); }

    std::function<void()> tellToEnd(int signalNumber = 15) {
        return [this, signalNumber] { desktop.terminate(signalNumber); };
    }

    SimulatedDesktop desktop;
    Scheduling& scheduling = desktop.scheduling();
};

}  // namespace lomaris::test
