// Runs storms of calls of the tool on a real browser: concurrent calls, and calls that are killed.
//
//     lomaris_real_concurrency_tests [--rounds=NUMBER] [--seed=NUMBER] [GoogleTest options]

#include "tests/storm/storm_desktop.h"
#include "tests/storm/storm_options.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argumentCount, char** argumentVector) {
    testing::InitGoogleTest(&argumentCount, argumentVector);
    lomaris::test::StormOptions& options = lomaris::test::stormOptions();
    for (int index = 1; index < argumentCount; ++index) {
        const std::string argument(argumentVector[index]);
        const std::string value = argument.substr(argument.find('=') + 1);
        if (argument.starts_with("--rounds=") && std::atoi(value.c_str()) > 0) {
            options.rounds = std::atoi(value.c_str());
        } else if (argument.starts_with("--seed=")) {
            options.seed = static_cast<unsigned>(std::strtoul(value.c_str(), nullptr, 10));
        } else {
            std::fprintf(stderr, "not --rounds=NUMBER or --seed=NUMBER: %s\n", argument.c_str());
            return 1;
        }
    }
    std::printf("--rounds=%d --seed=%u\n", options.rounds, options.seed);
    std::fflush(stdout);
    const int status = RUN_ALL_TESTS();
    lomaris::test::endStormDesktop();
    return status;
}
