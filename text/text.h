#pragma once

#include <string>
#include <string_view>

namespace lomaris {

/// A text as the target applications hold it: UTF-16 code units, in memory order of the machine.
///
/// Positions, lengths and cuts are counted in these units everywhere. A cut may fall inside a surrogate pair; the half
/// that is left stays in the text as it is and becomes U+FFFD only where the text leaves the process as UTF-8
/// (`utf8FromText`).
using Text = std::u16string;
using TextView = std::u16string_view;

}  // namespace lomaris
