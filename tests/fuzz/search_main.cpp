// What the fuzzer of clang calls; its own library has the program's `main`.

#include "tests/fuzz/fuzz_target.h"

#include <cstddef>
#include <cstdint>

// The fuzzer sees bytes as numbers, a text sees them as characters.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    lomaris::test::tryInput({reinterpret_cast<const char*>(data), size});
    return 0;
}
