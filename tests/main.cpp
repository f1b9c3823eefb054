// Test entry. The suite runs unchanged on Linux and, cross-built, under
// Wine; the last line it prints is GoogleTest's own summary, which the Wine
// runner checks.
#include <gtest/gtest.h>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
