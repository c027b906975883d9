#include "platform/macos/core_foundation.h"

#include "tests/macos/fake_core_foundation.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using macos::CFOwned;

class CoreFoundation : public testing::Test {
protected:
    void TearDown() override {
        FakeFaults::clear();
        EXPECT_EQ(unbalancedObjects(), "");
    }

    static CFStringRef createString() { return CFStringCreateWithCharacters(kCFAllocatorDefault, nullptr, 0); }
    static long references(CFTypeRef object) { return objectAt(object).references; }
};

TEST_F(CoreFoundation, AnOwnerReleasesWhatItTookOver) {
    CFStringRef const string = createString();
    {
        const CFOwned<CFStringRef> owner(string);
        EXPECT_EQ(owner.get(), string);
        EXPECT_TRUE(owner);
        EXPECT_EQ(references(string), 1);
    }
    EXPECT_FALSE(isAlive(string));
}

TEST_F(CoreFoundation, AnOwnerRetainsWhatItShares) {
    const Held held = makeDate();
    {
        const auto owner = CFOwned<CFTypeRef>::retaining(held.get());
        EXPECT_EQ(references(held.get()), 2);
    }
    EXPECT_EQ(references(held.get()), 1);
}

TEST_F(CoreFoundation, CopiesShareAndMovesHandOver) {
    CFOwned<CFStringRef> first(createString());
    CFStringRef const string = first.get();
    const CFOwned<CFStringRef> copy = first;
    EXPECT_EQ(references(string), 2);
    const CFOwned<CFStringRef> moved = std::move(first);
    EXPECT_EQ(references(string), 2);
    CFOwned<CFStringRef> assigned(createString());
    assigned = copy;
    EXPECT_EQ(assigned.get(), string);
    EXPECT_EQ(references(string), 3);
    assigned = {};
    EXPECT_FALSE(assigned);
    EXPECT_EQ(references(string), 2);
}

TEST_F(CoreFoundation, AnOwnerAssignedToItselfStays) {
    CFOwned<CFStringRef> owner(createString());
    const CFOwned<CFStringRef>& same = owner;
    owner = same;
    EXPECT_EQ(references(owner.get()), 1);
}

TEST_F(CoreFoundation, AnOwnerOfNothingDoesNothing) {
    const CFOwned<CFStringRef> nothing;
    const CFOwned<CFStringRef> none(nullptr);
    const auto shared = CFOwned<CFStringRef>::retaining(nullptr);
    const CFOwned<CFStringRef> copy = nothing;
    EXPECT_FALSE(nothing || none || shared || copy);
}

TEST_F(CoreFoundation, TextsCrossUnitByUnit) {
    const std::vector<Text> texts{
        u"",
        u"brown fox",
        u"\U0001F436 \u00e9 e\u0301",
        // Half a surrogate pair: alone, at either end, in the wrong order.
        {u'\xD83D'},
        {u'\xDC36', u'a'},
        {u'a', u'\xD83D'},
        {u'\xDC36', u'\xD83D'},
        // Units that are not characters in other encodings.
        {u'\0', u'a', u'\0'},
        {u'\xFEFF', u'\xFFFE', u'\xFFFF'},
        Text(100'000, u'\u4e2d'),
    };
    for (const Text& text : texts) {
        const auto string = macos::stringFrom(text);
        ASSERT_TRUE(string);
        EXPECT_EQ(unitsOf(string.get()), text);
        EXPECT_EQ(macos::textFrom(string.get()), text);
        EXPECT_EQ(macos::textFrom(static_cast<CFStringRef>(makeString(text).get())), text);
    }
}

TEST_F(CoreFoundation, APartOfATextCrossesAlone) {
    const Text whole = u"the brown fox";
    EXPECT_EQ(macos::textFrom(macos::stringFrom(TextView(whole).substr(4, 5)).get()), u"brown");
}

TEST_F(CoreFoundation, AStringThatCannotBeMadeIsNone) {
    FakeFaults::failCall(1);
    EXPECT_FALSE(macos::stringFrom(u"x"));
    EXPECT_TRUE(FakeFaults::hasFailed());
}

// Tests of the fake itself: the tests above are meaningful only if it detects errors.
using CoreFoundationDeathTest = CoreFoundation;

TEST_F(CoreFoundationDeathTest, TheDoubleEndsTheProcessAtAnOverRelease) {
    EXPECT_DEATH(
        {
            CFStringRef const string = createString();
            CFRelease(string);
            CFRelease(string);
        },
        "after its last release");
    EXPECT_DEATH(CFRelease(nullptr), "null reference");
}

TEST_F(CoreFoundation, TheDoubleListsWhatIsLeft) {
    CFStringRef const string = createString();
    CFRetain(kCFNull);
    EXPECT_EQ(unbalancedObjects(), "1 constant null\n1 string\n");
    CFRelease(string);
    CFRelease(kCFNull);
}

TEST_F(CoreFoundation, TheDoubleSaysWhichConversionsOfNumbersLoseSomething) {
    struct Case {
        NumberStorage stored;
        bool asInteger;
        bool asDouble;
    };
    const std::vector<Case> cases{
        {std::int8_t{-5}, true, true},
        {std::int32_t{7}, true, true},
        {std::int64_t{1} << 53, true, true},
        {(std::int64_t{1} << 53) + 1, true, false},
        {std::numeric_limits<std::int64_t>::max(), true, false},
        {2.0F, true, true},
        {0.5, false, true},
        {1e30, false, true},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const Held number = makeNumber(cases[i].stored);
        std::int64_t integer = 0;
        double real = 0;
        auto* const reference = static_cast<CFNumberRef>(number.get());
        EXPECT_EQ(CFNumberGetValue(reference, kCFNumberSInt64Type, &integer) != 0, cases[i].asInteger) << i;
        EXPECT_EQ(CFNumberGetValue(reference, kCFNumberDoubleType, &real) != 0, cases[i].asDouble) << i;
    }
}

}  // namespace
}  // namespace lomaris::test
