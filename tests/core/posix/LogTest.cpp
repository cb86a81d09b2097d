#include <gtest/gtest.h>

#include "platform/Console.h"

TEST(PosixConsole, DebugLinesGoToStandardError) {
  testing::internal::CaptureStderr();
  Platform::WriteDebugLine("seen");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "seen\n");
}
