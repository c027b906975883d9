#pragma once

#include "tests/support/process.h"
#include "tests/support/temporary_directory.h"

#include <fstream>
#include <future>
#include <string>
#include <vector>

namespace lomaris::test {

/// The example host between its capture and the Enter of its user. One that is not submitted is left to end by itself.
class RunningHost {
public:
    /// Starts it; returns once it has captured a selection, and throws where it ends instead.
    explicit RunningHost(const std::vector<std::string>& arguments);
    RunningHost(const RunningHost&) = delete;
    RunningHost& operator=(const RunningHost&) = delete;
    ~RunningHost() = default;

    /// Presses Enter; what became of the host, with all that it has printed. To be called once.
    [[nodiscard]] ProcessResult submit();

private:
    TemporaryDirectory directory_;
    std::string input_ = (directory_.path() / "input").string();
    std::string output_ = (directory_.path() / "output").string();
    std::future<ProcessResult> end_;
    /// Last, so that the host's input is closed before its end is waited for.
    std::ofstream keyboard_;
};

/// What the host says where anything is not as it was captured.
inline constexpr const char* selectionChangedLine =
    "embedding-host: The original selection changed while Lomaris was working, so your document was left untouched. "
    "Select the text and try again.\n";

/// The ten lines that the host ends its output with: the traces, by values in their order.
[[nodiscard]] std::string traces(const std::vector<int>& capture, const std::vector<int>& guard);

}  // namespace lomaris::test
