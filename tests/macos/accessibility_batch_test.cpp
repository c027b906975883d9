#include "tests/macos/fake_platform_test.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using Answers = std::vector<std::vector<AttributeAnswer>>;

/// A field with one attribute for each possible result of a copy.
class AccessibilityBatch : public FakePlatformTest {
protected:
    AccessibilityBatch() {
        auto& attributes = field().attributes;
        attributes["text"] = {kAXErrorSuccess, makeString(u"brown fox")};
        attributes["range"] = {kAXErrorSuccess, boxRange(10, 9)};
        attributes["point"] = {kAXErrorSuccess, boxPoint()};
        attributes["elements"] = {kAXErrorSuccess, makeArray({makeElementObject({42, 8})})};
        attributes["nothing"] = {kAXErrorSuccess, nullptr};
        attributes["null"] = {kAXErrorSuccess, heldConstant(kCFNull)};
        attributes["noValue"] = {kAXErrorNoValue, nullptr};
        attributes["failure"] = {kAXErrorFailure, nullptr};
        for (const std::int32_t code : failureCodes) {
            codes_.push_back("code" + std::to_string(code));
            attributes[codes_.back()] = {static_cast<::AXError>(code), nullptr};
        }
    }

    std::vector<std::string_view> everyAttribute() const {
        std::vector<std::string_view> names{"text",    "range",   "missing", "point", "nothing",
                                            "noValue", "failure", "null",    "text",  "elements"};
        names.insert(names.end(), codes_.begin(), codes_.end());
        return names;
    }

    Answers singly(const std::vector<Element>& elements, const std::vector<std::string_view>& names) {
        Answers answers;
        for (const Element& element : elements) {
            answers.emplace_back();
            for (const std::string_view name : names) {
                answers.back().push_back(accessibility().copyAttribute(element, name));
            }
        }
        desktop().crossings.clear();
        return answers;
    }

private:
    std::vector<std::string> codes_;
};

TEST_F(AccessibilityBatch, AnswersWhatSingleCopiesAnswerWhateverThePlatformDoes) {
    desktop().at({42, 8}).attributes["text"] = {kAXErrorSuccess, makeString(Text{u'\xD83D'})};
    const std::vector<Element> elements{fieldElement(), elementFrom(makeElementObject({42, 8})), fieldElement(),
                                        elementFrom(makeElementObject({99, 1})), elementFrom(makeDate())};
    const Answers expected = singly(elements, everyAttribute());
    for (const FakeBatch conduct :
         {FakeBatch::truthful, FakeBatch::nullForErrors, FakeBatch::boxedSuccessForErrors, FakeBatch::failing,
          FakeBatch::failingWithArray, FakeBatch::succeedingWithoutArray, FakeBatch::tooShort, FakeBatch::tooLong}) {
        desktop().batch = conduct;
        EXPECT_EQ(accessibility().copyAttributes(elements, everyAttribute()), expected) << static_cast<int>(conduct);
    }
}

TEST_F(AccessibilityBatch, CrossesOnceForEachElement) {
    desktop().at({42, 8});
    const std::vector<Element> elements{fieldElement(), elementFrom(makeElementObject({42, 8}))};
    const std::vector<std::string_view> names{"text", "missing", "noValue", "range"};
    const Answers expected = singly(elements, names);
    EXPECT_EQ(accessibility().copyAttributes(elements, names), expected);
    EXPECT_EQ(desktop().crossings, (std::vector<std::string>{"copy text missing noValue range of 42.7",
                                                             "copy text missing noValue range of 42.8"}));
}

TEST_F(AccessibilityBatch, AsksAgainOnlyForWhatTheNullObjectLeavesOpen) {
    desktop().batch = FakeBatch::nullForErrors;
    const std::vector<Element> elements{fieldElement()};
    const std::vector<std::string_view> names{"text", "noValue", "nothing"};
    EXPECT_EQ(accessibility().copyAttributes(elements, names), (Answers{{{AXError::success, Text(u"brown fox")},
                                                                         {AXError::noValue, NullValue{}},
                                                                         {AXError::success, NullValue{}}}}));
    EXPECT_EQ(desktop().crossings, crossingsOf({"copy text noValue nothing", "copy noValue", "copy nothing"}));
}

TEST_F(AccessibilityBatch, FallsBackToSingleCopiesWhereItFailsAsAWhole) {
    desktop().batch = FakeBatch::failing;
    const std::vector<Element> elements{fieldElement()};
    const std::vector<std::string_view> names{"text", "noValue"};
    EXPECT_EQ(accessibility().copyAttributes(elements, names),
              (Answers{{{AXError::success, Text(u"brown fox")}, {AXError::noValue, NullValue{}}}}));
    EXPECT_EQ(desktop().crossings, crossingsOf({"copy text noValue", "copy text", "copy noValue"}));
}

TEST_F(AccessibilityBatch, OfOneAttributeIsASingleCopy) {
    const std::vector<Element> elements{fieldElement()};
    const std::vector<std::string_view> names{"text"};
    EXPECT_EQ(accessibility().copyAttributes(elements, names), (Answers{{{AXError::success, Text(u"brown fox")}}}));
    EXPECT_EQ(desktop().crossings, crossingsOf({"copy text"}));
}

TEST_F(AccessibilityBatch, OfNothingCrossesNowhere) {
    const std::vector<Element> elements{fieldElement(), fieldElement()};
    const std::vector<std::string_view> names{"text", "range"};
    EXPECT_EQ(accessibility().copyAttributes(elements, {}), Answers(2));
    EXPECT_EQ(accessibility().copyAttributes({}, names), Answers{});
    EXPECT_EQ(desktop().crossings, std::vector<std::string>{});
}

TEST_F(AccessibilityBatch, AnElementOutlivesItsBatch) {
    const std::vector<Element> elements{fieldElement()};
    const std::vector<std::string_view> names{"text", "elements"};
    Answers answers = accessibility().copyAttributes(elements, names);
    field().attributes.clear();
    desktop().at({42, 8}).attributes["text"] = {kAXErrorSuccess, makeString(u"child")};
    const auto children = std::get<std::vector<Element>>(answers[0][1].value);
    answers.clear();
    EXPECT_EQ(accessibility().copyAttribute(children.at(0), "text"),
              (AttributeAnswer{AXError::success, Text(u"child")}));
}

}  // namespace
}  // namespace lomaris::test
