#pragma once

#include "platform/simulated/simulated_desktop.h"
#include "platform/standard_streams.h"

#include <optional>
#include <string>
#include <string_view>

namespace lomaris::simulator {

/// The standard streams of a tool on a simulated desktop. After a signal has ended the tool, it writes nothing; after a
/// signal has told it to end, it writes only errors. Both references must outlive this object.
class ToolStreams final : public StandardStreams {
public:
    ToolStreams(StandardStreams& streams, SimulatedDesktop& desktop) : streams_(streams), desktop_(desktop) {}

    [[nodiscard]] std::optional<std::string> readInput() override { return streams_.readInput(); }
    [[nodiscard]] bool writeOutput(std::string_view bytes) override {
        return desktop_.admitsOutput() && streams_.writeOutput(bytes);
    }
    void writeError(std::string_view bytes) override {
        static_cast<void>(desktop_.admitsOutput());
        streams_.writeError(bytes);
    }

private:
    StandardStreams& streams_;
    SimulatedDesktop& desktop_;
};

}  // namespace lomaris::simulator
