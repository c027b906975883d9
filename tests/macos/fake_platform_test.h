#pragma once

#include "platform/macos/accessibility.h"
#include "platform/macos/accessibility_element.h"
#include "platform/macos/events.h"
#include "tests/macos/fake_accessibility.h"
#include "tests/macos/fake_events.h"
#include "tests/macos/fake_shielded_call.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace lomaris::test {

/// Base of the tests of the services on the fake platform functions. A test fails if it leaves an object or an
/// unbalanced constant.
class FakePlatformTest : public testing::Test {
protected:
    static constexpr FakeElementKey fieldKey{42, 7};

    FakePlatformTest() {
        fakeAccessibility_.emplace();
        fakeEvents_.emplace();
        desktop().at(fieldKey);
    }

    void TearDown() override {
        fakeAccessibility_.reset();
        fakeEvents_.reset();
        FakeFaults::clear();
        fake_shield::reset();
        setUserLanguage("en");
        EXPECT_EQ(unbalancedObjects(), "");
    }

    Accessibility& accessibility() { return accessibility_; }
    EventServices& events() { return events_; }
    FakeAccessibility& desktop() { return *fakeAccessibility_; }
    FakeEvents& keyboard() { return *fakeEvents_; }

    /// The element whose attributes a test sets.
    FakeAccessibility::State& field() { return desktop().at(fieldKey); }

    /// The same element, as the service returns it.
    static Element fieldElement() { return elementFrom(makeElementObject(fieldKey)); }

    static Element elementFrom(const Held& value) {
        return macos::makeElement(macos::CFOwned<CFTypeRef>::retaining(value.get()));
    }

    static std::vector<std::string> crossingsOf(std::initializer_list<const char*> calls) {
        std::vector<std::string> lines;
        for (const char* const call : calls) {
            lines.push_back(std::string(call) + " of 42.7");
        }
        return lines;
    }

private:
    macos::MacOSAccessibility accessibility_;
    macos::MacOSEventServices events_;
    std::optional<FakeAccessibility> fakeAccessibility_;
    std::optional<FakeEvents> fakeEvents_;
};

/// Every result code that the platform documents, except success, and one that it does not document.
inline constexpr std::int32_t failureCodes[] = {-25200, -25201, -25202, -25203, -25204, -25205, -25206, -25207,
                                                -25208, -25209, -25210, -25211, -25212, -25213, -25214, -1};

}  // namespace lomaris::test
