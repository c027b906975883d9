#pragma once

#include "text/text.h"

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace lomaris::macos {

/// Owns one reference to a Core Foundation object, or none. The only place that retains and releases: the result of a
/// Create or Copy call is stored in a `CFOwned` at once, the result of a Get call is used in place or retained. A plain
/// value; copies share the object. `Reference` is the platform's reference type ("CFStringRef").
template <typename Reference>
class CFOwned {
public:
    CFOwned() = default;

    /// Takes ownership of the result of a Create or Copy call, which may be null.
    explicit CFOwned(Reference created) noexcept : reference_(created) {}

    /// Retains an object that another owner holds, such as the result of a Get call. `borrowed` may be null.
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

    /// The object, borrowed from this owner; null if there is none.
    [[nodiscard]] Reference get() const noexcept { return reference_; }

    explicit operator bool() const noexcept { return reference_ != nullptr; }

private:
    Reference reference_ = nullptr;
};

/// The UTF-16 units of `string`, which must not be null; half surrogate pairs are kept. Any thread.
[[nodiscard]] Text textFrom(CFStringRef string);

/// A string of exactly these UTF-16 units; null if the platform cannot create one. Any thread.
[[nodiscard]] CFOwned<CFStringRef> stringFrom(TextView text);

}  // namespace lomaris::macos
