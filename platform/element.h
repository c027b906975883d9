#pragma once

#include <memory>
#include <utility>

namespace lomaris {

/// What a platform keeps behind an `Element`. Immutable after construction, so that elements may be copied and compared
/// on any thread; only the services of the platform that made it look inside.
class ElementReference {
public:
    ElementReference() = default;
    ElementReference(const ElementReference&) = delete;
    ElementReference& operator=(const ElementReference&) = delete;
    virtual ~ElementReference() = default;

    /// The platform's own equality: whether both denote the same element of the same process. `other` comes from the
    /// same platform.
    [[nodiscard]] virtual bool isSameElement(const ElementReference& other) const = 0;
};

/// One accessibility element of another process, as a value: copying retains, the last copy releases, equality is the
/// platform's. Holding an element does not keep the thing itself alive; operations on an element whose application is
/// gone answer an error code. Elements come from the `Accessibility` service and must not outlive its `Platform`.
class Element {
public:
    /// `reference` must not be null.
    explicit Element(std::shared_ptr<const ElementReference> reference) : reference_(std::move(reference)) {}

    [[nodiscard]] const ElementReference& reference() const { return *reference_; }

    friend bool operator==(const Element& a, const Element& b) {
        return a.reference_ == b.reference_ || a.reference_->isSameElement(*b.reference_);
    }

private:
    std::shared_ptr<const ElementReference> reference_;
};

}  // namespace lomaris
