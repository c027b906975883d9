#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>

namespace lomaris::test {

/// The parameter of a contract suite: how to make a world in which the contract can be watched, and a name for it. A
/// maker that cannot provide its world here answers null after it printed why; the test is then reported as skipped.
///
/// A platform runs a suite so:
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
