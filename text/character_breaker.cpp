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

/// The break class of a code point that the library treats as unassigned. The library gives all of these one class, but
/// the Unicode Standard reserves some of them for invisible controls and whole ranges for pictographs. With the
/// reserved classes, an emoji that is newer than the library still joins with other emoji into one character.
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

/// True if two adjacent Hangul jamo or syllables belong to the same syllable.
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

// Does not use the library's own stateful break function, because the rules it implements depend on its version.
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
    static_assert(UTF8PROC_BOUNDCLASS_START == 0, "lastClass_ of a new breaker means the start of the text");
    if (lastClass_ == UTF8PROC_BOUNDCLASS_START) {
        return true;
    }
    // The common case. The conjunct rule cannot apply: the last code point of a linked conjunct is a mark or a joiner.
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
        // A mark with combining class 0, such as ZERO WIDTH NON-JOINER, keeps the consonants apart.
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
