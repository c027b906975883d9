#pragma once

#include "simulator/desktop_file.h"
#include "simulator/json_file.h"

#include <memory>
#include <string>
#include <string_view>

namespace lomaris::test {

/// Returns the desktop described by a file with these contents. Throws FileError if the file is wrong.
inline std::unique_ptr<simulator::Stage> stageOf(const std::string& contents) {
    const simulator::Json file = simulator::parseJson(contents);
    return simulator::readDesktop(simulator::JsonNode(file));
}

/// Reads an attribute of the element that has this name in the file.
inline AttributeAnswer read(simulator::Stage& stage, const std::string& name, std::string_view attribute) {
    return stage.desktop.accessibility().copyAttribute(stage.named.at(name).element(), attribute);
}

}  // namespace lomaris::test
