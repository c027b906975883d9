#pragma once

#include <utility>

namespace lomaris::simulated {

/// Sets a variable for as long as this object exists, then restores the previous value.
template <typename Value>
class Meanwhile {
public:
    Meanwhile(Value& place, Value value) : place_(place), before_(std::exchange(place, std::move(value))) {}
    Meanwhile(const Meanwhile&) = delete;
    Meanwhile& operator=(const Meanwhile&) = delete;
    ~Meanwhile() { place_ = std::move(before_); }

private:
    Value& place_;
    Value before_;
};

}  // namespace lomaris::simulated
