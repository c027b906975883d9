#include "accessibility/adapter/selection_data.h"

#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/thrown_error.h"

#include <gtest/gtest.h>

#include <optional>

namespace lomaris {
namespace {

class ReadSelectionData : public testing::Test {
protected:
    SimulatedDesktop desktop;
    SimulatedElement field = desktop.addApplication(812, std::nullopt, std::nullopt).addElement();

    SelectionData read() { return readSelectionData(desktop.accessibility(), field.element()); }
    std::optional<BridgeError> error() {
        return test::thrownBy([this] { return read(); });
    }
};

TEST_F(ReadSelectionData, ReturnsTheSelectedTextUnchanged) {
    field.answers(attribute::selectedText, Text(u"brown"));
    field.answers(attribute::selectedTextRange, TextRange{10, 5});
    field.answers(attribute::value, Text(u"The quick brown fox"));
    const auto data = read();
    EXPECT_EQ(data.text, u"brown");
    EXPECT_EQ(data.range, (TextRange{10, 5}));
    EXPECT_EQ(data.fullText, u"The quick brown fox");
}

TEST_F(ReadSelectionData, ReturnsTheTextWithoutRangeAndValue) {
    field.answers(attribute::selectedText, Text(u"brown"));
    const auto data = read();
    EXPECT_EQ(data.text, u"brown");
    EXPECT_EQ(data.range, std::nullopt);
    EXPECT_EQ(data.fullText, std::nullopt);
}

TEST_F(ReadSelectionData, ReturnsTheTextEvenIfTheRangeContradictsIt) {
    field.answers(attribute::selectedText, Text(u"brown"));
    field.answers(attribute::selectedTextRange, TextRange{900, 4});
    field.answers(attribute::value, Text(u"0123456789"));
    EXPECT_EQ(read().text, u"brown");
}

TEST_F(ReadSelectionData, UsesRangeAndValueIfTheTextIsUnreadable) {
    field.answers(attribute::selectedText, AXError::attributeUnsupported);
    field.answers(attribute::selectedTextRange, TextRange{3, 4});
    field.answers(attribute::value, Text(u"0123456789"));
    const auto data = read();
    EXPECT_EQ(data.text, u"3456");
    EXPECT_EQ(data.range, (TextRange{3, 4}));
    EXPECT_EQ(data.fullText, u"0123456789");
}

TEST_F(ReadSelectionData, FailsIfTheRangeRunsPastTheEnd) {
    field.answers(attribute::selectedText, AXError::attributeUnsupported);
    field.answers(attribute::selectedTextRange, TextRange{8, 4});
    field.answers(attribute::value, Text(u"0123456789"));
    EXPECT_EQ(error(), BridgeError::selectedTextUnavailable(AXError::attributeUnsupported));
}

TEST_F(ReadSelectionData, FailsIfTheRangeIsEmptyOrTheValueIsMissing) {
    field.answers(attribute::selectedText, AXError::cannotComplete);
    field.answers(attribute::selectedTextRange, TextRange{3, 0});
    field.answers(attribute::value, Text(u"0123456789"));
    EXPECT_EQ(error(), BridgeError::selectedTextUnavailable(AXError::cannotComplete));

    field.answers(attribute::selectedTextRange, TextRange{3, 4});
    field.answers(attribute::value, std::int64_t{5});
    EXPECT_EQ(error(), BridgeError::selectedTextUnavailable(AXError::cannotComplete));
}

TEST_F(ReadSelectionData, FailsWithCodeZeroIfTheTextIsNullOrOfAnotherType) {
    for (const AttributeValue& value : {AttributeValue(NullValue{}), AttributeValue(std::int64_t{5})}) {
        field.answers(attribute::selectedText, value);
        EXPECT_EQ(error(), BridgeError::selectedTextUnavailable(AXError::success));
    }
}

TEST_F(ReadSelectionData, UsesRangeAndValueIfTheTextIsNull) {
    field.answers(attribute::selectedText, NullValue{});
    field.answers(attribute::selectedTextRange, TextRange{3, 4});
    field.answers(attribute::value, Text(u"0123456789"));
    EXPECT_EQ(read().text, u"3456");
}

TEST_F(ReadSelectionData, UsesRangeAndValueIfTheTextIsEmpty) {
    field.answers(attribute::selectedText, Text());
    field.answers(attribute::selectedTextRange, TextRange{3, 4});
    field.answers(attribute::value, Text(u"0123456789"));
    EXPECT_EQ(read().text, u"3456");
}

TEST_F(ReadSelectionData, ReturnsAnEmptyTextIfTheRangeIsUnusable) {
    field.answers(attribute::selectedText, Text());
    EXPECT_EQ(read().text, u"");

    field.answers(attribute::selectedTextRange, TextRange{8, 4});
    field.answers(attribute::value, Text(u"0123456789"));
    const auto data = read();
    EXPECT_EQ(data.text, u"");
    EXPECT_EQ(data.range, (TextRange{8, 4}));
    EXPECT_EQ(data.fullText, u"0123456789");
}

TEST_F(ReadSelectionData, IgnoresARangeWhoseEndOverflows) {
    field.answers(attribute::selectedText, Text());
    field.answers(attribute::selectedTextRange, TextRange{1, notFoundLocation});
    field.answers(attribute::value, Text(u"0123456789"));
    EXPECT_EQ(read().text, u"");
    field.answers(attribute::selectedTextRange, TextRange{notFoundLocation, 1});
    EXPECT_EQ(read().text, u"");
}

}  // namespace
}  // namespace lomaris
