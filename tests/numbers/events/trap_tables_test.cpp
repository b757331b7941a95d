// Each row of the tables for infinities, undefined values and zeros: the value, and the event it raises.

#include <gtest/gtest.h>
#include <string>

#include "eval/simplify/simplify.h"
#include "kernel_fixture.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/standard_names.h"

namespace korel::test {
namespace {

/// What an operation gives with every event answered by its default: value and raised events, or what
/// error it raises.
std::string outcome(DAG (*operation)(DAG, DAG), DAG a, DAG b) {
  for (int code = 1; code <= numericEventCount; ++code) {
    SetNumericStatusFlag(code, 0);
    SetNumericEventHandler(code, ini("default"));
  }
  std::string result;
  std::string error = errorOf([&] {
    DAG value = operation(a, b);
    result = value ? text(simpl(value)) : "none";
  });
  if (!error.empty()) result = error;
  for (int code = 1; code <= numericEventCount; ++code)
    if (GetNumericStatusFlag(code) != 0) result += " !" + std::to_string(code);
  return result;
}

struct Row {
  DAG a, b;
  const char* outcome;
};
template <std::size_t N>
void expectRows(DAG (*operation)(DAG, DAG), const Row (&rows)[N]) {
  for (const Row& row : rows)
    EXPECT_EQ(outcome(operation, row.a, row.b), row.outcome) << text(row.a) << ", " << text(row.b);
}

DAG two() { return simpl(newFLOAT(immediate(2), cons0)); }
DAG minusTwo() { return simpl(newFLOAT(immediate(-2), cons0)); }

TEST(TrapTables, Sums) {
  const Row rows[] = {
      {consfinf, consfinf, "Float(infinity)"},
      {consfminf, consfminf, "Float(-infinity)"},
      {consfinf, consfminf, "Float(undefined) !1"},
      {consfinf, immediate(3), "Float(infinity)"},
      {two(), consfminf, "Float(-infinity)"},
      {consfinf, ini("infinity"), "Float(infinity)"},
      {ini("undefined"), two(), "Float(undefined)"},
      {consfNaN, consfinf, "Float(undefined)"},
      {ini("infinity"), cons1, "none"},
  };
  expectRows(TrapFSUM, rows);
}

TEST(TrapTables, Products) {
  const Row rows[] = {
      {consfinf, consfinf, "Float(infinity)"},       {consfinf, consfminf, "Float(-infinity)"},
      {consfminf, consfminf, "Float(infinity)"},     {consfinf, consf0, "Float(undefined) !1"},
      {cons0, consfminf, "Float(undefined) !1"},     {consfinf, minusTwo(), "Float(-infinity)"},
      {immediate(3), consfminf, "Float(-infinity)"}, {immediate(-3), consfminf, "Float(infinity)"},
      {consfNaN, two(), "Float(undefined)"},
  };
  expectRows(TrapFPROD, rows);
}

TEST(TrapTables, Quotients) {
  const Row rows[] = {
      {two(), cons0, "Float(infinity) !2"},
      {ini("undefined"), cons0, "undefined"},
      {immediate(3), ini("infinity"), "0"},
      {consfinf, consfminf, "Float(undefined) !1"},
      {consfinf, consf0, "Float(infinity) !2"},
      {consfinf, consfm0, "Float(infinity) !2"},
      {consfinf, consm0, "Float(-infinity) !2"},
      {consfinf, two(), "Float(infinity) !1"},
      {consfinf, minusTwo(), "Float(-infinity) !1"},
      {consf0, consfinf, "0. !1"},
      {consf0, consfminf, "-0. !1"},
      {consf0, consf0, "Float(undefined) !1"},
      {two(), consfinf, "0."},
      {two(), consfminf, "-0."},
      {minusTwo(), consfinf, "-0."},
      {two(), consf0, "Float(infinity) !2"},
      {minusTwo(), consf0, "Float(-infinity) !2"},
      {two(), consfm0, "Float(-infinity) !2"},
      {two(), two(), "none"},
  };
  expectRows(TrapFDIV, rows);
}

TEST(TrapTables, Powers) {
  DAG half = consh;
  const Row rows[] = {
      {ini("infinity"), cons0, "1 !1"},
      {ini("infinity"), immediate(-2), "0"},
      {consfinf, cons0, "Float(undefined) !1"},
      {consfinf, immediate(-1), "0."},
      {consfinf, immediate(3), "Float(infinity)"},
      {consfminf, immediate(3), "Float(-infinity)"},
      {consfminf, immediate(2), "Float(infinity)"},
      {consfminf, immediate(-3), "-0."},
      {consfminf, immediate(-2), "0."},
      {consfminf, half, "Float(undefined) !1"},
      {consfm0, immediate(3), "-0."},
      {consfm0, immediate(2), "0."},
      {consfm0, immediate(-3), "Float(-infinity) !2"},
      {consfm0, immediate(-2), "Float(infinity) !2"},
      {consfm0, half, "Float(undefined) !1"},
      {consf0, consfinf, "Float(undefined) !1"},
      {consf0, cons0, "Float(undefined) !1"},
      {consf0, immediate(-2), "Float(infinity) !2"},
      {consf0, immediate(2), "0."},
      {two(), consf0, "1"},
      {minusTwo(), consfinf, "Float(undefined) !1"},
      {two(), consfinf, "Float(infinity)"},
      {simpl(newFLOAT(immediate(5), consm1)), consfinf, "Float(infinity)"},
      {two(), consfminf, "0."},
  };
  expectRows(TrapFPOWER, rows);
}

// Handlers, flags and their messages, through the language.
TEST(NumericEvents, HandlersAnswerAndFlagsStay) {
  const char* rows[][2] = {
      {"NumericStatus(false):", ""},
      {"NumericEventHandler(default):", ""},
      {"0.*Float(infinity);", "Float(undefined)"},
      {"NumericStatus(invalid_operation), NumericStatus(overflow);", "true, false"},
      {"NumericStatus(invalid_operation = false);", "invalid_operation = true"},
      {"NumericEventHandler(invalid_operation = exception);", "invalid_operation = default"},
      {"Float(infinity) - Float(infinity);", "Error, numeric exception: invalid operation"},
      {"NumericEventHandler(invalid_operation = proc(o, operands, d) d end);", "invalid_operation = exception"},
      {"NumericEventHandler(invalid_operation = default):", ""},
      {"eh := proc() NumericEventHandler(invalid_operation = exception); NumericEventHandler(invalid_operation) end:",
       ""},
      {"eh();", "exception"},
      {"NumericEventHandler(invalid_operation);", "default"},
      {"NumericEventHandler(3);", "Error, event name or name=action expected"},
      {"NumericEventHandler(overflow = 3);", "Error, procedure, `default`, or `exception` expected for event handler"},
      {"NumericEventHandler(nonsense);", "Error, invalid event name: `nonsense`"},
      {"NumericStatus(overflow = 3);", "Error, true or false expected for event value"},
      {"NumericStatus(3);", "Error, event name or name=value expected"},
      {"NumericEvent(1, 2);", "Error, event name, operation, operands, and default expected"},
      {"NumericEvent(overflow, `+`, 3, 4);", "Error, list expected for operands"},
      {"NumericEvent(overflow, `+`, [1, 2], 4);", "4"},
      {"NumericStatus(overflow);", "true"},
      {"NumericStatus(false):", ""},
  };
  for (auto [statement, shown] : rows) EXPECT_EQ(say(statement), shown) << statement;
}

TEST(NumericEvents, DirectedFunctions) {
  const char* rows[][2] = {
      {"Unordered(1, 2), Unordered(undefined, 2), Unordered(1 + I, 2), Unordered(x, 2);",
       "false, true, true, Unordered(x,2)"},
      {"OrderedNE(1, 2), OrderedNE(2, 2.), OrderedNE(undefined, 1);", "true, false, false"},
      {"CopySign(2., -1), CopySign(-2, 1), CopySign(2, -0.), CopySign(2, x);", "-2., 2, -2, CopySign(2,x)"},
      {"NumericClass(infinity);", "And(extended_rational,positive,infinity)"},
      {"NumericClass(undefined);", "And(extended_rational,undefined)"},
      {"NumericClass(Float(-infinity));", "And(sfloat,negative,infinity)"},
      {"NumericClass(Float(undefined));", "And(sfloat,undefined)"},
      {"NextAfter(1.5, 2);", "1.500000001"},
      {"NextAfter(1.5, 1);", "1.499999999"},
      {"NextAfter(1.5, 1.5);", "1.500000000"},
      {"Scale10(1.5, 3), Scale2(1.5, 2);", ".15e4, 6.0"},
      {"SFloatMantissa(1.25), SFloatExponent(1.25);", "125, -2"},
      {"Default0(), DefaultOverflow(1), DefaultUnderflow(-1);", "0., Float(infinity), -0."},
      {"frem(7.5, 2), frem(5, 3);", "-.5, -1."},
      {"abs(); ", "Error, wrong number (or type) of parameters in function abs"},
      {"igcd(1, \"a\");", "Error, wrong number (or type) of parameters in function igcd"},
      {"iquo(7, 2, 'rr'), rr, irem(-7, 2), isqrt(17), icontent(6*x + 9*y);", "3, 1, -1, 4, 3"},
      {"Re(2 + 3*I), Im(2 + 3*I), conjugate(2 + 3*I), abs(3 + 4*I);", "2, 3, 2-3*I, 5"},
  };
  for (auto [statement, shown] : rows) EXPECT_EQ(say(statement), shown) << statement;
}

}  // namespace
}  // namespace korel::test
