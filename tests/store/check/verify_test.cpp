#include <gtest/gtest.h>
#include <string>

#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/integer/integer.h"
#include "store/check/verify.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel::test {
namespace {

/// What a check prints, with the addresses left out.
std::string complaint(DAG s, int depth = -1) {
  std::string shown = outputOf([&] { VerifyLevels(s, depth); });
  std::string result;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    if (shown.compare(i, 2, "0x") == 0) {
      i += 2;
      while (i < shown.size() && std::isxdigit(static_cast<unsigned char>(shown[i]))) ++i;
      result += "P";
      --i;
      continue;
    }
    if (shown[i] != '\n') result += shown[i];
  }
  return result;
}

DAG sequence(std::initializer_list<DAG> members) { return newSequence(members); }
DAG raw(Tag tag, std::initializer_list<DAG> fields) {
  DAG s = newl2(static_cast<Word>(fields.size() + 1), tag);
  Word i = 1;
  for (DAG x : fields) s[i++] = x;
  return s;
}
DAG word(std::int32_t n) { return DAG(static_cast<Word>(n)); }
DAG procWith(int field, DAG value, Tag tag = PROC) {
  DAG s = newl2(tag == PROC ? 9 : 10, tag);
  for (Word i = 1; i < lengthOf(s); ++i) s[i] = null;
  s[field] = value;
  return s;
}

struct Fault {
  DAG object;
  const char* message;
};

// Each kind of damage has its own words.
TEST(Verify, EachFaultHasItsMessage) {
  DAG x = naminstall("x"), s = strinstall("s");
  DAG zeroLength = newl2(2, LIST), badTag = newl2(2, LIST), badDigits = newl2(3, INTPOS);
  headerWord(zeroLength) = LIST;
  headerWord(badTag) = (Word{60} << 26) | 2;
  rawField(badDigits, 1) = 10000;
  rawField(badDigits, 2) = 1;
  const Fault faults[] = {
      {DAG(0x8), "s=P, address out of range or misaligned"},
      {badTag, "s=P, CASE_ID=60, invalid ID"},
      {zeroLength, "s=P, ID=LIST, LENGTH=0, invalid length"},
      {badDigits, "s=P, invalid INTPOS"},
      {raw(RANGE, {x}), "s=P, LENGTH=2, invalid RANGE length"},
      {raw(NOT, {x, x}), "s=P, LENGTH=3, invalid NOT length"},
      {raw(FUNCTION, {x}), "s=P, LENGTH=2, invalid FUNCTION length"},
      {raw(RATIONAL, {cons1, s}), "s=P, ID(s[2])=STRING, invalid RATIONAL"},
      {raw(SUM, {x, s}), "s=P, unexpected STRING component 2 of SUM"},
      {raw(LOCAL, {word(0)}), "s=P, s[1]=0, invalid LOCAL number"},
      {raw(PARAM, {word(-3)}), "s=P, s[1]=-3, invalid PARAM number"},
      {raw(LEXICAL, {word(0)}), "s=P, s[1]=0, invalid LEXICAL number"},
      {raw(COMPLEX, {consf1, cons1}), "s=P, COMPLEX type mismatch: ID(s[1])=FLOAT, ID(s[2])=INTPOS"},
      {procWith(1, sequence({cons1})), "s=P, s[1][1]=P invalid PROC parameter"},
      {procWith(3, sequence({cons1})), "s=P, s[3][1]=P invalid PROC option"},
      {procWith(6, sequence({x})), "s=P, s[6][1]=P invalid PROC description"},
      {procWith(9, cons1, MODDEF), "s=P, s[9]=P invalid MODDEF name"},
      {raw(ASSIGN, {cons1, x}), "s=P, unexpected INTPOS lhs of ASSIGN"},
      {raw(MEMBER, {x, s}), "s=P, unexpected STRING member of MEMBER"},
      {raw(TRY, {null, cons1, x}), "s=P, s[2]=P, unexpected INTPOS catch string"},
  };
  for (const Fault& fault : faults) EXPECT_EQ(complaint(fault.object), fault.message);
  // The heap must stay walkable for the collector.
  headerWord(zeroLength) = headerWord(badTag) = BINARY | 2;
}

// The stricter rules hold for simplified objects only.
TEST(Verify, SimplifiedObjectsAreHeldToMore) {
  DAG nested = sequence({naminstall("a"), simpl(sequence({naminstall("b"), naminstall("c")}))});
  EXPECT_EQ(complaint(nested), "");
  controlWord(nested) |= simplifiedBit;
  EXPECT_EQ(complaint(nested), "s=P, unexpected EXPSEQ body of EXPSEQ");
}

TEST(Verify, DepthBoundsTheWalk) {
  DAG bad = raw(LOCAL, {word(0)});
  DAG outer = raw(UNEVAL, {raw(UNEVAL, {bad})});
  EXPECT_EQ(complaint(outer, 0), "");
  EXPECT_EQ(complaint(outer, 1), "");
  EXPECT_EQ(complaint(outer, 2), "");
  EXPECT_NE(complaint(outer, 3), "");
  EXPECT_NE(complaint(outer, -1), "");
}

TEST(Verify, WholeKernelPasses) {
  EXPECT_EQ(outputOf([] { VerifyAll(); }), "");
  DAG deep = naminstall("x");
  for (int i = 0; i < 300000; ++i) deep = new2(UNEVAL, deep);
  EXPECT_TRUE(Verify(deep));
}

TEST(Verify, TagsHaveNames) {
  for (int tag = 1; tag <= tagCount; ++tag) {
    const char* name = DagIDToName(static_cast<Word>(tag));
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(DagNameToID(name), tag);
    EXPECT_EQ(DagIDToName(tagFromNumber(tag)), name);
  }
  EXPECT_EQ(DagIDToName(0), nullptr);
  EXPECT_EQ(DagIDToName(59), nullptr);
  EXPECT_EQ(errorOf([] { DagNameToID("NONSENSE"); }), "unknown data structure label NONSENSE");
}

TEST(RawObjects, GoThereAndBack) {
  EXPECT_EQ(say("disassemble(addressof(1));"), "2, 3");
  EXPECT_EQ(say("disassemble(addressof(1/2));"), "3, 3, 5");
  EXPECT_EQ(say("pointto(addressof(f(x)+1));"), "f(x)+1");
  EXPECT_EQ(say("pointto(assemble(20, addressof(u), addressof(v)));"), "u = v");
  EXPECT_EQ(say("assemble(55);"), "Error, invalid ID field in assemble");
  EXPECT_EQ(say("assemble(RTABLE);"), "Error, rtables cannot be built using assemble");
  EXPECT_EQ(say("assemble(\"x\");"), "Error, dagtag expected, but got x");
  EXPECT_EQ(say("assemble(LIST, y);"), "Error, integer expected, but got y");
  EXPECT_NE(say("assemble(1);").find("invalid INTNEG\nError, assembled object is invalid"), std::string::npos);
  EXPECT_EQ(say("pointto(2);"), "s=0x2, address out of range or misaligned\nError, object at address is invalid");
}

// ---- copies

TEST(CopyDAG, CopiesShareWhatIsSharedAndNothingElse) {
  DAG shared = new3(EXPSEQ, naminstall("a"), new2(LIST, null));
  DAG copy = CopyDAG(new3(EXPSEQ, shared, shared));
  EXPECT_NE(copy[1], shared);
  EXPECT_EQ(copy[1], copy[2]);
  EXPECT_EQ(copy[1][1], naminstall("a"));
  EXPECT_EQ(CopyDAG(immediate(5)), immediate(5));
  EXPECT_EQ(CopyDAG(raw(LOCAL, {word(0)})), DAG(2));
}

}  // namespace
}  // namespace korel::test
