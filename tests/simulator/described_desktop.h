#pragma once

#include "simulator/desktop_file.h"
#include "simulator/json_file.h"

#include <memory>
#include <string>
#include <string_view>

namespace lomaris::test {

/// The desktop that a file with these contents describes.
inline std::unique_ptr<simulator::Stage> stageOf(const std::string& contents) {
    const simulator::Json file = simulator::parseJson(contents);
    return simulator::readDesktop(simulator::JsonNode(file));
}

/// What the element of this name in the file answers.
inline AttributeAnswer read(simulator::Stage& stage, const std::string& name, std::string_view attribute) {
    return stage.desktop.accessibility().copyAttribute(stage.named.at(name).element(), attribute);
}

}  // namespace lomaris::test
