// Fills a buffer of eight bytes with as many as it is told. Built like the tool, it does not live to see the ninth.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

int main(int argumentCount, char** arguments) {
    std::array<char, 8> buffer{};
    const std::size_t count = argumentCount < 2 ? 0 : std::strtoul(arguments[1], nullptr, 10);
    std::memset(buffer.data(), 'x', count);
    std::fwrite(buffer.data(), 1, buffer.size(), stdout);
    return 0;
}
