#pragma once

#include <utility>

namespace lomaris::simulated {

/// A value stands in a place as long as this lives; then what stood there before does again, however the scope was
/// left.
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
