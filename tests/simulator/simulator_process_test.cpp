// The simulator as a program.

#include "tests/support/process.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

class Simulator : public testing::Test {
protected:
    Simulator() { write("desktop.json", R"({"trusted": false})"); }

    void write(const std::string& name, const std::string& contents) const {
        std::ofstream(path(name), std::ios::binary) << contents;
    }

    [[nodiscard]] std::string contentsOf(const std::string& name) const {
        std::ifstream stream(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    [[nodiscard]] std::string path(const std::string& name) const { return (directory_.path() / name).string(); }

    [[nodiscard]] static ProcessResult run(std::vector<std::string> arguments, const ProcessOptions& options = {}) {
        arguments.insert(arguments.begin(), LOMARIS_SIMULATOR);
        return runProcess(arguments, options);
    }

private:
    TemporaryDirectory directory_;
};

ProcessResult usageError(const std::string& message) { return {64, "", "lomaris-bridge-simulator: " + message + "\n"}; }

TEST_F(Simulator, PrintsWhatTheToolPrints) {
    EXPECT_EQ(run({"--desktop", path("desktop.json"), "--", "permission-status"}),
              (ProcessResult{2, "not-granted\n", ""}));
    EXPECT_EQ(run({"--desktop", path("desktop.json"), "--"}), runTool({}));
    EXPECT_EQ(run({"--desktop", path("desktop.json"), "--", "read-selection", "--delay", "61"}),
              runTool({"read-selection", "--delay", "61"}));
}

TEST_F(Simulator, RefusesUnknownOptions) {
    EXPECT_EQ(run({}), usageError("--desktop FILE is missing"));
    EXPECT_EQ(run({"--desktop"}), usageError("--desktop requires a file"));
    for (const std::string option : {"--desktop", "--report", "--host"}) {
        EXPECT_EQ(run({option, "a", option, "b", "--"}), usageError(option + " stands twice"));
    }
    EXPECT_EQ(run({"--desktop", "a", "read-selection"}),
              usageError("unknown option \"read-selection\"; the arguments of the tool stand behind --"));
    EXPECT_EQ(run({"--desktop", "a"}), usageError("either --host STEPS or -- and the arguments of the tool"));
    EXPECT_EQ(run({"--desktop", "a", "--host", "-", "--"}),
              usageError("either --host STEPS or -- and the arguments of the tool"));
}

TEST_F(Simulator, NamesARefusedFileAndRunsNothing) {
    const std::string missing = path("missing.json");
    EXPECT_EQ(run({"--desktop", missing, "--"}), usageError(missing + ": expected a file that can be read"));
    write("wrong.json", R"({"trusted": 5})");
    EXPECT_EQ(run({"--desktop", path("wrong.json"), "--report", path("report.json"), "--"}),
              usageError(path("wrong.json") + ": trusted: expected true or false"));
    EXPECT_FALSE(std::filesystem::exists(path("report.json")));
    const std::string nowhere = path("nowhere/report.json");
    EXPECT_EQ(run({"--desktop", path("desktop.json"), "--report", nowhere, "--"}),
              usageError(nowhere + ": expected a file that can be written"));
    ProcessOptions options;
    options.input = R"([{"traces": "snapshot"}, {"sleep": 1}])";
    const ProcessResult refused = run({"--desktop", path("desktop.json"), "--host", "-"}, options);
    EXPECT_EQ(std::pair(refused.status, refused.output), std::pair(64, std::string()));
    EXPECT_EQ(refused.error.substr(0, 42), "lomaris-bridge-simulator: -: [1]: expected");
}

TEST_F(Simulator, RefusesFoldersInPlaceOfFiles) {
    const std::string folder = path("");
    EXPECT_EQ(run({"--desktop", folder, "--"}), usageError(folder + ": expected a file that can be read"));
    EXPECT_EQ(run({"--desktop", path("desktop.json"), "--host", folder}),
              usageError(folder + ": expected a file that can be read"));
    EXPECT_EQ(run({"--desktop", path("desktop.json"), "--report", folder, "--"}),
              usageError(folder + ": expected a file that can be written"));
}

TEST_F(Simulator, ReadsFilesLargerThanItsBuffer) {
    write("long.json", "{" + std::string(10'000, ' ') + "\"trusted\": false}");
    EXPECT_EQ(run({"--desktop", path("long.json"), "--", "permission-status"}),
              (ProcessResult{2, "not-granted\n", ""}));
}

TEST_F(Simulator, FailsIfTheReportCannotBeWritten) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full";
    }
    EXPECT_EQ(run({"--desktop", path("desktop.json"), "--report", "/dev/full", "--", "permission-status"}),
              (ProcessResult{74, "not-granted\n", "lomaris-bridge-simulator: /dev/full: could not be written\n"}));
}

TEST_F(Simulator, WritesTheSameReportEachTimeExceptTheRealTime) {
    const auto report = [this] {
        EXPECT_EQ(run({"--desktop", path("desktop.json"), "--report", path("report.json"), "--", "permission-status"}),
                  (ProcessResult{2, "not-granted\n", ""}));
        nlohmann::json read = nlohmann::json::parse(contentsOf("report.json"));
        EXPECT_TRUE(read.at("real").at("seconds").is_number());
        read.erase("real");
        return read;
    };
    const nlohmann::json first = report();
    EXPECT_EQ(first, report());
    EXPECT_EQ(first.at("journal"), nlohmann::json({"0.000000000 isProcessTrusted(none) -> false"}));
    EXPECT_EQ(first.at("status"), 2);
}

TEST_F(Simulator, ReadsHostStepsFromAFile) {
    write("steps.json",
          "// A host\n[{\"permission\": \"check\"}, {\"capture\": \"selection\"},\n"
          "{\"markSubmitted\": \"session\"}, {\"drop\": \"session\"}, {\"runMainQueue\": 0.25}]");
    const ProcessResult result = run({"--desktop", path("desktop.json"), "--host", path("steps.json")});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_EQ(
        result.output,
        "{\"step\":1,\"permission\":false,\"virtualSeconds\":0.0}\n"
        "{\"step\":2,\"capture\":{\"error\":\"accessibilityPermissionRequired\",\"message\":\"Accessibility "
        "permission is required. Open System Settings > Privacy & Security > Accessibility and enable Lomaris (or "
        "the terminal running it).\"},\"virtualSeconds\":0.0}\n"
        "{\"step\":3,\"markSubmitted\":\"no session\",\"virtualSeconds\":0.0}\n"
        "{\"step\":4,\"drop\":\"dropped\",\"virtualSeconds\":0.0}\n"
        "{\"step\":5,\"runMainQueue\":\"ran\",\"virtualSeconds\":0.25}\n");
}

}  // namespace
}  // namespace lomaris::test
