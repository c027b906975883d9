#include "json/json_writer.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace lomaris {
namespace {

std::string written(TextView text, SlashEscaping slashes = SlashEscaping::unescaped) {
    JsonWriter writer(slashes);
    writer.string(text);
    return writer.take();
}

TEST(JsonWriter, WritesTheFiveShortEscapes) { EXPECT_EQ(written(u"\b\f\n\r\t"), R"("\b\f\n\r\t")"); }

TEST(JsonWriter, WritesOtherControlCharactersInLowerCaseHex) {
    EXPECT_EQ(written(Text({0, 1, 7, 0xB, 0xE, 0x1F})), R"("\u0000\u0001\u0007\u000b\u000e\u001f")");
}

TEST(JsonWriter, WritesDeleteAndNonAsciiUnescaped) {
    EXPECT_EQ(written(u"\u007f\u0080\u00e9\u2028\ufeff\U0001f600"), "\"\x7f\u0080\u00e9\u2028\ufeff\U0001f600\"");
}

TEST(JsonWriter, EscapesQuotationMarkAndBackslash) { EXPECT_EQ(written(u"a\"b\\c"), R"("a\"b\\c")"); }

TEST(JsonWriter, EscapesSlashesOnlyIfRequested) {
    EXPECT_EQ(written(u"/a/b/", SlashEscaping::unescaped), R"("/a/b/")");
    EXPECT_EQ(written(u"/a/b/", SlashEscaping::escaped), R"("\/a\/b\/")");
}

TEST(JsonWriter, WritesHalfASurrogatePairAsReplacementCharacter) {
    EXPECT_EQ(written(Text({u'a', 0xD83D, u'b', 0xDE00})), "\"a\ufffdb\ufffd\"");
}

TEST(JsonWriter, FindsAnEscapeAnywhereInALongText) {
    for (std::size_t position = 0; position < 70; ++position) {
        Text text(70, u'x');
        text[position] = u'"';
        std::string expected(70, 'x');
        expected.replace(position, 1, "\\\"");
        EXPECT_EQ(written(text), '"' + expected + '"') << position;
    }
}

TEST(JsonWriter, KeepsSurrogatePairsOfALongTextTogether) {
    Text text;
    std::string expected;
    for (int pair = 0; pair < 2000; ++pair) {
        text += u"\U0001f600";
        expected += "\U0001f600";
    }
    EXPECT_EQ(written(text), '"' + expected + '"');
    EXPECT_EQ(written(u"x" + text), "\"x" + expected + '"');
}

TEST(JsonWriter, IndentsObjectsAndArraysByTwoSpaces) {
    JsonWriter writer(SlashEscaping::escaped);
    writer.beginObject();
    writer.key("list");
    writer.beginArray();
    writer.integer(1);
    writer.beginObject();
    writer.key("deep");
    writer.boolean(true);
    writer.endObject();
    writer.endArray();
    writer.key("text");
    writer.string(u"x");
    writer.endObject();
    EXPECT_EQ(writer.take(),
              "{\n"
              "  \"list\" : [\n"
              "    1,\n"
              "    {\n"
              "      \"deep\" : true\n"
              "    }\n"
              "  ],\n"
              "  \"text\" : \"x\"\n"
              "}");
}

TEST(JsonWriter, WritesAnEmptyArrayWithAnEmptyLine) {
    JsonWriter writer(SlashEscaping::escaped);
    writer.beginObject();
    writer.key("nodes");
    writer.beginArray();
    writer.endArray();
    writer.key("truncated");
    writer.boolean(false);
    writer.endObject();
    EXPECT_EQ(writer.take(),
              "{\n"
              "  \"nodes\" : [\n"
              "\n"
              "  ],\n"
              "  \"truncated\" : false\n"
              "}");
}

TEST(JsonWriter, WritesIntegersUpToTheLimits) {
    JsonWriter writer(SlashEscaping::escaped);
    writer.beginArray();
    writer.integer(std::numeric_limits<std::int64_t>::min());
    writer.integer(0);
    writer.integer(std::numeric_limits<std::int64_t>::max());
    writer.endArray();
    EXPECT_EQ(writer.take(), "[\n  -9223372036854775808,\n  0,\n  9223372036854775807\n]");
}

TEST(JsonWriter, IsEmptyAfterTake) {
    JsonWriter writer(SlashEscaping::escaped);
    writer.integer(1);
    EXPECT_EQ(writer.take(), "1");
    EXPECT_EQ(writer.take(), "");
    writer.integer(2);
    EXPECT_EQ(writer.take(), "2");
}

}  // namespace
}  // namespace lomaris
