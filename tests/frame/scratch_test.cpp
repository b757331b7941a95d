// Scratch that an error passes over.

#include <cstring>
#include <gtest/gtest.h>

#include "frame/errors.h"
#include "kernel_fixture.h"
#include "numbers/integer/integer_groups.h"

namespace korel::test {

namespace {

[[gnu::noinline]] void failOverGroups() {
  GroupSpace few(3), many(1000);
  KernelException("no room for the result");
}

// What stood on the stack is overwritten.
[[gnu::noinline]] void useStack() {
  volatile char used[20000];
  for (std::size_t i = 0; i < sizeof used; ++i) used[i] = 0x55;
}

}  // namespace

// An operation that ends later would walk over the spaces of the one that failed.
TEST(GroupSpaces, AreGivenBackByAnyError) {
  EXPECT_EQ(errorOf([] { failOverGroups(); }), "no room for the result");
  useStack();
  GroupSpace::releaseAll();
}

}  // namespace korel::test
