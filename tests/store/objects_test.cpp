#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/standard_names.h"

namespace korel::test {
namespace {

constexpr Word labelMask = ~((Word{1} << generationShift) - 1);

DAG numbered(Word n) {
  DAG s = newl2(n, EXPSEQ);
  for (Word i = 1; i < n; ++i) s[i] = immediate(static_cast<std::int32_t>(i));
  return s;
}
std::string fields(DAG s) {
  std::string result;
  for (Word i = 1; i < lengthOf(s); ++i)
    result += (i > 1 ? " " : "") + std::to_string(s[i] ? immediateValue(s[i]) : -1);
  return result;
}

TEST(Objects, ReshapingKeepsTheRest) {
  DAG s = numbered(6);
  EXPECT_EQ(fields(copydel(s, 1, 2)), "1 4 5");
  EXPECT_EQ(fields(copysub(s, 1, 2)), "2 3");
  EXPECT_EQ(fields(space_insert(s, 2, 2)), "1 2 -1 -1 3 4 5");
  EXPECT_EQ(fields(space_insert(s, 5, 1)), "1 2 3 4 5 -1");
  EXPECT_EQ(fields(s), "1 2 3 4 5");
  DAG copy = CopyAlg(s);
  controlWord(s) |= simplifiedBit | protectedBit;
  EXPECT_EQ(controlWord(CopyAlg(s)), genpat);
  EXPECT_EQ(fields(enlarge(copy, 0)), "1 2 3 4 5");
  EXPECT_EQ(fields(enlarge(copy, 2)), "1 2 3 4 5 -1 -1");
  // The label is kept, of the flags only the protection.
  controlWord(s) = (Word{1} << generationShift) | simplifiedBit | protectedBit;
  DAG grown = enlarge(s, 3);
  EXPECT_EQ(controlWord(grown), (Word{1} << generationShift) | protectedBit);
  AllowGC(grown);
  shorten(grown, 9, 4);
  EXPECT_EQ(fields(grown), "1 2 3");
  controlWord(grown) = labelMask | simplifiedBit;
  shrinkn(grown, 1, 1);
  EXPECT_EQ(fields(grown), "1 3");
  EXPECT_EQ(controlWord(grown), genpat | simplifiedBit);
}

TEST(Objects, DoublesLieAtMultiplesOfEight) {
  for (int i = 0; i < 20; ++i) {
    DAG s = newDoubleAligned(2, HFLOAT);
    EXPECT_EQ((s.word + 4) % 8, 0u);
    EXPECT_EQ(headerWord(s), HFLOAT | 3u);
    newl2(static_cast<Word>(1 + i % 4), BINARY);  // moves the next block by an odd number of words
  }
  DAG x = NewHFloat(-1.5e300, false);
  EXPECT_EQ(hfloatValue(x), -1.5e300);
  EXPECT_EQ(rawField(x, 1), 0xfe41eb2d);  // most significant word first
  EXPECT_EQ(hfloatValue(CopyAlg(x)), -1.5e300);
  DAG first = NewHFloat(1, true), second = NewHFloat(2, true);
  EXPECT_EQ(first, second);
}

TEST(Objects, ImmediatesHaveTwoZeros) {
  EXPECT_EQ(consm0.word, 0x80000001u);
  EXPECT_EQ(immediateValue(consm0), 0);
  EXPECT_EQ(tagOf(consm0), INTNEG);
  EXPECT_EQ(tagOf(immediate(0)), INTPOS);
  DAG target = newl2(3, EXPSEQ);
  copy(target, immediate(-12345));
  EXPECT_EQ(headerWord(target), INTNEG | 3u);
  EXPECT_EQ(rawField(target, 1), 2345u);
}

// One object for one text; locals stand outside.
TEST(Names, TextsAreUnique) {
  EXPECT_EQ(naminstall("some name"), naminstall("some name"));
  EXPECT_NE(naminstall("x"), strinstall("x"));
  EXPECT_EQ(charinstall('x'), strinstall("x"));
  EXPECT_NE(newLocalName("fresh1"), newLocalName("fresh1"));
  EXPECT_EQ(srchname("fresh1"), notFound);
  EXPECT_NE(controlWord(naminstall("fresh2")) & deferredBit, 0u);
  EXPECT_EQ(controlWord(newLocalName("fresh3")) & deferredBit, 0u);
  for (const char* text : {"", "abc", "abcd", "abcdefg"}) {
    EXPECT_EQ(lengthOf(strinstall(text)), 4 + std::strlen(text) / 4);
    EXPECT_STREQ(textOf(strinstall(text)), text);
  }
  std::vector<DAG> names;
  for (int i = 0; i < 20000; ++i) names.push_back(naminstall(("n" + std::to_string(i)).c_str()));
  for (int i = 0; i < 20000; ++i) ASSERT_EQ(names[i], naminstall(("n" + std::to_string(i)).c_str()));
}

TEST(Hash, KeysAreThoseTold) {
  EXPECT_EQ(hashstring(""), 1u);
  EXPECT_EQ(hashstring("a"), 'a' + 1027u);
  EXPECT_EQ(hashstring("\xff"), 1027u - 1);
  std::mt19937 random(3);
  std::string longText;
  for (int n = 0; n < 200; ++n) {  // around the blocks that are hashed at once
    Word expected = 1;
    for (char c : longText) expected = 1027 * expected + static_cast<Word>(static_cast<signed char>(c));
    EXPECT_EQ(hashstring(longText), expected == 0 ? 1 : expected) << n;
    longText += static_cast<char>(1 + random() % 255);
  }
  DAG x = naminstall("x"), y = naminstall("y");
  EXPECT_EQ(hashalg(x), x.word);
  DAG list = new3(EXPSEQ, x, y);
  EXPECT_EQ(hashalg(list), y.word + 1027 * (x.word + 1027 * 27u));
  EXPECT_EQ(hashalg(new5(SUM, x, cons1, y, immediate(2))), hashalg(new5(SUM, y, immediate(2), x, cons1)));
  EXPECT_NE(hashalg(new5(SUM, x, cons1, y, immediate(2))), hashalg(new5(SUM, x, immediate(2), y, cons1)));
}

TEST(Hash, ChainsGrowBeforeTheirLastPairIsUsed) {
  DAG t = newhashtab(1);
  controlWord(t) |= tableBit;  // the keys are numbers
  EXPECT_EQ(search(5, t), notFound);
  hashinsert(5, cons1, t);
  hashinsert(7, cons1, t);
  EXPECT_EQ(lengthOf(t[1]), 7u);
  hashinsert(5, cons10, t);
  EXPECT_EQ(lengthOf(t[1]), 17u);
  EXPECT_EQ(pairValue(search(5, t)), cons1);
  EXPECT_EQ(pairValue(nextPair(nextPair(search(5, t)))), cons10);
  hashunique(7, cons10, t);
  EXPECT_EQ(hashcount(t), 3);
  EXPECT_EQ(pairValue(search(7, t)), cons10);
  EXPECT_EQ(hashremove(5, t), cons1);
  EXPECT_EQ(hashcount(t), 2);
  hashinsert(5, cons1, t);
  hashdelete(5, t);
  EXPECT_EQ(hashcount(t), 1);
  EXPECT_EQ(hashremove(5, t), DAG(notFound));
  EXPECT_EQ(search(5, t), notFound);
  clearhash(t, false);
  EXPECT_EQ(hashcount(t), 0);
  EXPECT_TRUE(t[1]);
}

// A table of many pairs against a map made beside it.
TEST(Hash, AgreesWithAMapOverRandomOperations) {
  std::mt19937 random(3);
  std::map<Word, DAG> model;
  DAG t = newhashtab(64);
  controlWord(t) |= tableBit;  // the keys are numbers
  for (int i = 0; i < 100000; ++i) {
    Word key = 1 + random() % 3000;
    DAG value = immediate(i);
    if (random() % 3 != 0) {
      hashunique(key, value, t);
      model[key] = value;
    } else if (random() % 2 == 0) {
      hashdelete(key, t);
      model.erase(key);
    } else {
      DAG removed = hashremove(key, t);
      EXPECT_EQ(removed, model.count(key) ? model[key] : DAG(notFound));
      model.erase(key);
    }
  }
  EXPECT_EQ(hashcount(t), static_cast<std::int64_t>(model.size()));
  for (auto [key, value] : model) ASSERT_EQ(pairValue(search(key, t)), value);
  DAG same = copyhashtab(t);
  for (Word i = 1; i < lengthOf(same); ++i)
    if (same[i]) controlWord(same[i]) |= tableBit;
  EXPECT_TRUE(hashEqualEntries(t, same));
  pairValue(search(model.begin()->first, same)) = null;
  EXPECT_FALSE(hashEqualEntries(t, same));
}

TEST(Constants, SharedObjectsHaveTheirValues) {
  EXPECT_EQ(lengthOf(null), 1u);
  EXPECT_EQ(simpl(new1(EXPSEQ)), null);
  EXPECT_EQ(cons[139], immediate(139));
  EXPECT_EQ(consm[139], immediate(-140));
  const std::pair<DAG, const char*> rows[] = {
      {consbb, "100000000"},
      {cons_maxfloatexp, "2147483646"},
      {cons_minfloatexp, "-2147483646"},
      {emptyset, "{}"},
      {emptylist, "[]"},
      {consf0, "0."},
      {consfm0, "-0."},
      {consf1, "1.0"},
      {consfm1, "-1.0"},
      {consh, "1/2"},
      {sqrtm1, "I"},
      {consfinf, "Float(infinity)"},
      {consfminf, "Float(-infinity)"},
      {consminf, "-infinity"},
      {consfNaN, "Float(undefined)"},
      {order1, "O(1)"},
      {DefTestzero, "proc (O) evalb(Normalizer(O) = 0) end proc"},
  };
  for (auto [object, shown] : rows) EXPECT_EQ(text(object), shown);
  EXPECT_EQ(lengthOf(sqrtm1), 2u);
  EXPECT_EQ(consfNaN[2], ini("undefined"));
  const std::set<std::string_view> remembering = {"series", "evalf",  "expand",   "diff",
                                                  "normal", "divide", "frontend", "readlib"};
  for (int k = firstBuiltin; k <= lastBuiltin; ++k) {
    ASSERT_EQ(tagOf(ininame[k][1]), PROC);
    ASSERT_EQ(ininame[k][1][5], immediate(k));
    bool remembers = lengthOf(ininame[k][1][3]) == 3;
    EXPECT_EQ(remembers, remembering.count(inistrings[k]) == 1) << inistrings[k];
  }
  EXPECT_EQ(ini("libname").word, ininame[34].word);
}

}  // namespace
}  // namespace korel::test
