#include "platform/linux/linux_scheduling.h"
#include "tests/support/termination_suite.h"

namespace lomaris::test {

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, TerminationDeathTest, LinuxScheduling);

}  // namespace lomaris::test
