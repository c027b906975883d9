#pragma once

#include "accessibility/model/input_activity.h"
#include "accessibility/model/selection.h"
#include "json/json_record.h"

#include <tuple>

/// The JSON fields of the records that are nested in others.
namespace lomaris {

template <>
inline constexpr auto jsonFieldsOf<SelectionRangePayload> = std::tuple{
    JsonField{"length", &SelectionRangePayload::length},
    JsonField{"location", &SelectionRangePayload::location},
};

template <>
inline constexpr auto jsonFieldsOf<InputActivitySnapshot> = std::tuple{
    JsonField{"keyDownCount", &InputActivitySnapshot::keyDownCount},
    JsonField{"leftMouseDownCount", &InputActivitySnapshot::leftMouseDownCount},
    JsonField{"otherMouseDownCount", &InputActivitySnapshot::otherMouseDownCount},
    JsonField{"rightMouseDownCount", &InputActivitySnapshot::rightMouseDownCount},
};

}  // namespace lomaris
