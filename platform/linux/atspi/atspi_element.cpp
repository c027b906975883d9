#include "platform/linux/atspi/atspi_element.h"

#include <utility>

namespace lomaris {

namespace {

class AtspiElement final : public ElementReference {
public:
    explicit AtspiElement(ElementTarget target) : target_(std::move(target)) {}

    [[nodiscard]] bool isSameElement(const ElementReference& other) const override {
        return target_ == static_cast<const AtspiElement&>(other).target_;
    }

    [[nodiscard]] const ElementTarget& target() const { return target_; }

private:
    ElementTarget target_;
};

}  // namespace

Element makeElement(ElementTarget target) { return Element(std::make_shared<const AtspiElement>(std::move(target))); }

const ElementTarget& targetOf(const Element& element) {
    return static_cast<const AtspiElement&>(element.reference()).target();
}

}  // namespace lomaris
