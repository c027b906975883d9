#pragma once

#include "tests/support/process.h"
#include "tests/support/temporary_directory.h"

#include <fstream>
#include <future>
#include <string>
#include <vector>

namespace lomaris::test {

/// The example host, which has captured a selection and waits for Enter. The destructor closes its input, without
/// Enter, and waits until it has ended.
class RunningHost {
public:
    /// Starts the host and waits until it has captured a selection. Throws if it ends instead.
    explicit RunningHost(const std::vector<std::string>& arguments);
    RunningHost(const RunningHost&) = delete;
    RunningHost& operator=(const RunningHost&) = delete;
    ~RunningHost() = default;

    /// Sends Enter, waits until the host ends, and returns its result with all its output. May be called once.
    [[nodiscard]] ProcessResult submit();

private:
    TemporaryDirectory directory_;
    std::string input_ = (directory_.path() / "input").string();
    std::string output_ = (directory_.path() / "output").string();
    std::future<ProcessResult> end_;
    /// The last member, so that the destructor closes the host's input before it waits for the end.
    std::ofstream keyboard_;
};

/// The error of the host if the selection is not the captured one.
inline constexpr const char* selectionChangedLine =
    "embedding-host: The original selection changed while Lomaris was working, so your document was left untouched. "
    "Select the text and try again.\n";

/// Returns the last ten lines of the output: the two traces with these values, in their order.
[[nodiscard]] std::string traces(const std::vector<int>& capture, const std::vector<int>& guard);

}  // namespace lomaris::test
