#include "platform/macos/accessibility_element.h"

#include <memory>
#include <utility>

namespace lomaris::macos {

namespace {

class MacOSElement final : public ElementReference {
public:
    explicit MacOSElement(CFOwned<CFTypeRef> value) : value_(std::move(value)) {}

    [[nodiscard]] bool isSameElement(const ElementReference& other) const override {
        CFTypeRef const mine = value_.get();
        CFTypeRef const others = static_cast<const MacOSElement&>(other).value_.get();
        if (mine == nullptr || others == nullptr) {
            return mine == others;
        }
        return CFEqual(mine, others) != 0;
    }

    [[nodiscard]] CFTypeRef value() const { return value_.get(); }

private:
    CFOwned<CFTypeRef> value_;
};

}  // namespace

Element makeElement(CFOwned<CFTypeRef> value) {
    return Element(std::make_shared<const MacOSElement>(std::move(value)));
}

AXUIElementRef axElementOf(const Element& element) {
    CFTypeRef const value = static_cast<const MacOSElement&>(element.reference()).value();
    if (value == nullptr || CFGetTypeID(value) != AXUIElementGetTypeID()) {
        return nullptr;
    }
    return static_cast<AXUIElementRef>(value);
}

}  // namespace lomaris::macos
