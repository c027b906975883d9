// A file is read as a simulated desktop or refused with a message.

#include "simulator/desktop_file.h"
#include "simulator/file_error.h"
#include "simulator/json_file.h"
#include "tests/fuzz/fuzz_target.h"

#include <string>
#include <string_view>

namespace lomaris::test {

void tryInput(std::string_view bytes) {
    try {
        const simulator::Json file = simulator::parseJson(bytes);
        require(simulator::readDesktop(simulator::JsonNode(file)) != nullptr, "a file without errors gives a desktop");
    } catch (const simulator::FileError& error) {
        require(!std::string_view(error.what()).empty(), "an error has a message");
    }
}

}  // namespace lomaris::test
