#include "bridge/execute.h"
#include "platform/native_platform.h"
#include "platform/posix/process_streams.h"
#include "text/utf8.h"

#include <vector>

int main(int argumentCount, char** argumentVector) {
    lomaris::ProcessStreams streams;
    std::vector<lomaris::Text> arguments;
    for (int index = 1; index < argumentCount; ++index) {
        arguments.push_back(lomaris::textFromUtf8(argumentVector[index]));
    }
    const auto platform = lomaris::nativePlatform(lomaris::ProcessRole::tool);
    return lomaris::runCommandLine(arguments, *platform, streams);
}
