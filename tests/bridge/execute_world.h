#pragma once

#include "bridge/execute.h"
#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {

using Lines = std::vector<std::string>;

/// Streams in memory. Every write is a separate element of `output` or `error`.
class RecordedStreams : public StandardStreams {
public:
    std::optional<std::string> readInput() override {
        ++inputReads;
        return input;
    }

    bool writeOutput(std::string_view bytes) override {
        if (output.size() >= acceptedWrites) {
            return false;
        }
        output.emplace_back(bytes);
        return true;
    }

    void writeError(std::string_view bytes) override { error.emplace_back(bytes); }

    /// Nullopt if standard input cannot be read.
    std::optional<std::string> input = std::string();
    int inputReads = 0;
    /// The number of writes to standard output that succeed; later ones fail.
    std::size_t acceptedWrites = std::numeric_limits<std::size_t>::max();
    Lines output;
    Lines error;
};

/// A frontmost application with "brown fox" selected, and the tool with its streams.
class ExecuteWorld : public testing::Test {
protected:
    ExecuteWorld() {
        notes.element().answers(attribute::focusedUIElement, text.element());
        desktop.bringToFront(812);
        desktop.setInputCounters({1, 2, 3, 4});
    }

    int run(const std::vector<std::string>& arguments) {
        std::vector<Text> texts;
        texts.reserve(arguments.size());
        for (const auto& argument : arguments) {
            texts.push_back(textFromUtf8(argument));
        }
        return runCommandLine(texts, desktop, streams);
    }

    /// The command ends with this one line on standard error, in one write, and nothing on standard output.
    void expectFailure(const std::vector<std::string>& arguments, const std::string& message) {
        streams.error.clear();
        EXPECT_EQ(run(arguments), 1);
        EXPECT_EQ(streams.error, Lines{"Lomaris macOS bridge: " + message + "\n"});
        EXPECT_EQ(streams.output, Lines());
    }

    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement text = notes.addTextElement(u"The quick brown fox", TextRange{10, 9});
    RecordedStreams streams;
};

}  // namespace lomaris::test
