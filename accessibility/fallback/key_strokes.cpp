#include "accessibility/fallback/key_strokes.h"

#include "text/character_breaker.h"
#include "text/equality.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace lomaris {

namespace {

bool mayPostEvents(EventServices& events) {
    return events.preflightPostEventAccess() || events.requestPostEventAccess();
}

bool isInFront(Workspace& workspace, ProcessIdentifier processIdentifier) {
    const auto front = workspace.frontmostApplication();
    return front && front->processIdentifier == processIdentifier;
}

/// The white-space characters of Unicode, all of which are in the Basic Multilingual Plane.
bool isWhiteSpace(char16_t unit) {
    return (unit >= 0x9 && unit <= 0xD) || unit == 0x20 || unit == 0x85 || unit == 0xA0 || unit == 0x1680 ||
           (unit >= 0x2000 && unit <= 0x200A) || unit == 0x2028 || unit == 0x2029 || unit == 0x202F || unit == 0x205F ||
           unit == 0x3000;
}

/// Returns the end of the leading white space, in UTF-16 units. Combining marks after white space belong to it.
std::size_t endOfLeadingWhiteSpace(TextView text) {
    std::size_t end = 0;
    while (end < text.size() && isWhiteSpace(text[end])) {
        const TextView rest = text.substr(end);
        const auto run = std::find_if_not(rest.begin(), rest.end(), isWhiteSpace) - rest.begin();
        // Skips whole runs, because a text may be megabytes of white space. Only the last unit of a run can have marks.
        end = characterEnd(text, end + static_cast<std::size_t>(run) - 1);
    }
    return end;
}

/// ASCII only: no other letter has an ASCII letter of the prefixes as its lower case.
char16_t lowercased(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

constexpr std::array<TextView, 3> webAddressPrefixes = {u"http://", u"https://", u"www."};

/// Enough for the longest prefix and for a mark on its last character, which then does not match.
constexpr std::size_t unitsLookedAt = 16;

}  // namespace

void postKey(Platform& platform, KeyStroke keyStroke, std::optional<ProcessIdentifier> targetProcessIdentifier) {
    if (const auto error = tryPostKey(platform, keyStroke, targetProcessIdentifier)) {
        throw BridgeError(*error);
    }
}

std::optional<BridgeError> tryPostKey(Platform& platform, KeyStroke keyStroke,
                                      std::optional<ProcessIdentifier> targetProcessIdentifier) {
    EventServices& events = platform.events();
    if (!mayPostEvents(events)) {
        return BridgeError::keyboardEventPermissionRequired();
    }
    const auto keyEvents = events.createKeyStroke(keyStroke);
    if (!keyEvents) {
        return BridgeError::clipboardFallbackFailed(u"could not create keyboard events");
    }
    if (targetProcessIdentifier && !isInFront(platform.workspace(), *targetProcessIdentifier)) {
        events.postToProcess(*keyEvents, *targetProcessIdentifier);
    } else {
        events.postToSession(*keyEvents);
    }
    return std::nullopt;
}

bool requiresSelectionCollapse(TextView text) {
    Text beginning(text.substr(endOfLeadingWhiteSpace(text), unitsLookedAt));
    std::transform(beginning.begin(), beginning.end(), beginning.begin(), lowercased);
    return std::any_of(webAddressPrefixes.begin(), webAddressPrefixes.end(),
                       [&](TextView prefix) { return hasCharacterPrefix(beginning, prefix); });
}

}  // namespace lomaris
