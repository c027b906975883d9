#pragma once

#include "tests/platform/contract_param.h"

#include <gtest/gtest.h>

#include <memory>

namespace lomaris::test {

/// Base of the contract suites: makes a new world for each test and destroys it afterwards.
template <typename World>
class ContractSuite : public testing::TestWithParam<WorldMaker<World>> {
protected:
    void SetUp() override {
        world_ = this->GetParam().make();
        if (!world_) {
            GTEST_SKIP() << "world " << this->GetParam().name << " is not available here";
        }
    }

    World& world() { return *world_; }
    void endWorld() { world_.reset(); }

private:
    std::unique_ptr<World> world_;
};

}  // namespace lomaris::test
