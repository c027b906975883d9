#pragma once

#include "tests/real/browser.h"
#include "tests/real/desktop.h"
#include "tests/support/running_program.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace lomaris::test {

/// Tests that share one browser, as it starts slowly. Its page is reloaded for each test.
class BrowserSuite : public testing::Test {
protected:
    static void SetUpTestSuite() {
        missing_ = missingPrograms({"firefox-esr", "xdotool"});
        if (missing_.empty()) {
            browser_ = std::make_unique<Browser>();
        }
    }
    static void TearDownTestSuite() { browser_.reset(); }

    void SetUp() override {
        if (!missing_.empty()) {
            GTEST_SKIP() << missing_;
        }
        browser_->reset();
    }

    static Browser& browser() { return *browser_; }

private:
    static inline std::string missing_;
    static inline std::unique_ptr<Browser> browser_;
};

}  // namespace lomaris::test
