#include "platform/macos/attribute_values.h"

#include "tests/macos/fake_platform_test.h"

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

class AttributeValues : public FakePlatformTest {
protected:
    AttributeAnswer copyOf(Held value) {
        field().attributes["AXValue"] = {kAXErrorSuccess, std::move(value)};
        return accessibility().copyAttribute(fieldElement(), "AXValue");
    }

    /// Sets the attribute to `value`; `arrived` is the object that the platform received.
    AXError set(const AttributeValue& value) {
        field().settable.insert("AXValue");
        field().onSet = [this](const std::string&, CFTypeRef arriving) {
            arrived_ = heldConstant(arriving);
            return kAXErrorSuccess;
        };
        return accessibility().setAttribute(fieldElement(), "AXValue", value);
    }

    CFTypeRef arrived() const { return arrived_.get(); }

    void TearDown() override {
        arrived_.reset();
        FakePlatformTest::TearDown();
    }

private:
    Held arrived_;
};

AttributeAnswer success(AttributeValue value) { return {AXError::success, std::move(value)}; }

TEST_F(AttributeValues, EveryKindIsToldByItsType) {
    struct Case {
        const char* name;
        Held given;
        AttributeValue expected;
    };
    const Held element = makeElementObject({42, 8});
    const Held another = makeElementObject({42, 9});
    const std::vector<Case> cases{
        {"no reference", nullptr, NullValue{}},
        {"the null object", heldConstant(kCFNull), NullValue{}},
        {"text", makeString(u"brown fox"), Text(u"brown fox")},
        {"empty text", makeString(u""), Text()},
        {"half a pair", makeString(Text{u'\xDC36'}), Text{u'\xDC36'}},
        {"true", heldConstant(kCFBooleanTrue), true},
        {"false", heldConstant(kCFBooleanFalse), false},
        {"a byte", makeNumber(std::int8_t{1}), std::int64_t{1}},
        {"zero", makeNumber(std::int32_t{0}), std::int64_t{0}},
        {"a long integer", makeNumber(std::numeric_limits<std::int64_t>::min()),
         std::numeric_limits<std::int64_t>::min()},
        {"a whole float", makeNumber(8.0F), std::int64_t{8}},
        {"a fraction", makeNumber(0.5), OtherNumber{0.5}},
        {"a number beyond 64 bits", makeNumber(1e30), OtherNumber{1e30}},
        {"an element", element, elementFrom(element)},
        {"no elements", makeArray({}), std::vector<Element>{}},
        {"elements", makeArray({element, another}), std::vector<Element>{elementFrom(element), elementFrom(another)}},
        {"elements and a text", makeArray({element, makeString(u"x")}), MixedArray{}},
        {"a text and elements", makeArray({makeString(u"x"), element}), MixedArray{}},
        {"an array of the null object", makeArray({heldConstant(kCFNull)}), MixedArray{}},
        {"an array of an array", makeArray({makeArray({element})}), MixedArray{}},
        {"a range", boxRange(10, 9), TextRange{10, 9}},
        {"an empty range", boxRange(3, 0), TextRange{3, 0}},
        {"a range out of this world", boxRange(std::numeric_limits<CFIndex>::max(), -1),
         TextRange{notFoundLocation, -1}},
        {"a point", boxPoint(), OtherBoxedValue{}},
        {"a point that unboxes as a range", boxCarelessPoint(), OtherBoxedValue{}},
        {"an error", boxError(kAXErrorNoValue), OtherBoxedValue{}},
        {"a range that does not unbox", boxBrokenRange(), OtherBoxedValue{}},
        {"a date", makeDate(), OtherValue{}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(copyOf(each.given), success(each.expected)) << each.name;
    }
}

TEST_F(AttributeValues, AnElementOutlivesTheAnswerThatBroughtIt) {
    const AttributeAnswer answer = copyOf(makeElementObject({42, 8}));
    field().attributes.clear();
    desktop().at({42, 8}).attributes["AXRole"] = {kAXErrorSuccess, makeString(u"AXButton")};
    const Element& element = std::get<Element>(answer.value);
    const Element copy = element;
    EXPECT_EQ(accessibility().copyAttribute(copy, "AXRole"), success(Text(u"AXButton")));
}

TEST_F(AttributeValues, AMixedArrayLeavesNoElementBehind) {
    const Held element = makeElementObject({42, 8});
    EXPECT_EQ(copyOf(makeArray({element, element, makeDate()})), success(MixedArray{}));
    field().attributes.clear();
    EXPECT_EQ(objectAt(element.get()).references, 1);
}

TEST_F(AttributeValues, TextsBooleansAndElementsArriveAsTheyAre) {
    EXPECT_EQ(set(Text{u'a', u'\xD83D'}), AXError::success);
    EXPECT_EQ(unitsOf(arrived()), (Text{u'a', u'\xD83D'}));
    EXPECT_EQ(set(true), AXError::success);
    EXPECT_EQ(arrived(), static_cast<CFTypeRef>(kCFBooleanTrue));
    EXPECT_EQ(set(false), AXError::success);
    EXPECT_EQ(arrived(), static_cast<CFTypeRef>(kCFBooleanFalse));
    const Held element = makeElementObject({42, 8});
    EXPECT_EQ(set(elementFrom(element)), AXError::success);
    EXPECT_EQ(arrived(), element.get());
}

TEST_F(AttributeValues, NumbersAndRangesArriveInTheirBoxes) {
    EXPECT_EQ(set(std::int64_t{-3}), AXError::success);
    EXPECT_NE(CFEqual(arrived(), makeNumber(std::int64_t{-3}).get()), 0);
    EXPECT_EQ(set(OtherNumber{0.25}), AXError::success);
    EXPECT_NE(CFEqual(arrived(), makeNumber(0.25).get()), 0);
    EXPECT_EQ(set(TextRange{4, 5}), AXError::success);
    EXPECT_EQ(macos::attributeValueFrom(arrived()), AttributeValue(TextRange(4, 5)));
}

TEST_F(AttributeValues, WhatCannotBeSetIsRefusedWithoutACrossing) {
    const Element noElement = elementFrom(makeDate());
    const std::vector<AttributeValue> values{
        NullValue{}, std::vector<Element>{fieldElement()}, MixedArray{}, OtherBoxedValue{}, OtherValue{}, noElement};
    for (const AttributeValue& value : values) {
        EXPECT_EQ(set(value), AXError::illegalArgument) << value.index();
    }
    EXPECT_EQ(desktop().crossings, std::vector<std::string>{});
}

TEST_F(AttributeValues, OnlyABoxOfThatKindHoldsAnError) {
    EXPECT_EQ(macos::boxedErrorIn(boxError(kAXErrorNoValue).get()), AXError::noValue);
    EXPECT_EQ(macos::boxedErrorIn(boxError(kAXErrorSuccess).get()), AXError::success);
    for (const Held& other : {Held(), boxRange(1, 2), boxPoint(), boxCarelessPoint(), boxBrokenRange(), makeDate(),
                              makeString(u"x"), heldConstant(kCFNull), makeNumber(std::int32_t{-25212})}) {
        EXPECT_EQ(macos::boxedErrorIn(other.get()), std::nullopt);
    }
}

}  // namespace
}  // namespace lomaris::test
