#include "text/character_breaker.h"

#include "text/code_points.h"
#include "text/indic_conjuncts.h"

#include <utf8proc.h>

namespace lomaris {

namespace {

int asciiClass(char32_t codePoint) {
    if (codePoint == U'\r') {
        return UTF8PROC_BOUNDCLASS_CR;
    }
    if (codePoint == U'\n') {
        return UTF8PROC_BOUNDCLASS_LF;
    }
    return codePoint < 0x20 || codePoint == 0x7F ? UTF8PROC_BOUNDCLASS_CONTROL : UTF8PROC_BOUNDCLASS_OTHER;
}

bool isControl(int breakClass) {
    return breakClass == UTF8PROC_BOUNDCLASS_CONTROL || breakClass == UTF8PROC_BOUNDCLASS_CR ||
           breakClass == UTF8PROC_BOUNDCLASS_LF;
}

/// The class of a code point that the library takes for unassigned. It gives all of them the same class, whereas the
/// standard reserves some for invisible controls and whole ranges for pictographs: with these an emoji that is younger
/// than the library joins as its family does.
int unassignedClass(char32_t codePoint) {
    const bool isPictograph =
        (codePoint >= 0x1F000 && codePoint <= 0x1FAFF) || (codePoint >= 0x1FC00 && codePoint <= 0x1FFFD);
    if (isPictograph) {
        return UTF8PROC_BOUNDCLASS_EXTENDED_PICTOGRAPHIC;
    }
    const bool isIgnorable = codePoint == 0x2065 || (codePoint >= 0xFFF0 && codePoint <= 0xFFF8) ||
                             (codePoint >= 0xE0000 && codePoint <= 0xE0FFF);
    return isIgnorable ? UTF8PROC_BOUNDCLASS_CONTROL : UTF8PROC_BOUNDCLASS_OTHER;
}

/// Whether the two parts of Hangul belong to one syllable.
bool joinsSyllable(int last, int next) {
    switch (last) {
        case UTF8PROC_BOUNDCLASS_L:
            return next == UTF8PROC_BOUNDCLASS_L || next == UTF8PROC_BOUNDCLASS_V || next == UTF8PROC_BOUNDCLASS_LV ||
                   next == UTF8PROC_BOUNDCLASS_LVT;
        case UTF8PROC_BOUNDCLASS_LV:
        case UTF8PROC_BOUNDCLASS_V:
            return next == UTF8PROC_BOUNDCLASS_V || next == UTF8PROC_BOUNDCLASS_T;
        case UTF8PROC_BOUNDCLASS_LVT:
        case UTF8PROC_BOUNDCLASS_T:
            return next == UTF8PROC_BOUNDCLASS_T;
        default:
            return false;
    }
}

}  // namespace

// The library's own stateful break function is not used: which rules it knows depends on its version.
bool CharacterBreaker::beginsCharacter(char32_t codePoint) {
    int breakClass = UTF8PROC_BOUNDCLASS_OTHER;
    int combiningClass = 0;
    if (codePoint < 0x80) {
        breakClass = asciiClass(codePoint);
    } else {
        const utf8proc_property_t& property = *utf8proc_get_property(static_cast<utf8proc_int32_t>(codePoint));
        const bool isAssigned = property.category != UTF8PROC_CATEGORY_CN;
        breakClass = isAssigned ? static_cast<int>(property.boundclass) : unassignedClass(codePoint);
        combiningClass = property.combining_class;
    }
    const bool answer = breaksBefore(breakClass, codePoint);
    remember(breakClass, combiningClass, codePoint);
    return answer;
}

void CharacterBreaker::continueAfterAscii(char16_t unit) {
    *this = CharacterBreaker();
    lastClass_ = asciiClass(unit);
}

bool CharacterBreaker::breaksBefore(int breakClass, char32_t codePoint) const {
    static_assert(UTF8PROC_BOUNDCLASS_START == 0, "a fresh breaker stands at the beginning of the text");
    if (lastClass_ == UTF8PROC_BOUNDCLASS_START) {
        return true;
    }
    // The common case. A linked conjunct cannot be cut here: a mark or a joiner came last in one.
    if (lastClass_ == UTF8PROC_BOUNDCLASS_OTHER && breakClass == UTF8PROC_BOUNDCLASS_OTHER) {
        return true;
    }
    if (isControl(lastClass_) || isControl(breakClass)) {
        return !(lastClass_ == UTF8PROC_BOUNDCLASS_CR && breakClass == UTF8PROC_BOUNDCLASS_LF);
    }
    switch (breakClass) {
        case UTF8PROC_BOUNDCLASS_EXTEND:
        case UTF8PROC_BOUNDCLASS_ZWJ:
        case UTF8PROC_BOUNDCLASS_SPACINGMARK:
            return false;
        default:
            break;
    }
    if (lastClass_ == UTF8PROC_BOUNDCLASS_PREPEND || joinsSyllable(lastClass_, breakClass)) {
        return false;
    }
    if (conjunct_ == Conjunct::linked && indic::isConsonant(codePoint)) {
        return false;
    }
    if (pictograph_ == Pictograph::joined && breakClass == UTF8PROC_BOUNDCLASS_EXTENDED_PICTOGRAPHIC) {
        return false;
    }
    return !(flagIsHalf_ && breakClass == UTF8PROC_BOUNDCLASS_REGIONAL_INDICATOR);
}

void CharacterBreaker::remember(int breakClass, int combiningClass, char32_t codePoint) {
    const bool isExtend = breakClass == UTF8PROC_BOUNDCLASS_EXTEND;
    const bool isJoiner = breakClass == UTF8PROC_BOUNDCLASS_ZWJ;

    lastClass_ = breakClass;
    flagIsHalf_ = breakClass == UTF8PROC_BOUNDCLASS_REGIONAL_INDICATOR && !flagIsHalf_;

    if (breakClass == UTF8PROC_BOUNDCLASS_EXTENDED_PICTOGRAPHIC) {
        pictograph_ = Pictograph::seen;
    } else if (pictograph_ == Pictograph::seen && isJoiner) {
        pictograph_ = Pictograph::joined;
    } else if (!(pictograph_ == Pictograph::seen && isExtend)) {
        pictograph_ = Pictograph::none;
    }

    if (indic::isConsonant(codePoint)) {
        conjunct_ = Conjunct::consonant;
    } else if (conjunct_ != Conjunct::none) {
        // A mark without a combining class, such as a zero-width non-joiner, is there to keep the consonants apart.
        const bool continues = isJoiner || (isExtend && combiningClass != 0);
        if (indic::isLinker(codePoint)) {
            conjunct_ = Conjunct::linked;
        } else if (!continues) {
            conjunct_ = Conjunct::none;
        }
    }
}

std::size_t characterEnd(TextView text, std::size_t position) {
    CharacterBreaker breaker;
    for (std::size_t end = position; end < text.size();) {
        const CodePoint codePoint = codePointAt(text, end);
        if (breaker.beginsCharacter(codePoint.value) && end != position) {
            return end;
        }
        end += codePoint.units;
    }
    return text.size();
}

}  // namespace lomaris
