#include "text/characters.h"
#include "text/equality.h"
#include "text/utf8.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace lomaris {

namespace {

constexpr std::size_t unitsOfText = std::size_t{1} << 20U;

/// `piece` again and again, up to `unitsOfText`.
Text repeated(TextView piece) {
    Text text;
    while (text.size() < unitsOfText) {
        text += piece;
    }
    return text;
}

Text asciiText() { return repeated(u"The quick brown fox jumps over the lazy dog, 0123456789 times.\r\n"); }

/// Words of many scripts in random order, so that no branch predictor learns the text by heart. The seed is fixed.
Text mixedText() {
    static constexpr std::array<TextView, 20> words{
        u"Schöne ",
        u"Grüße ",
        u"l'été, ",
        u"naïve ",
        u"façade.\r\n",
        u"plain ",
        u"日本語の",
        u"テキスト",
        u"と漢字、",
        u"한국어 ",
        u"\U0001F468\u200D\U0001F469\u200D\U0001F467 ",
        u"\U0001F44D\U0001F3FD",
        u"\u2764\uFE0F ",
        u"क्षत्रिय ",
        u"हिन्दी में ",
        u"लिखा हुआ। ",
        u"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7",
        u"e\u0301",
        u"a\u0308 ",
        u"über ",
    };
    std::mt19937 generator(1);
    Text text;
    while (text.size() < unitsOfText) {
        text += words.at(generator() % words.size());
    }
    return text;
}

Text cjkText() { return repeated(u"日本語のテキストと漢字仮名交じり文、"); }

/// One text in its precomposed and in its decomposed spelling.
constexpr int equalRepetitions = 20'000;

Text composedText() {
    Text text;
    for (int i = 0; i < equalRepetitions; ++i) {
        text += u"Un \u00E9t\u00E9 \u00E0 la plage, o\u00F9 l'on go\u00FBte \uAC01";
    }
    return text;
}

Text decomposedText() {
    Text text;
    for (int i = 0; i < equalRepetitions; ++i) {
        text += u"Un e\u0301te\u0301 a\u0300 la plage, ou\u0300 l'on gou\u0302te \u1100\u1161\u11A8";
    }
    return text;
}

/// A letter with 2 * `pairs` marks, all of one class behind all of the other, or by turns.
Text groupedMarks(std::size_t pairs) { return u"e" + Text(pairs, u'\u0323') + Text(pairs, u'\u0301'); }

Text alternatingMarks(std::size_t pairs) {
    Text text = u"e";
    for (std::size_t i = 0; i < pairs; ++i) {
        text += u"\u0301\u0323";
    }
    return text;
}

/// Sets the rates: items are UTF-16 units, bytes are those of the UTF-16 units.
void setUtf16Rates(benchmark::State& state, std::size_t units) {
    const auto processed = static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(units);
    state.SetItemsProcessed(processed);
    state.SetBytesProcessed(processed * static_cast<std::int64_t>(sizeof(char16_t)));
}

/// Sets the rate in bytes of UTF-8.
void setUtf8Rate(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(bytes));
}

void CharacterCount(benchmark::State& state, const Text& text) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(characterCount(text));
    }
    setUtf16Rates(state, text.size());
}

void Utf8FromText(benchmark::State& state, const Text& text) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(utf8FromText(text));
    }
    setUtf8Rate(state, utf8FromText(text).size());
}

void TextFromUtf8(benchmark::State& state, const Text& text) {
    const std::string bytes = utf8FromText(text);
    for (auto _ : state) {
        benchmark::DoNotOptimize(textFromUtf8(bytes));
    }
    setUtf8Rate(state, bytes.size());
}

void IsValidUtf8(benchmark::State& state, const Text& text) {
    const std::string bytes = utf8FromText(text);
    for (auto _ : state) {
        benchmark::DoNotOptimize(isValidUtf8(bytes));
    }
    setUtf8Rate(state, bytes.size());
}

void CanonicallyEqual(benchmark::State& state, const Text& a, const Text& b) {
    if (!canonicallyEqual(a, b)) {
        state.SkipWithError("the texts differ");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(canonicallyEqual(a, b));
    }
    setUtf16Rates(state, a.size());
}

BENCHMARK_CAPTURE(CharacterCount, ascii, asciiText());
BENCHMARK_CAPTURE(CharacterCount, mixed, mixedText());
BENCHMARK_CAPTURE(CharacterCount, cjk, cjkText());
BENCHMARK_CAPTURE(CharacterCount, marks, alternatingMarks(unitsOfText / 2));
BENCHMARK_CAPTURE(Utf8FromText, ascii, asciiText());
BENCHMARK_CAPTURE(Utf8FromText, mixed, mixedText());
BENCHMARK_CAPTURE(Utf8FromText, cjk, cjkText());
BENCHMARK_CAPTURE(TextFromUtf8, ascii, asciiText());
BENCHMARK_CAPTURE(TextFromUtf8, mixed, mixedText());
BENCHMARK_CAPTURE(TextFromUtf8, cjk, cjkText());
BENCHMARK_CAPTURE(IsValidUtf8, ascii, asciiText());
BENCHMARK_CAPTURE(IsValidUtf8, mixed, mixedText());
BENCHMARK_CAPTURE(CanonicallyEqual, identical, mixedText(), mixedText());
BENCHMARK_CAPTURE(CanonicallyEqual, composedAndDecomposed, composedText(), decomposedText());
BENCHMARK_CAPTURE(CanonicallyEqual, longRunOfMarks, alternatingMarks(unitsOfText / 2), groupedMarks(unitsOfText / 2));

}  // namespace
}  // namespace lomaris
