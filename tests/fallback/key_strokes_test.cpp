#include "accessibility/fallback/key_strokes.h"

#include "platform/simulated/simulated_desktop.h"
#include "tests/support/journal.h"
#include "tests/support/thrown_error.h"
#include "tests/support/vectors.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace lomaris {
namespace {

class PostKey : public testing::Test {
protected:
    PostKey() {
        desktop.addApplication(812, u"com.example.notes", u"Notes");
        desktop.addApplication(900, u"com.example.other", u"Other");
        desktop.bringToFront(812);
    }

    std::optional<BridgeError> error(std::optional<ProcessIdentifier> target) {
        return test::thrownBy([&] {
            postKey(desktop, key_stroke::copy, target);
            return 0;
        });
    }

    SimulatedDesktop desktop;
};

TEST_F(PostKey, PostsToTheSessionIfTheTargetIsFrontmostOrAbsent) {
    postKey(desktop, key_stroke::copy, 812);
    postKey(desktop, key_stroke::paste, std::nullopt);
    const std::vector<PostedKeyStroke> expected = {
        {.keyStroke = {.keyCode = 8, .flags = 0x100000}, .processIdentifier = std::nullopt, .moment = Moment(0)},
        {.keyStroke = {.keyCode = 9, .flags = 0x100000}, .processIdentifier = std::nullopt, .moment = Moment(0)},
    };
    EXPECT_EQ(desktop.postedKeyStrokes(), expected);
}

TEST_F(PostKey, PostsToTheProcessIfTheTargetIsNotFrontmost) {
    postKey(desktop, key_stroke::collapseSelection, 900);
    desktop.leaveNothingInFront();
    postKey(desktop, key_stroke::copy, 812);
    const std::vector<PostedKeyStroke> expected = {
        {.keyStroke = {.keyCode = 51, .flags = 0}, .processIdentifier = 900, .moment = Moment(0)},
        {.keyStroke = {.keyCode = 8, .flags = 0x100000}, .processIdentifier = 812, .moment = Moment(0)},
    };
    EXPECT_EQ(desktop.postedKeyStrokes(), expected);
}

TEST_F(PostKey, RequestsMissingPermissionAndPostsIfGranted) {
    desktop.setPostEventAccess(false);
    desktop.setPostEventRequestAnswer(true);
    EXPECT_EQ(error(812), std::nullopt);
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 1U);
}

TEST_F(PostKey, CreatesNothingWithoutPermission) {
    desktop.setPostEventAccess(false);
    EXPECT_EQ(error(812), BridgeError::keyboardEventPermissionRequired());
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
    EXPECT_EQ(test::callsWith(desktop, "createKeyStroke"), 0U);
}

TEST_F(PostKey, DoesNotRequestAGrantedPermission) {
    postKey(desktop, key_stroke::copy, 812);
    EXPECT_EQ(test::callsWith(desktop, "requestPostEventAccess"), 0U);
}

TEST_F(PostKey, PostsNothingIfTheEventsCannotBeCreated) {
    desktop.failKeyStrokes();
    EXPECT_EQ(error(812), BridgeError::clipboardFallbackFailed(u"could not create keyboard events"));
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
}

TEST(SelectionCollapse, MatchesEveryReferenceCase) {
    for (const auto& vector : test::readVectors("web-address-start")) {
        EXPECT_EQ(requiresSelectionCollapse(test::textOf(vector.value.at("text"))),
                  vector.value.at("expected").at("collapse").get<bool>())
            << "line " << vector.line;
    }
}

TEST(SelectionCollapse, SkipsEveryKindOfWhiteSpaceAndNothingElse) {
    const Text whiteSpace =
        u"\t\n\v\f\r \u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009"
        u"\u200A\u2028\u2029\u202F\u205F\u3000";
    EXPECT_TRUE(requiresSelectionCollapse(whiteSpace + u"www.example.org"));
    for (char16_t unit = 1; unit < 0xD800; ++unit) {
        EXPECT_EQ(requiresSelectionCollapse(Text(1, unit) + u"www.example.org"), whiteSpace.find(unit) != Text::npos)
            << static_cast<unsigned>(unit);
    }
}

TEST(SelectionCollapse, SkipsWhiteSpaceWithItsMarks) {
    const std::vector<Text> skipped = {
        u" \u0301",
        u"\u00A0\u200D",
        u"\u3000\uFE0F",
        u" \u0301\u0302\u200D\uFE0F",
        u" \u0301 \u0302\u00A0\u2003\u0301\n",
        u"\r\n \u0903",
        u" \U000E0100",
        Text(1 << 20U, u' ') + u"\u0301",
    };
    for (const Text& start : skipped) {
        EXPECT_TRUE(requiresSelectionCollapse(start + u"www.x")) << utf8FromText(start.substr(0, 20));
    }
    const std::vector<Text> kept = {
        // A mark does not join a line break.
        u"\n\u0301",
        u"\r\n\u200D",
        u"\u2028\uFE0F",
        // A mark at the start is not white space.
        u"\u0301 ",
        u" \u0301a",
        u" \u200B",
        u"\u0600 ",
    };
    for (const Text& start : kept) {
        EXPECT_FALSE(requiresSelectionCollapse(start + u"www.x")) << utf8FromText(start);
    }
    EXPECT_FALSE(requiresSelectionCollapse(u" \u0301"));
    EXPECT_FALSE(requiresSelectionCollapse(Text(1 << 20U, u' ')));
}

TEST(SelectionCollapse, MatchesOnlyAtTheStart) {
    const std::vector<std::pair<Text, bool>> examples = {
        {u"www.example.org", true},
        {u"wwwexample", false},
        {u"\n\thttp://example.org", true},
        {u"", false},
        {u" \n\t", false},
        {u"  HTTPS://EXAMPLE.ORG", true},
        {u"see http://example.org", false},
        {u"http:/", false},
        {u"https://", true},
        {u"https://\u0338", false},
        {u"ftp://www.example.org", false},
        {u"\u00a0\u2028\u2029\u0085www.", true},
    };
    for (const auto& [text, expected] : examples) {
        EXPECT_EQ(requiresSelectionCollapse(text), expected) << std::string(text.begin(), text.end());
    }
}

}  // namespace
}  // namespace lomaris
