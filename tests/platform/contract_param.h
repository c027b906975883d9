#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>

namespace lomaris::test {

/// The parameter of a contract suite: a name, and a function that makes the world in which the suite runs. If that
/// world is not available here, the function prints the reason and returns null, and the test is reported as skipped.
///
/// A platform runs a suite as follows:
///
///     INSTANTIATE_TEST_SUITE_P(Simulated, SchedulingContract,
///                              testing::Values(SchedulingWorldMaker{"InMemory", [] { return ...; }}),
///                              contractParamName);
template <typename World>
struct WorldMaker {
    std::string name;
    std::function<std::unique_ptr<World>()> make;

    friend std::ostream& operator<<(std::ostream& stream, const WorldMaker& maker) { return stream << maker.name; }
};

inline constexpr auto contractParamName = [](const auto& info) { return info.param.name; };

}  // namespace lomaris::test
