#include "tests/macos/fake_core_foundation.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <sstream>

namespace lomaris::test {

namespace {

constexpr long constantReferences = 1000;

std::set<const FakeObject*>& allObjects() {
    static std::set<const FakeObject*> objects;
    return objects;
}

struct Plan {
    int calls = 0;
    int failing = 0;
};

Plan& plan() {
    static Plan value;
    return value;
}

const char* nameOf(FakeType type) {
    static const std::map<FakeType, const char*> names{
        {FakeType::string, "string"},         {FakeType::boolean, "boolean"},
        {FakeType::number, "number"},         {FakeType::array, "array"},
        {FakeType::dictionary, "dictionary"}, {FakeType::null, "null"},
        {FakeType::locale, "locale"},         {FakeType::date, "date"},
        {FakeType::element, "element"},       {FakeType::boxedValue, "boxed value"},
        {FakeType::eventSource, "source"},    {FakeType::event, "event"}};
    return names.at(type);
}

struct FakeDate final : FakeObject {
    FakeDate() : FakeObject(FakeType::date) {}
};

}  // namespace

FakeObject::FakeObject(FakeType kind, Lifetime span)
    : type(kind), lifetime(span), references(span == Lifetime::constant ? constantReferences : 1) {
    allObjects().insert(this);
}

FakeObject::~FakeObject() { allObjects().erase(this); }

const FakeObject& objectAt(CFTypeRef reference) {
    if (reference == nullptr) {
        fakeCrash("a null reference was used as an object");
    }
    if (!isAlive(reference)) {
        fakeCrash("an object was used after its last release");
    }
    return *static_cast<const FakeObject*>(reference);
}

bool isAlive(CFTypeRef reference) { return allObjects().count(static_cast<const FakeObject*>(reference)) != 0; }

void fakeCrash(const std::string& why) {
    std::fprintf(stderr, "%s\n", why.c_str());
    std::abort();
}

std::string unbalancedObjects() {
    std::map<std::string, int> counts;
    for (const FakeObject* const object : allObjects()) {
        if (object->lifetime == FakeObject::Lifetime::counted) {
            ++counts[nameOf(object->type)];
        } else if (object->references != constantReferences) {
            ++counts["constant " + std::string(nameOf(object->type))];
        }
    }
    std::ostringstream text;
    for (const auto& [name, count] : counts) {
        text << count << " " << name << "\n";
    }
    return text.str();
}

void FakeFaults::failCall(int number) { plan() = {0, number}; }
void FakeFaults::clear() { plan() = {}; }
bool FakeFaults::hasFailed() { return plan().failing != 0 && plan().calls >= plan().failing; }
bool FakeFaults::strikes() { return ++plan().calls == plan().failing; }

Held held(CFTypeRef created) {
    if (created == nullptr) {
        return nullptr;
    }
    return {created, [](CFTypeRef reference) { CFRelease(reference); }};
}

Held heldConstant(CFTypeRef constant) { return held(CFRetain(constant)); }

Held makeDate() { return held(new FakeDate); }

}  // namespace lomaris::test

using lomaris::test::fakeCrash;
using lomaris::test::FakeObject;
using lomaris::test::FakeType;
using lomaris::test::objectAt;

namespace {

struct Null final : FakeObject {
    Null() : FakeObject(FakeType::null, Lifetime::constant) {}
};

}  // namespace

CFTypeRef CFRetain(CFTypeRef object) {
    ++objectAt(object).references;
    return object;
}

void CFRelease(CFTypeRef object) {
    const FakeObject& released = objectAt(object);
    if (--released.references == 0) {
        delete &released;
    }
}

CFTypeID CFGetTypeID(CFTypeRef object) { return static_cast<CFTypeID>(objectAt(object).type); }

Boolean CFEqual(CFTypeRef first, CFTypeRef second) {
    const FakeObject& a = objectAt(first);
    const FakeObject& b = objectAt(second);
    return a.type == b.type && a.equals(b) ? 1 : 0;
}

const CFAllocatorRef kCFAllocatorDefault = nullptr;

const CFNullRef kCFNull = reinterpret_cast<CFNullRef>(new Null);
CFTypeID CFNullGetTypeID() { return static_cast<CFTypeID>(FakeType::null); }
