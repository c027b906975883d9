#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

/// A fuzz target is one file that defines `tryInput`: what must hold of any bytes whatever. The same file becomes two
/// programs: one that searches for inputs on which it does not hold (`search_main.cpp`, with the fuzzer of clang), and
/// one that goes through the inputs that are kept (`replay_main.cpp`, any compiler).
namespace lomaris::test {

/// Returns where all is well. Throws `BrokenPromise` where it is not; anything else that is thrown is a defect too, and
/// so is what the sanitizers report.
void tryInput(std::string_view bytes);

/// Something that must hold of every input did not hold of this one.
class BrokenPromise : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

inline void require(bool holds, const std::string& promise) {
    if (!holds) {
        throw BrokenPromise(promise);
    }
}

}  // namespace lomaris::test
