#include "accessibility/adapter/scan_roots.h"

#include "accessibility/adapter/attribute_access.h"
#include "platform/attributes.h"

namespace lomaris {

std::vector<Element> scanRoots(Accessibility& accessibility, const Element& application) {
    if (const auto window = copyOptionalElementAttribute(accessibility, application, attribute::focusedWindow)) {
        return {*window};
    }
    auto windows = copyOptionalElementArrayAttribute(accessibility, application, attribute::windows);
    if (windows.empty()) {
        windows.push_back(application);
    }
    return windows;
}

}  // namespace lomaris
