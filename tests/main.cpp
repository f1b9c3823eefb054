// Test entry. The suite runs unchanged on Linux and, cross-built, under
// Wine; the last line it prints is GoogleTest's own summary, which the Wine
// runner checks. Run with "--kz-helper" first, the program is the second
// process of a cross-process test instead.
#include <gtest/gtest.h>

#include <cstring>

#include "files.h"

int main(int argc, char** argv) {
  if (argc >= 2 && std::strcmp(argv[1], "--kz-helper") == 0)
    return kz::test::dispatch_helper(argc - 2, argv + 2);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
