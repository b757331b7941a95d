#include <gtest/gtest.h>
#include <string>

#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/integer/integer.h"
#include "store/allocator.h"
#include "store/check/dump.h"
#include "store/constants.h"
#include "store/generations.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel::test {
namespace {

/// The dump of `x` with addresses that lead into the heap replaced by "@".
std::string dumped(DAG x, int depth) {
  std::string text;
  dumpObject(
      x, depth, [](void* out, const char* line) { *static_cast<std::string*>(out) += line; }, &text);
  for (std::size_t at = 0; (at = text.find("0x", at)) != std::string::npos; ++at) {
    std::size_t end = text.find_first_not_of("0123456789abcdef", at + 2);
    Word word = static_cast<Word>(std::stoul(text.substr(at + 2), nullptr, 16));
    if (word >= lostorage && word < historage) text.replace(at, end - at, "@");
  }
  return text;
}

std::string generation() { return ", generation " + std::to_string(gcgen); }

// Fields by their kind, levels down to the depth, text and numbers in clear.
TEST(Dump, ShowsFieldsByTheirKind) {
  DAG name = newLocalName("a\tname");
  DAG big = Newint(-2000000000);
  DAG list = new2(LIST, newSequence({name, big, cons1, DAG()}));
  EXPECT_EQ(dumped(list, 2), "@: LIST length 2" + generation() + "\n  [1] @: EXPSEQ length 5" + generation() +
                                 "\n    [1] @: NAME \"a\\011name\"" + generation() +
                                 "\n      [1] 0\n      [2] @: EXPSEQ length 1" + "\n    [2] @: INTNEG -2000000000" +
                                 generation() + "\n    [3] 1\n    [4] 0\n");
  EXPECT_EQ(dumped(list, 0), "@: LIST length 2" + generation() + "\n  [1] @: EXPSEQ length 5\n");
  DAG local = new2(LOCAL, DAG(3));
  EXPECT_EQ(dumped(local, 1), "@: LOCAL 3" + generation() + "\n");
  DAG binary = newl2(3, BINARY);
  rawField(binary, 1) = 7;
  EXPECT_EQ(dumped(binary, 1), "@: BINARY length 3" + generation() + "\n  [1] raw 7 (0x7)\n  [2] raw 0 (0x0)\n");
}

TEST(Dump, ShowsFlagsAndLabels) {
  DAG x = simpl(new3(EQUATION, naminstall("dumped"), cons1));
  EXPECT_NE(dumped(x, 0).find(", simplified"), std::string::npos) << dumped(x, 0);
  ProtectFromGC(x);
  EXPECT_NE(dumped(x, 0).find(", protected"), std::string::npos) << dumped(x, 0);
  AllowGC(x);
  EXPECT_NE(dumped(naminstall("dumped"), 0).find(", deferred"), std::string::npos);
  EXPECT_NE(dumped(simpltab, 0).find(", raw keys"), std::string::npos);
}

// Any word at all: immediates, nothing, addresses outside, an object whose header is broken, and one with
// more fields than are shown.
TEST(Dump, TakesAnyWord) {
  EXPECT_EQ(dumped(DAG(), 2), "0\n");
  EXPECT_EQ(dumped(immediate(-5), 2), "-5\n");
  EXPECT_EQ(dumped(consm0, 2), "-0\n");
  EXPECT_EQ(dumped(DAG(8), 2), "0x8: not in the heap\n");
  DAG broken = newl2(4, EXPSEQ);
  Word header = headerWord(broken);
  headerWord(broken) = 0xfc000000u | 3;
  EXPECT_NE(dumped(broken, 1).find("no tag"), std::string::npos) << dumped(broken, 1);
  setHeader(broken, EXPSEQ, 0x3ffffff);
  EXPECT_NE(dumped(broken, 0).find("reaches out of the heap"), std::string::npos);
  headerWord(broken) = header;
  DAG wide = newl2(maxDumpFields + 11, EXPSEQ);
  EXPECT_NE(dumped(wide, 0).find("... 10 more\n"), std::string::npos);
}

}  // namespace
}  // namespace korel::test
