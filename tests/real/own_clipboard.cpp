// Owns the clipboard with several targets at once, as a word processor does, for the demo and for measurements.
//
//     lomaris_own_clipboard TARGET=FILE...
//
// Prints "ready" when it owns the clipboard, and serves it until it is killed.

#include "tests/x11/clipboard_other_owner.h"

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

int main(int argumentCount, char** argumentVector) {
    std::vector<lomaris::test::OfferedTarget> offered;
    for (int index = 1; index < argumentCount; ++index) {
        const std::string_view argument(argumentVector[index]);
        const auto separator = argument.find('=');
        std::ifstream file(std::string(argument.substr(separator + 1)), std::ios::binary);
        if (separator == std::string_view::npos || !file) {
            std::fprintf(stderr, "lomaris_own_clipboard: not TARGET=FILE: %s\n", argumentVector[index]);
            return 1;
        }
        const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        offered.push_back({std::string(argument.substr(0, separator)), {"", 8, bytes}});
        if (bytes.size() > 256UL * 1024) {
            offered.back().conduct = lomaris::test::Conduct::answersInPieces;
        }
    }
    const lomaris::test::OtherOwner owner(std::move(offered));
    std::puts("ready");
    std::fflush(stdout);
    for (;;) {
        pause();
    }
}
