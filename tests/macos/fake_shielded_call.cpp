#include "tests/macos/fake_shielded_call.h"

#include "platform/macos/shielded_call.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace lomaris {

namespace {

/// The number of temporary objects in the innermost pool of this thread.
thread_local std::size_t* pool = nullptr;
std::atomic<std::size_t> most{0};

class Pool {
public:
    Pool() { pool = &count_; }
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;
    ~Pool() { pool = outer_; }

private:
    std::size_t* const outer_ = pool;
    std::size_t count_ = 0;
};

}  // namespace

namespace macos {

bool runShielded(const std::function<void()>& call) noexcept {
    const Pool own;
    try {
        call();
        return true;
    } catch (...) {
        return false;
    }
}

}  // namespace macos

namespace test::fake_shield {

void leaveTemporary() {
    if (pool == nullptr) {
        std::fputs("the platform was called without a pool\n", stderr);
        std::abort();
    }
    most = std::max(most.load(), ++*pool);
}

std::size_t mostInOnePool() { return most; }

void reset() { most = 0; }

}  // namespace test::fake_shield

}  // namespace lomaris
