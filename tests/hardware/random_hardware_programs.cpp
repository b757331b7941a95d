#include <cstdio>

#include "hardware/interpreter.h"
#include "hardware/random_hardware_programs.h"
#include "store/constants.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel::test {

// ---- texts of the language

std::string HardwarePrograms::expressionOf(int depth, bool withLocals, bool withElements) {
  if (depth == 0 || below(6) == 0) {
    switch (below(withLocals ? 4 : 2)) {
      case 0: return pick({"1", "2", "0.5", "1/3", "(-3)", "0.1", "7", "1e-3"});
      case 1: return pick({"a", "b", "c"});
      case 2: return withElements ? pick({"V[1]", "V[i]", "V[3]", "V[j]"}) : pick({"x", "y", "z"});
      default: return pick({"x", "y", "z", "i", "j"});
    }
  }
  auto part = [&] { return expressionOf(depth - 1, withLocals, withElements); };
  switch (below(11)) {
    case 0: case 1: return "(" + part() + " + " + part() + ")";
    case 2: return "(" + part() + " - " + part() + ")";
    case 3: case 4: return "(" + part() + ")*(" + part() + ")";
    case 5: return "(" + part() + ")/(2 + (" + part() + ")^2)";
    case 6: return "(" + part() + ")^" + pick({"2", "3", "5"});
    case 7: return pick({"sin", "cos", "exp", "arctan"}) + "(" + part() + ")";
    case 8: return pick({"abs", "floor", "trunc", "ceil", "frac"}) + "(" + part() + ")";
    case 9: return "sqrt(1 + (" + part() + ")^2)";
    default: return "(" + part() + ")*" + pick({"1/7", "2.5", "(-1)"});
  }
}

std::string HardwarePrograms::conditionOf(int depth) {
  if (depth > 0 && below(3) == 0)
    return "(" + conditionOf(depth - 1) + pick({" and ", " or "}) + conditionOf(depth - 1) + ")";
  if (depth > 0 && below(6) == 0) return "not (" + conditionOf(depth - 1) + ")";
  return expressionOf(1, true, false) + pick({" < ", " <= ", " = ", " <> "}) + expressionOf(1, true, false);
}

std::string HardwarePrograms::statement(int depth, bool inLoop) {
  switch (below(depth > 0 ? 9 : 5)) {
    case 0: return "V[" + pick({"1", "2", "i", "j"}) + "] := " + expressionOf(2, true, true);
    case 1: case 2: case 3: return pick({"x", "y", "z"}) + " := " + expressionOf(2, true, true);
    case 4:
      return inLoop && below(3) == 0 ? "if " + conditionOf(0) + " then " + pick({"break", "next"}) + " end if"
                                     : pick({"x", "a"}) + " := " + expressionOf(1, true, true);
    case 5: case 6:
      return "if " + conditionOf(2) + " then " + statements(depth - 1, 2, inLoop) +
             (below(2) == 0 ? " elif " + conditionOf(1) + " then " + statements(depth - 1, 1, inLoop) : "") +
             (below(2) == 0 ? " else " + statements(depth - 1, 1, inLoop) : "") + " end if";
    default: {
      if (loops_ == 2) return "y := y + 1";
      const std::string variable = loops_ == 0 ? "i" : "j";
      ++loops_;
      std::string text =
          "for " + variable +
          pick({" from 1 to 5", " from 4 by -1 to 1", " to 3", " from 1 by 2 to 5", " from 5 by -2 to 2"}) +
          (below(3) == 0 ? " while x < 20" : "") + " do " + statements(depth - 1, 3, true) + " end do";
      --loops_;
      // Behind a loop its variable is out of the array's bounds.
      return text + "; " + variable + " := 2";
    }
  }
}

std::string HardwarePrograms::statements(int depth, int count, bool inLoop) {
  std::string text;
  for (int k = 0; k < count; ++k) text += (k == 0 ? "" : "; ") + statement(depth, inLoop);
  return text;
}

std::string HardwarePrograms::procedure() {
  loops_ = 0;
  return "proc(a, b, c) local x, y, z, i, j, V; V := hfarray(1 .. 5); x := a; y := b/3; z := 1; i := 1; j := 2; " +
         statements(3, 4, false) + "; " + (below(4) == 0 ? "" : "x + y + z + V[1] + V[2]") + " end";
}

// ---- texts of C

namespace {

std::string expressionC(DAG x);

std::string literal(double v) {
  char text[64];
  std::snprintf(text, sizeof text, "(%a)", v);
  return text;
}

std::string sumC(DAG x) {
  std::string text;
  for (Word i = 1; i < lengthOf(x); i += 2) {
    std::string term = expressionC(x[i]);
    if (x[i + 1] != cons1) term = "(" + term + " * " + expressionC(x[i + 1]) + ")";
    text = i == 1 ? term : "(" + text + " + " + term + ")";
  }
  return text;
}

std::string productC(DAG x) {
  std::string text = "1.0";
  for (Word i = 1; i < lengthOf(x); i += 2) {
    const std::string base = expressionC(x[i]);
    if (x[i + 1] == cons1) text = "(" + text + " * " + base + ")";
    else if (x[i + 1] == consm1) text = "(" + text + " / " + base + ")";
    else text = "(" + text + " * whole(" + base + ", " + std::to_string(immediateValue(x[i + 1])) + "))";
  }
  return text;
}

std::string conditionC(DAG x) {
  if (x == ini("true")) return "1";
  switch (tagOf(x)) {
    case NOT: return "!(" + conditionC(x[1]) + ")";
    case AND: return "(" + conditionC(x[1]) + " && " + conditionC(x[2]) + ")";
    case OR: return "(" + conditionC(x[1]) + " || " + conditionC(x[2]) + ")";
    case EQUATION: return "(" + expressionC(x[1]) + " == " + expressionC(x[2]) + ")";
    case INEQUAT: return "(" + expressionC(x[1]) + " != " + expressionC(x[2]) + ")";
    case LESSEQ: return "(" + expressionC(x[1]) + " <= " + expressionC(x[2]) + ")";
    case LESSTHAN: return "(" + expressionC(x[1]) + " < " + expressionC(x[2]) + ")";
    default: return "(" + expressionC(x) + " != 0)";
  }
}

std::string functionC(DAG x) {
  const std::string name = textOf(x[1]);
  if (name == "hfarray") return "0.0";
  const std::string argument = expressionC(x[2][1]);
  if (name == "abs") return "fabs(" + argument + ")";
  if (name == "arctan") return "atan(" + argument + ")";
  if (name == "frac") return "fraction(" + argument + ")";
  return name + "(" + argument + ")";
}

std::string expressionC(DAG x) {
  if (isImmediate(x)) return literal(immediateValue(x));
  switch (tagOf(x)) {
    case LOCAL: return "l" + std::to_string(rawField(x, 1));
    case PARAM: return "p" + std::to_string(rawField(x, 1));
    case SUM: return sumC(x);
    case PROD: return productC(x);
    case TABLEREF: return "V[(long)(" + expressionC(x[2][1]) + ") - 1]";
    case FUNCTION: return functionC(x);
    case EXPSEQ: return expressionC(x[1]);
    default: return literal(hfeval(x));
  }
}

std::string statementC(DAG s);
std::string sequenceC(DAG body) {
  if (!isTag(body, STATSEQ)) return statementC(body);
  std::string text;
  for (Word i = 1; i < lengthOf(body); ++i) text += statementC(body[i]);
  return text;
}

// Each statement leaves its value in `value`.
std::string statementC(DAG s) {
  if (isImmediate(s)) return "value = " + expressionC(s) + ";\n";
  switch (tagOf(s)) {
    case ASSIGN: return "value = " + expressionC(s[1]) + " = " + expressionC(s[2]) + ";\n";
    case BREAK: return "break;\n";
    case NEXT: return "continue;\n";
    case STATSEQ: return sequenceC(s);
    case IF: {
      std::string text;
      const Word n = lengthOf(s);
      for (Word i = 1; i + 1 < n; i += 2) text += "if (" + conditionC(s[i]) + ") {\n" + sequenceC(s[i + 1]) + "} else ";
      return text + "{\n" + (n % 2 == 0 ? sequenceC(s[n - 1]) : "value = 0;\n") + "}\n";
    }
    case FOR: {
      const std::string v = expressionC(s[loopVariable]);
      const bool falls = immediateValue(s[loopBy]) < 0;
      return "{ double last = 0;\nfor (" + v + " = " + expressionC(s[loopFrom]) + "; " + v + (falls ? " >= " : " <= ") +
             expressionC(s[loopTo]) + " && " + conditionC(s[loopWhile]) + "; " + v + " += " + expressionC(s[loopBy]) +
             ") {\n" + sequenceC(s[loopBody]) + "last = value;\n}\nvalue = last; }\n";
    }
    default: return "value = " + expressionC(s) + ";\n";
  }
}

}  // namespace

std::string functionOfC(DAG procedure, const std::string& name) {
  std::string text = "static double " + name + "(double p1, double p2, double p3) {\ndouble V[5] = {0}, value = 0";
  for (Word k = 1; k <= memberCount(localsOf(procedure)); ++k) text += ", l" + std::to_string(k) + " = 0";
  return text + ";\n" + sequenceC(bodyOf(procedure)) + "return value;\n}\n";
}

}  // namespace korel::test
