#include "text/characters.h"

#include "text/character_breaker.h"
#include "text/code_points.h"

#include <cstddef>
#include <cstdint>

namespace lomaris {

namespace {

constexpr std::size_t blockUnits = 32;

/// A run of ASCII units that follows an ASCII unit, and the number of characters that begin in it.
struct AsciiRun {
    std::size_t units = 0;
    std::size_t characters = 0;
};

/// Adds whole blocks of ASCII to `run`. The loops have constant bounds and no early exit so that the compiler can
/// vectorize them.
void addBlocks(AsciiRun& run, TextView text, std::size_t first) {
    while (text.size() - first - run.units >= blockUnits) {
        // A line feed that begins the block belongs to the preceding character if that is a carriage return.
        const char16_t* const block = text.data() + first + run.units;
        const char16_t* const previous = block - 1;
        std::uint16_t allBits = 0;
        std::uint16_t lineEndPairs = 0;
        for (std::size_t i = 0; i < blockUnits; ++i) {
            allBits = static_cast<std::uint16_t>(allBits | block[i]);
            lineEndPairs = static_cast<std::uint16_t>(lineEndPairs + ((previous[i] == u'\r') & (block[i] == u'\n')));
        }
        if (allBits >= 0x80) {
            return;
        }
        run.units += blockUnits;
        run.characters += blockUnits - lineEndPairs;
    }
}

/// Returns the run of ASCII that begins at `first`. The unit before `first` must be ASCII too.
AsciiRun asciiRunAfterAscii(TextView text, std::size_t first) {
    AsciiRun run;
    addBlocks(run, text, first);
    for (std::size_t i = first + run.units; i < text.size() && text[i] < 0x80; ++i) {
        ++run.units;
        run.characters += text[i - 1] == u'\r' && text[i] == u'\n' ? 0U : 1U;
    }
    return run;
}

}  // namespace

std::int64_t characterCount(TextView text) {
    CharacterBreaker breaker;
    std::size_t count = 0;
    std::size_t position = 0;
    while (position < text.size()) {
        const CodePoint codePoint = codePointAt(text, position);
        count += breaker.beginsCharacter(codePoint.value) ? 1U : 0U;
        position += codePoint.units;
        if (codePoint.value >= 0x80) {
            continue;
        }
        const AsciiRun run = asciiRunAfterAscii(text, position);
        if (run.units > 0) {
            count += run.characters;
            position += run.units;
            breaker.continueAfterAscii(text[position - 1]);
        }
    }
    return static_cast<std::int64_t>(count);
}

}  // namespace lomaris
