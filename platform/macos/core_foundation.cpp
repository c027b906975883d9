#include "platform/macos/core_foundation.h"

#include <cstddef>

namespace lomaris::macos {

// UniChar and char16_t are both 16 bits, so texts need no conversion.
static_assert(sizeof(UniChar) == sizeof(char16_t));

Text textFrom(CFStringRef string) {
    const CFIndex length = CFStringGetLength(string);
    Text text(static_cast<std::size_t>(length), u'\0');
    CFStringGetCharacters(string, CFRangeMake(0, length), reinterpret_cast<UniChar*>(text.data()));
    return text;
}

CFOwned<CFStringRef> stringFrom(TextView text) {
    const auto* const units = reinterpret_cast<const UniChar*>(text.data());
    return CFOwned(CFStringCreateWithCharacters(kCFAllocatorDefault, units, static_cast<CFIndex>(text.size())));
}

}  // namespace lomaris::macos
