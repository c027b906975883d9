#pragma once

#include <string>
#include <string_view>

namespace lomaris {

/// A text as the target applications store it: UTF-16 code units in the machine's byte order.
///
/// All positions, lengths and cuts are counted in UTF-16 units. A cut may split a surrogate pair; the remaining half
/// stays in the text and becomes U+FFFD only when the text is converted to UTF-8 (`utf8FromText`) or compared.
using Text = std::u16string;
using TextView = std::u16string_view;

}  // namespace lomaris
