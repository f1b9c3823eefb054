// Releasing string lists, and the allocator's failure switch the other
// tests rely on.
#include <cstring>

#include "support.h"

namespace {

TEST(StrList, ReleaseFreesEveryStringAndTheArrayWithoutReadingThem) {
  // The leak checker proves that every block went back; the strings hold
  // no terminator, as a release must not read them, save one empty string.
  for (auto release : {KZ_DeleteStrListW, KZ_DeleteStrListA}) {
    StrList list{3, kz::allocate_array<void*>(3)};
    for (int i = 0; i < 3; ++i) {
      list.strings[i] = kz::allocate(4);
      std::memset(list.strings[i], i == 1 ? 0 : 'x', 4);
    }
    release(&list);
    EXPECT_EQ(list.count, 0);
    EXPECT_EQ(list.strings, nullptr);
    release(&list);  // a second release finds an empty list and does nothing
    EXPECT_EQ(list.count, 0);
    EXPECT_EQ(list.strings, nullptr);
  }
}

TEST(Allocator, InjectedFailureHitsOnlyTheArmedAllocation) {
  kz::alloc_faults::arm(2, false);
  void* first = kz::allocate(8);
  void* second = kz::allocate(8);
  void* third = kz::allocate(8);
  kz::alloc_faults::disarm();
  EXPECT_NE(first, nullptr);
  EXPECT_EQ(second, nullptr);
  EXPECT_NE(third, nullptr);
  kz::release(first);
  kz::release(third);

  kz::alloc_faults::arm(1, true);
  EXPECT_EQ(kz::allocate(1), nullptr);
  EXPECT_EQ(kz::allocate(1), nullptr);
  kz::alloc_faults::disarm();
  EXPECT_EQ(kz::allocate_array<int>(SIZE_MAX / 2), nullptr);  // overflow, not a huge block
}

}  // namespace
