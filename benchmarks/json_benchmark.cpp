#include "accessibility/model/guarded_replacement_request_json.h"
#include "accessibility/model/selection_json.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace lomaris {
namespace {

constexpr std::size_t textLength = 10UL * 1024 * 1024;

/// Lines of prose with quotation marks.
constexpr TextView prose = u"The quick brown fox said \"jump\" and went over the lazy dog without looking back.\n";

/// What takes one, two, three and four bytes a character, with line breaks and quotation marks.
constexpr TextView mixed =
    u"Zwölf Boxkämpfer jagen \"Viktor\" über den Sylter Deich. Съешь ещё этих мягких французских булок. "
    u"いろはにほへと ちりぬるを \U0001F98A\U0001F436\n";

/// A text of 10 Mi units out of many times the same line.
Text repeated(TextView line) {
    Text text;
    while (text.size() < textLength) {
        text += line;
    }
    return text;
}

SelectionPayload selectionOf(TextView line) {
    SelectionPayload payload;
    payload.selectedText = repeated(line);
    payload.selectionMethod = selection_method::accessibility;
    return payload;
}

GuardedReplacementRequest requestOf(TextView line) {
    GuardedReplacementRequest request;
    request.expectedText = repeated(line);
    request.expectedBundleIdentifier = u"com.example.notes";
    request.expectedSelectedRange = SelectionRangePayload{10, 9};
    request.replacementText = u"red fox";
    return request;
}

/// Counts the bytes of JSON, written or read.
void countBytes(benchmark::State& state, std::size_t bytesEachTime) {
    state.SetBytesProcessed(static_cast<std::int64_t>(bytesEachTime) * static_cast<std::int64_t>(state.iterations()));
}

void encodeSelection(benchmark::State& state, TextView line) {
    const SelectionPayload payload = selectionOf(line);
    std::size_t bytes = 0;
    for (auto _ : state) {
        bytes = encodeJson(payload, SlashEscaping::unescaped).size();
    }
    countBytes(state, bytes);
}
BENCHMARK_CAPTURE(encodeSelection, prose10Mi, prose)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(encodeSelection, mixed10Mi, mixed)->Unit(benchmark::kMillisecond);

void decodeSelection(benchmark::State& state, TextView line) {
    const auto json = encodeJson(selectionOf(line), SlashEscaping::unescaped);
    for (auto _ : state) {
        if (!decodeSelectionPayload(json)) {
            state.SkipWithError("not decoded");
        }
    }
    countBytes(state, json.size());
}
BENCHMARK_CAPTURE(decodeSelection, prose10Mi, prose)->Unit(benchmark::kMillisecond);

void decodeRequest(benchmark::State& state, TextView line) {
    const auto json = encodeJson(requestOf(line), SlashEscaping::unescaped);
    for (auto _ : state) {
        if (!decodeGuardedReplacementRequest(json)) {
            state.SkipWithError("not decoded");
        }
    }
    countBytes(state, json.size());
}
BENCHMARK_CAPTURE(decodeRequest, prose10Mi, prose)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(decodeRequest, mixed10Mi, mixed)->Unit(benchmark::kMillisecond);

/// What costs nothing but the search for a first byte that is no white space.
void refuseSpaces(benchmark::State& state) {
    const std::string spaces(textLength, ' ');
    for (auto _ : state) {
        if (decodeGuardedReplacementRequest(spaces)) {
            state.SkipWithError("not refused");
        }
    }
    countBytes(state, spaces.size());
}
BENCHMARK(refuseSpaces)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lomaris
