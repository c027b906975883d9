// The function that clang's fuzzer calls. Its library contains `main`.

#include "tests/fuzz/fuzz_target.h"

#include <cstddef>
#include <cstdint>

// Casts the bytes from numbers to characters.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    lomaris::test::tryInput({reinterpret_cast<const char*>(data), size});
    return 0;
}
