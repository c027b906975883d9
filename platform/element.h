#pragma once

#include <memory>
#include <utility>

namespace lomaris {

/// The platform's data behind an `Element`. Immutable after construction, so elements may be copied and compared on any
/// thread. Only the services of the platform that created it access the data.
class ElementReference {
public:
    ElementReference() = default;
    ElementReference(const ElementReference&) = delete;
    ElementReference& operator=(const ElementReference&) = delete;
    virtual ~ElementReference() = default;

    /// True if both denote the same element of the same process, by the platform's own equality. `other` must be from
    /// the same platform.
    [[nodiscard]] virtual bool isSameElement(const ElementReference& other) const = 0;
};

/// One accessibility element of another process, as a value: copying retains the reference, destroying the last copy
/// releases it, and equality is the platform's. It does not keep the user interface object alive; operations on an
/// element whose application has ended return an error code. Obtained from the `Accessibility` service; must not
/// outlive its `Platform`.
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
