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

/// Promises "promised", counts how often it was asked, and gives it where it is told to.
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

/// The signal that ended the process while `scenario` ran, or nothing where it ran to its end.
inline std::optional<int> signalOf(const std::function<void()>& scenario) {
    try {
        scenario();
    } catch (const SimulatedTermination& termination) {
        return termination.signal;
    }
    return std::nullopt;
}

/// A desktop whose process comes to its end.
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
