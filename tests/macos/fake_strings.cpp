#include "tests/macos/fake_core_foundation.h"
#include "text/case_insensitive_search.h"

#include <cstddef>
#include <map>
#include <utility>

using lomaris::Text;
using lomaris::TextView;
using lomaris::test::fakeCrash;
using lomaris::test::FakeFaults;
using lomaris::test::FakeObject;
using lomaris::test::FakeType;
using lomaris::test::objectAt;

struct __CFString final : FakeObject {
    explicit __CFString(Text text, Lifetime span = Lifetime::counted)
        : FakeObject(FakeType::string, span), units(std::move(text)) {}

    [[nodiscard]] bool equals(const FakeObject& other) const override {
        return units == static_cast<const __CFString&>(other).units;
    }

    Text units;
};

struct __CFLocale final : FakeObject {
    explicit __CFLocale(std::string spoken) : FakeObject(FakeType::locale), language(std::move(spoken)) {}

    std::string language;
};

namespace {

std::string& userLanguage() {
    static std::string language = "en";
    return language;
}

const Text& textOf(CFTypeRef string) {
    const FakeObject& object = objectAt(string);
    if (object.type != FakeType::string) {
        fakeCrash("something else was used as a string");
    }
    return static_cast<const __CFString&>(object).units;
}

lomaris::CaseRules caseRulesIn(CFLocaleRef locale) {
    return locale == nullptr ? lomaris::CaseRules::common
                             : lomaris::caseRulesOf(static_cast<const __CFLocale&>(objectAt(locale)).language);
}

}  // namespace

CFTypeID CFStringGetTypeID() { return static_cast<CFTypeID>(FakeType::string); }

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef /*allocator*/, const UniChar* characters, CFIndex count) {
    if (FakeFaults::strikes()) {
        return nullptr;
    }
    if (count < 0 || (characters == nullptr && count != 0)) {
        fakeCrash("a string was made of nothing");
    }
    // Copied unit by unit, because UniChar and char16_t are different types.
    Text units;
    for (CFIndex index = 0; index < count; ++index) {
        units.push_back(characters[index]);
    }
    return new __CFString(std::move(units));
}

CFIndex CFStringGetLength(CFStringRef string) { return static_cast<CFIndex>(textOf(string).size()); }

void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer) {
    const Text& units = textOf(string);
    if (range.location < 0 || range.length < 0 ||
        static_cast<std::size_t>(range.location + range.length) > units.size()) {
        fakeCrash("characters were asked for beyond the end of a string");
    }
    for (CFIndex index = 0; index < range.length; ++index) {
        buffer[index] = units[static_cast<std::size_t>(range.location + index)];
    }
}

CFStringRef __CFStringMakeConstantString(const char* string) {
    // Never destroyed, like the constants of the platform.
    static auto& constants = *new std::map<std::string, const __CFString*>;
    const __CFString*& constant = constants[string];
    if (constant == nullptr) {
        const std::string_view characters = string;
        constant = new __CFString(Text(characters.begin(), characters.end()), FakeObject::Lifetime::constant);
    }
    return constant;
}

CFLocaleRef CFLocaleCopyCurrent() { return FakeFaults::strikes() ? nullptr : new __CFLocale(userLanguage()); }

Boolean CFStringFindWithOptionsAndLocale(CFStringRef string, CFStringRef sought, CFRange range,
                                         CFStringCompareFlags options, CFLocaleRef locale, CFRange* found) {
    if (found != nullptr) {
        fakeCrash("this double does not tell where it found something");
    }
    const TextView whole = textOf(string);
    const TextView text =
        whole.substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
    const Text& word = textOf(sought);
    if (word.empty()) {
        return 0;
    }
    if (options == kCFCompareCaseInsensitive) {
        return lomaris::containsIgnoringCase(text, word, caseRulesIn(locale)) ? 1 : 0;
    }
    return text.find(word) != TextView::npos ? 1 : 0;
}

namespace lomaris::test {

Held makeString(TextView text) { return held(new __CFString(Text(text))); }
Text unitsOf(CFTypeRef string) { return textOf(string); }
void setUserLanguage(const std::string& language) { userLanguage() = language; }

}  // namespace lomaris::test
