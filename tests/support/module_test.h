// What the tests of the modules share: a folder, faults that end with the test, and the rule that
// nothing is held behind it.
#pragma once

#include "platform/faults.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace korlit::test {

class ModuleTest : public testing::Test {
  protected:
    ~ModuleTest() override { expectNothingHeld(); }

    static void expectNothingHeld() {
        disarmFault();
        EXPECT_EQ(heldBlockCount(), 0);
        EXPECT_EQ(heldFileCount(), 0);
        EXPECT_EQ(heldLibraryCount(), 0);
    }

    /// What `call` writes to standard error, where the message boxes show.
    template <typename Call>
    static std::string boxOf(Call call) {
        testing::internal::CaptureStderr();
        call();
        return testing::internal::GetCapturedStderr();
    }

    TempFolder folder;
};

} // namespace korlit::test
