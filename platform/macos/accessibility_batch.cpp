#include "platform/macos/accessibility_batch.h"

#include "platform/macos/attribute_values.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace lomaris::macos {

namespace {

constexpr auto goOnAfterErrors = static_cast<AXCopyMultipleAttributeOptions>(0);

CFOwned<CFArrayRef> arrayOf(const std::vector<CFOwned<CFStringRef>>& strings) {
    std::vector<const void*> members;
    members.reserve(strings.size());
    for (const CFOwned<CFStringRef>& string : strings) {
        if (!string) {
            return {};
        }
        members.push_back(string.get());
    }
    const auto count = static_cast<CFIndex>(members.size());
    return CFOwned(CFArrayCreate(kCFAllocatorDefault, members.data(), count, &kCFTypeArrayCallBacks));
}

/// The result of one attribute in a batch; nullopt if the attribute must be copied alone: CFNull is ambiguous, and an
/// attribute without a value cannot have succeeded.
std::optional<CopiedAttribute> answerIn(CFTypeRef place) {
    if (place == nullptr || CFGetTypeID(place) == CFNullGetTypeID()) {
        return std::nullopt;
    }
    const std::optional<AXError> error = boxedErrorIn(place);
    if (!error) {
        return CopiedAttribute{AXError::success, CFOwned<CFTypeRef>::retaining(place)};
    }
    return *error == AXError::success ? std::nullopt : std::optional(CopiedAttribute{*error, {}});
}

}  // namespace

CopiedAttribute copyAttributeOf(AXUIElementRef element, CFStringRef attribute) {
    if (attribute == nullptr) {
        return {AXError::failure, {}};
    }
    CFTypeRef value = nullptr;
    const auto error = static_cast<AXError>(AXUIElementCopyAttributeValue(element, attribute, &value));
    CFOwned<CFTypeRef> owned(value);
    return {error, error == AXError::success ? std::move(owned) : CFOwned<CFTypeRef>()};
}

AttributeBatch::AttributeBatch(std::vector<CFOwned<CFStringRef>> attributes) : attributes_(std::move(attributes)) {
    // A single attribute takes one request either way.
    if (attributes_.size() > 1) {
        names_ = arrayOf(attributes_);
    }
}

std::vector<CopiedAttribute> AttributeBatch::copyFrom(AXUIElementRef element) const {
    const CFOwned<CFArrayRef> places = copyTogether(element);
    std::vector<CopiedAttribute> answers;
    answers.reserve(attributes_.size());
    for (std::size_t index = 0; index < attributes_.size(); ++index) {
        std::optional<CopiedAttribute> answer;
        if (places) {
            answer = answerIn(CFArrayGetValueAtIndex(places.get(), static_cast<CFIndex>(index)));
        }
        answers.push_back(answer ? *std::move(answer) : copyAttributeOf(element, attributes_[index].get()));
    }
    return answers;
}

CFOwned<CFArrayRef> AttributeBatch::copyTogether(AXUIElementRef element) const {
    if (!names_) {
        return {};
    }
    CFArrayRef values = nullptr;
    const ::AXError error = AXUIElementCopyMultipleAttributeValues(element, names_.get(), goOnAfterErrors, &values);
    CFOwned<CFArrayRef> places(values);
    const bool isWhole =
        error == kAXErrorSuccess && places && CFArrayGetCount(places.get()) == static_cast<CFIndex>(attributes_.size());
    return isWhole ? places : CFOwned<CFArrayRef>();
}

}  // namespace lomaris::macos
