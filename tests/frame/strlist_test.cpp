// Releasing string lists, and the allocator's failure switch the other
// tests rely on.
#include <cstring>

#include "support.h"

namespace {

// The leak checker proves that every block went back; the strings hold no
// terminator, as a release must not read them, save one empty string. A
// second release finds an empty list and does nothing.
TEST(StrList, ReleaseFreesEveryStringAndTheArrayWithoutReadingThem) {
  for (auto release : {KZ_DeleteStrListW, KZ_DeleteStrListA}) {
    StrList list{3, kz::allocate_array<void*>(3)};
    for (int i = 0; i < 3; ++i) std::memset(list.strings[i] = kz::allocate(4), i == 1 ? 0 : 'x', 4);
    for (int pass = 0; pass < 2; ++pass) {
      release(&list);
      EXPECT_EQ(list.count, 0);
      EXPECT_EQ(list.strings, nullptr);
    }
  }
}

TEST(Allocator, InjectedFailureHitsOnlyTheArmedAllocation) {
  kz::alloc_faults::arm(2, false);
  void* blocks[] = {kz::allocate(8), kz::allocate(8), kz::allocate(8)};
  kz::alloc_faults::disarm();
  EXPECT_NE(blocks[0], nullptr);
  EXPECT_EQ(blocks[1], nullptr);
  EXPECT_NE(blocks[2], nullptr);
  for (void* block : blocks) kz::release(block);
  kz::alloc_faults::arm(1, true);
  EXPECT_EQ(kz::allocate(1), nullptr);
  EXPECT_EQ(kz::allocate(1), nullptr);
  kz::alloc_faults::disarm();
  EXPECT_EQ(kz::allocate_array<int>(SIZE_MAX / 2), nullptr);  // overflow, not a huge block
}

}  // namespace
