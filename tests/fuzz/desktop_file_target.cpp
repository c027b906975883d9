// A file becomes a simulated desktop or a complaint.

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
        require(simulator::readDesktop(simulator::JsonNode(file)) != nullptr, "a file that is right is a desktop");
    } catch (const simulator::FileError& error) {
        require(!std::string_view(error.what()).empty(), "a complaint says something");
    }
}

}  // namespace lomaris::test
