#pragma once
// Random expressions of every kind, as recipes that RapidCheck can shrink.

#include <ostream>
#include <rapidcheck.h>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/integer/integer.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/objects.h"

namespace korel::test {

// A recipe for an expression, which RapidCheck can shrink: an operator and its operands.
struct Recipe {
  int kind;
  int number;
  std::vector<Recipe> operands;
};

// Kinds beyond these have no text that reads back as the same object.
constexpr int leafKinds = 8, innerKinds = 14;
constexpr int allInnerKinds = 24;

inline DAG leaf(const Recipe& r) {
  static const char* const names[] = {"x", "y", "z", "a b", "if", "f", "_g1", "a`b"};
  int magnitude = r.number;
  switch (r.kind % leafKinds) {
    case 0: return naminstall(names[std::abs(magnitude) % 8]);
    case 1: return Newint(magnitude);
    case 2: return magnitude == 0 ? cons0 : new3(RATIONAL, Newint(magnitude % 50 * 7 + 1), Newint(7));
    case 3: return new3(FLOAT, Newint(magnitude), Newint(magnitude % 7 - 3));
    case 4: return strinstall(std::string("s\"\n\\" + std::to_string(magnitude)).c_str());
    case 5: return new2(COMPLEX, Newint(magnitude == 0 ? 1 : magnitude % 3 == 0 ? 1 : magnitude));
    case 6: return new3(COMPLEX, Newint(magnitude % 5 == 0 ? 2 : magnitude), Newint(magnitude % 4 == 0 ? -1 : 3));
    default: return NewInteger(std::int64_t{magnitude} * 1000003);
  }
}

inline DAG build(const Recipe& r) {
  if (r.operands.empty()) return leaf(r);
  std::vector<DAG> parts;
  for (const Recipe& operand : r.operands) parts.push_back(build(operand));
  DAG a = parts[0], b = parts[parts.size() - 1];
  auto sequence = [&] {
    DAG s = newl2(static_cast<Word>(parts.size() + 1), EXPSEQ);
    for (std::size_t i = 0; i < parts.size(); ++i) s[static_cast<std::int64_t>(i) + 1] = parts[i];
    return s;
  };
  auto inPairs = [&](Tag tag, auto second) {
    DAG s = newl2(static_cast<Word>(2 * parts.size() + 1), tag);
    for (std::size_t i = 0; i < parts.size(); ++i) {
      s[static_cast<std::int64_t>(2 * i + 1)] = parts[i];
      s[static_cast<std::int64_t>(2 * i + 2)] = second(i);
    }
    return s;
  };
  switch (r.kind) {
    case 0: return inPairs(SUM, [&](std::size_t i) { return i % 2 == 0 ? cons1 : consm1; });
    case 1:
      return inPairs(SUM, [&](std::size_t i) {
        return Newint(r.number % 5 - 2 + static_cast<int>(i) * 3 == 0 ? 1 : r.number % 5 + 3);
      });
    case 2: return inPairs(PROD, [&](std::size_t i) { return i % 2 == 0 ? cons1 : consm1; });
    case 3: return inPairs(PROD, [&](std::size_t) { return Newint(r.number % 4 + 1); });
    case 4: return new3(POWER, a, b);
    case 5: return newCall(naminstall("f"), {sequence()});
    case 6: return new2(LIST, sequence());
    case 7: return new3(EQUATION, a, b);
    case 8: return new3(RANGE, a, b);
    case 9: return newCall(naminstall("."), {a, b});
    case 10: return new2(UNEVAL, a);
    case 11: return new3(TABLEREF, naminstall("t"), sequence());
    case 12: return new3(LESSTHAN, a, b);
    case 13: return newCall(naminstall("g h"), {a});
    case 14: return new2(SET, sequence());
    case 15: return new3(DCOLON, a, b);
    case 16: return new3(CATENATE, naminstall("c"), new2(LIST, sequence()));
    case 17: return new3(r.number % 2 == 0 ? INEQUAT : LESSEQ, a, b);
    case 18: return new3(AND, new3(EQUATION, a, b), naminstall("p"));
    case 19: return new3(OR, new2(NOT, new3(EQUATION, a, b)), naminstall("p"));
    case 20: return new3(MEMBER, naminstall("m"), naminstall("e"));
    case 21: {
      // Coefficients from the second place on, exponents rising by one.
      DAG s = newl3(static_cast<Word>(2 * parts.size() + 2), SERIES, naminstall("x"));
      for (std::size_t i = 0; i < parts.size(); ++i) {
        s[static_cast<std::int64_t>(2 * i + 2)] = parts[i];
        rawField(s, static_cast<std::int64_t>(2 * i + 3)) = static_cast<Word>(i) + 1;
      }
      return s;
    }
    case 22: {
      DAG table = new4(TABLE, null, ini("false"), newhashtab(4));
      for (std::size_t i = 0; i < parts.size(); ++i) {
        DAG key = immediate(static_cast<int>(i));
        hashunique(key.word, simpl(parts[i]), table[3]);
      }
      return table;
    }
    default: {
      DAG polynomial = newl4(6, ZPPOLY, naminstall("z"), immediate(7));
      for (int i = 3; i < 6; ++i) rawField(polynomial, i) = static_cast<Word>(1 + (r.number + 20 + i) % 6);
      return polynomial;
    }
  }
}

inline rc::Gen<Recipe> recipes(int depth, int kinds = innerKinds) {
  auto leaves = rc::gen::map(rc::gen::pair(rc::gen::inRange(0, leafKinds), rc::gen::inRange(-99, 100)),
                             [](std::pair<int, int> p) {
                               return Recipe{p.first, p.second, {}};
                             });
  if (depth == 0) return leaves;
  auto inner = rc::gen::map(
      rc::gen::tuple(
          rc::gen::inRange(0, kinds), rc::gen::inRange(-9, 10),
          rc::gen::resize(3, rc::gen::nonEmpty(rc::gen::container<std::vector<Recipe>>(recipes(depth - 1, kinds))))),
      [](std::tuple<int, int, std::vector<Recipe>> t) {
        return Recipe{std::get<0>(t), std::get<1>(t), std::get<2>(t)};
      });
  return rc::gen::oneOf(leaves, inner, inner);
}

// How RapidCheck shows a counterexample.
inline void showValue(const Recipe& r, std::ostream& out) { out << text(build(r)); }

// Simplification may refuse an operand (a division by zero, a list in a sum): such a recipe has no
// simplified form and says nothing.
inline bool hasSimplifiedForm(const Recipe& r, DAG* result) {
  return errorOf([&] { *result = simpl(build(r)); }).empty();
}

}  // namespace korel::test
