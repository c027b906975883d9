#include "platform/linux/x11/window_class.h"

#include <algorithm>

namespace lomaris {

WindowClass windowClassFromProperty(std::string_view bytes) {
    const std::size_t first = std::min(bytes.find('\0'), bytes.size());
    WindowClass result{.instanceName = std::string(bytes.substr(0, first)), .className = {}};
    if (first < bytes.size()) {
        const std::string_view rest = bytes.substr(first + 1);
        result.className = rest.substr(0, rest.find('\0'));
    }
    return result;
}

}  // namespace lomaris
