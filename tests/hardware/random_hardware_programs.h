#pragma once
// Random procedures of numbers, as text of the language and, from the object that they become, as text of C.

#include <random>
#include <string>

#include "store/dag.h"

namespace korel::test {

/// Makes expressions and procedures over the parameters a, b, c and the locals x, y, z, i, j, V.
class HardwarePrograms {
 public:
  explicit HardwarePrograms(unsigned seed) : random_(seed) {}

  /// An expression of the parameters alone.
  std::string expression(int depth) { return expressionOf(depth, false, false); }
  /// proc (a, b, c) ... end: assignments, branches, loops, elements of an array.
  std::string procedure();

 private:
  int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  std::string pick(std::initializer_list<const char*> list) {
    return list.begin()[below(static_cast<int>(list.size()))];
  }
  std::string expressionOf(int depth, bool withLocals, bool withElements);
  std::string conditionOf(int depth);
  std::string statements(int depth, int count, bool inLoop);
  std::string statement(int depth, bool inLoop);
  int loops_ = 0;

  std::mt19937 random_;
};

/// The procedure as a function of C: static double NAME(double p1, double p2, double p3).
std::string functionOfC(DAG procedure, const std::string& name);

}  // namespace korel::test
