#include "accessibility/model/json_value.h"
#include "accessibility/model/selection_json.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>

namespace lomaris {
namespace {

constexpr std::size_t textLength = 10UL * 1024 * 1024;

/// Lines of prose with quotation marks, as a selection of 10 MiB has them.
SelectionPayload largeSelection() {
    SelectionPayload payload;
    const TextView line = u"The quick brown fox said \"jump\" and went over the lazy dog without looking back.\n";
    while (payload.selectedText.size() < textLength) {
        payload.selectedText += line;
    }
    payload.selectionMethod = selection_method::accessibility;
    return payload;
}

void encodeSelectionOf10MiB(benchmark::State& state) {
    const SelectionPayload payload = largeSelection();
    std::int64_t bytes = 0;
    for (auto _ : state) {
        bytes += static_cast<std::int64_t>(encodeJson(payload, SlashEscaping::unescaped).size());
    }
    state.SetBytesProcessed(bytes);
}
BENCHMARK(encodeSelectionOf10MiB)->Unit(benchmark::kMillisecond);

void decodeSelectionOf10MiB(benchmark::State& state) {
    const auto json = encodeJson(largeSelection(), SlashEscaping::unescaped);
    for (auto _ : state) {
        if (!decodeSelectionPayload(json)) {
            state.SkipWithError("not decoded");
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(json.size()) * static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(decodeSelectionOf10MiB)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lomaris
