#include "tests/macos/fake_platform_test.h"
#include "tests/macos/fake_shielded_call.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

/// Makes each platform call that can fail do so, first the first one, then the second, and so on, until the operation
/// makes no further such call.
class AccessibilityFault : public FakePlatformTest {
protected:
    AccessibilityFault() {
        field().attributes["AXRole"] = {kAXErrorSuccess, makeString(u"AXTextArea")};
        field().attributes["AXSelectedTextRange"] = {kAXErrorSuccess, boxRange(10, 9)};
        field().settable.insert("AXValue");
        field().actions["AXPress"] = kAXErrorSuccess;
    }

    /// The results of `operation` while call 1, 2, ... fails, without the result of the last run, in which no call
    /// fails.
    template <typename Answer>
    static std::vector<Answer> sweep(const std::function<Answer()>& operation) {
        std::vector<Answer> answers;
        for (int call = 1;; ++call) {
            FakeFaults::failCall(call);
            Answer answer = operation();
            const bool hasFailed = FakeFaults::hasFailed();
            FakeFaults::clear();
            if (!hasFailed) {
                return answers;
            }
            answers.push_back(std::move(answer));
        }
    }

    static constexpr AXError failed = AXError::failure;
};

TEST_F(AccessibilityFault, ACopyFails) {
    EXPECT_EQ(sweep<AttributeAnswer>([&] { return accessibility().copyAttribute(fieldElement(), "AXRole"); }),
              (std::vector<AttributeAnswer>{{failed, NullValue{}}}));
    EXPECT_EQ(sweep<AXError>([&] { return accessibility().copyElementAttribute(fieldElement(), "AXRole").error; }),
              std::vector<AXError>{failed});
}

TEST_F(AccessibilityFault, AWriteFails) {
    const auto write = [&](const AttributeValue& value) {
        return sweep<AXError>([&] { return accessibility().setAttribute(fieldElement(), "AXValue", value); });
    };
    EXPECT_EQ(write(Text(u"x")), std::vector(2, failed));
    EXPECT_EQ(write(std::int64_t{1}), std::vector(2, failed));
    EXPECT_EQ(write(OtherNumber{0.5}), std::vector(2, failed));
    EXPECT_EQ(write(TextRange{1, 2}), std::vector(2, failed));
    EXPECT_EQ(write(true), std::vector(1, failed));
    EXPECT_EQ(write(fieldElement()), std::vector(1, failed));
    EXPECT_EQ(write(NullValue{}), std::vector<AXError>{});
}

TEST_F(AccessibilityFault, AQuestionAndAnActionFail) {
    EXPECT_EQ(sweep<SettableAnswer>([&] { return accessibility().isAttributeSettable(fieldElement(), "AXValue"); }),
              (std::vector<SettableAnswer>{{failed, false}}));
    EXPECT_EQ(sweep<AXError>([&] { return accessibility().performAction(fieldElement(), "AXPress"); }),
              std::vector<AXError>{failed});
}

TEST_F(AccessibilityFault, ABatchLosesTheAttributeWithoutANameAndNothingElse) {
    using Answers = std::vector<std::vector<AttributeAnswer>>;
    const std::vector<Element> elements{fieldElement()};
    const std::vector<std::string_view> names{"AXRole", "AXSelectedTextRange"};
    const AttributeAnswer role{AXError::success, Text(u"AXTextArea")};
    const AttributeAnswer range{AXError::success, TextRange{10, 9}};
    const AttributeAnswer lost{failed, NullValue{}};
    // The calls that can fail create the two names, the array of the names, and the platform's array of the values.
    EXPECT_EQ(sweep<Answers>([&] { return accessibility().copyAttributes(elements, names); }),
              (std::vector<Answers>{{{lost, range}}, {{role, lost}}, {{role, range}}, {{role, range}}}));
}

TEST_F(AccessibilityFault, TheTrustIsToldWithoutAskingTheUser) {
    desktop().isTrusted = false;
    EXPECT_EQ(sweep<bool>([&] { return accessibility().isProcessTrusted(TrustPrompt::ask); }), std::vector{false});
    EXPECT_EQ(desktop().promptCount, 1) << "only the last run, in which no call fails, shows the prompt";
    desktop().isTrusted = true;
    EXPECT_EQ(sweep<bool>([&] { return accessibility().isProcessTrusted(TrustPrompt::ask); }), std::vector{true});
}

TEST_F(AccessibilityFault, AnElementThatCannotBeMadeAnswersAsNone) {
    const auto read = [&](const Element& element) { return accessibility().copyAttribute(element, "AXRole").error; };
    // The second call that can fail creates the name of the attribute.
    EXPECT_EQ(sweep<AXError>([&] { return read(accessibility().applicationElement(42)); }),
              (std::vector<AXError>{AXError::illegalArgument, failed}));
    EXPECT_EQ(sweep<AXError>([&] { return read(accessibility().systemWideElement()); }),
              (std::vector<AXError>{AXError::illegalArgument, failed}));
}

TEST_F(AccessibilityFault, AWordIsNotFoundInATextThatCannotBeMade) {
    // The calls that can fail create both texts and the locale. Without a locale, case is ignored by the common rules.
    EXPECT_EQ(sweep<bool>([&] { return accessibility().containsIgnoringCase(u"Editor", u"editor"); }),
              (std::vector<bool>{false, false, true}));
}

TEST_F(AccessibilityFault, AnExceptionOfThePlatformStopsAtTheService) {
    const Element element = fieldElement();
    const std::vector<Element> elements{element, element};
    const std::vector<std::string_view> names{"AXRole", "AXSelectedTextRange"};
    const AttributeAnswer lost{failed, NullValue{}};
    const SettableAnswer unknown{failed, false};
    desktop().throws = true;
    EXPECT_FALSE(accessibility().isProcessTrusted(TrustPrompt::none));
    EXPECT_FALSE(accessibility().isProcessTrusted(TrustPrompt::ask));
    EXPECT_EQ(accessibility().copyAttribute(accessibility().applicationElement(42), "AXRole").error,
              AXError::illegalArgument);
    EXPECT_EQ(accessibility().copyAttribute(accessibility().systemWideElement(), "AXRole").error,
              AXError::illegalArgument);
    EXPECT_EQ(accessibility().copyAttribute(element, "AXRole"), lost);
    const ElementAnswer asElement = accessibility().copyElementAttribute(element, "AXRole");
    EXPECT_EQ(asElement.error, failed);
    EXPECT_FALSE(asElement.element.has_value());
    EXPECT_EQ(accessibility().copyAttributes(elements, names), std::vector(2, std::vector(2, lost)));
    EXPECT_EQ(accessibility().setAttribute(element, "AXValue", true), failed);
    EXPECT_EQ(accessibility().isAttributeSettable(element, "AXValue"), unknown);
    EXPECT_EQ(accessibility().areAttributesSettable(elements, "AXValue"), std::vector(2, unknown));
    EXPECT_EQ(accessibility().performAction(element, "AXPress"), failed);
    EXPECT_EQ(accessibility().processIdentifier(element), std::nullopt);
}

TEST_F(AccessibilityFault, ALongWalkPilesNothingUpInOnePool) {
    const std::vector<Element> elements(256, fieldElement());
    const std::vector<std::string_view> names{"AXRole", "AXSelectedTextRange"};
    static_cast<void>(accessibility().copyAttributes(elements, names));
    static_cast<void>(accessibility().areAttributesSettable(elements, "AXValue"));
    EXPECT_EQ(desktop().crossings.size(), 512U);
    EXPECT_EQ(fake_shield::mostInOnePool(), 1U);
}

}  // namespace
}  // namespace lomaris::test
