#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

#include "kernel_fixture.h"
#include "session/log.h"
#include "store/constants.h"

namespace korel {
namespace {

std::string contentOf(const char* path) {
  std::string result;
  std::FILE* file = std::fopen(path, "r");
  for (int c; (c = std::fgetc(file)) != EOF;) result += static_cast<char>(c);
  std::fclose(file);
  return result;
}

TEST(Log, WritesOnlyWhileEnabled) {
  char path[] = "/tmp/korel_log_XXXXXX";
  close(mkstemp(path));
  ASSERT_TRUE(openlogf(path));
  m_logf("dropped\n");
  logdag(cons1);
  enablelogf();
  m_logf("kept %d %s\n", 3, "x");
  logdag(test::parsed("a+b"));
  logdag(DAG());
  disablelogf();
  m_logf("dropped\n");
  closelogf();
  EXPECT_EQ(contentOf(path), std::to_string(getpid()) + ": kept 3 x\na+b\n0 (pointer is 0)\n");
  unlink(path);
  EXPECT_FALSE(openlogf("/no/such/place"));
}

}  // namespace
}  // namespace korel
