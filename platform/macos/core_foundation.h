#pragma once

#include "text/text.h"

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace lomaris::macos {

/// Owns one reference to a Core Foundation object, or none. It is the only place that retains and releases: whatever a
/// Create or Copy call answers goes into one at once, and what a Get call answers is used in place or retained. A plain
/// value; copies share the object. `Reference` is the platform's reference type ("CFStringRef").
template <typename Reference>
class CFOwned {
public:
    CFOwned() = default;

    /// Takes over the reference that a Create or Copy call answered, which may be null.
    explicit CFOwned(Reference created) noexcept : reference_(created) {}

    /// Shares an object that somebody else owns, such as a Get call answers. `borrowed` may be null.
    [[nodiscard]] static CFOwned retaining(Reference borrowed) noexcept {
        if (borrowed != nullptr) {
            CFRetain(borrowed);
        }
        return CFOwned(borrowed);
    }

    CFOwned(const CFOwned& other) noexcept : CFOwned(retaining(other.reference_)) {}
    CFOwned(CFOwned&& other) noexcept : reference_(std::exchange(other.reference_, nullptr)) {}

    CFOwned& operator=(CFOwned other) noexcept {
        std::swap(reference_, other.reference_);
        return *this;
    }

    ~CFOwned() {
        if (reference_ != nullptr) {
            CFRelease(reference_);
        }
    }

    /// The object, borrowed from this owner; null where there is none.
    [[nodiscard]] Reference get() const noexcept { return reference_; }

    explicit operator bool() const noexcept { return reference_ != nullptr; }

private:
    Reference reference_ = nullptr;
};

/// The UTF-16 units of `string`, which must not be null, half surrogate pairs included. Any thread.
[[nodiscard]] Text textFrom(CFStringRef string);

/// A string of exactly these UTF-16 units, or none where the platform cannot make one. Any thread.
[[nodiscard]] CFOwned<CFStringRef> stringFrom(TextView text);

}  // namespace lomaris::macos
