#pragma once
// The state of one compilation, shared by its files: expressions, conditions, statements.

#include <cstdint>
#include <vector>

#include "hardware/program.h"
#include "store/dag.h"

namespace korel {

/// A place in the code that jumps refer to before it is known.
using Label = int;

class Compiler {
 public:
  /// `numeric` has a bit for each parameter that an earlier pass has found to be used as a number.
  Compiler(DAG procedure, std::uint32_t numeric);

  bool compile();  // false: what the plain walk alone can run
  std::uint32_t numericParameters() const { return numericUses_; }
  Program* program() const;

 private:
  // ---- statements (compile_statements.cpp)

  /// Code for `s`. With `into` >= 0 its value is left in that register.
  void statement(DAG s, int into);
  void sequence(DAG body, int into);
  void assignment(DAG s, int into);
  void assignElement(DAG s, DAG target, int into);
  void branch(DAG s, int into);
  void loop(DAG s, int into);
  void returnStatement(DAG operand);
  void expressionStatement(DAG s, int into);
  struct Bounds {
    int variable, by, to;  // `to` is -1 without a bound
    int direction;         // 1, -1, or 0 when only the run can tell
  };
  Bounds loopBounds(DAG s);
  void leaveWhenPast(const Bounds& bounds, Label end);
  void nextRound(const Bounds& bounds, Label start);

  // ---- conditions (compile_conditions.cpp)

  /// Jumps to `label` when the truth of `x` is `sense`.
  void condition(DAG x, bool sense, Label label);
  void junction(DAG x, bool sense, Label label);
  void relation(DAG x, bool sense, Label label);
  void typeTest(DAG x, DAG operand, DAG type, bool sense, Label label);
  void constantCondition(bool value, bool sense, Label label);

  // ---- expressions (compile_expressions.cpp)

  /// Code for `x`; gives the register of its value: `into` if that is >= 0, else any.
  int value(DAG x, int into = -1);
  /// The same for a number.
  int number(DAG x, int into = -1);
  int sum(DAG x, int into);
  int product(DAG x, int into);
  int factor(DAG base, DAG exponent, int into);
  int truthValue(DAG x, int into);
  int element(DAG x, int into);
  int call(DAG x, int into);
  int functionOfNumbers(const struct HardwareFunction& f, DAG x, int into);
  int choice(DAG x, int into);
  int userCall(DAG x, int into);
  struct Fold {
    double start;
    Op step;
  };
  bool isFold(DAG x, Fold& fold) const;
  int foldOverRange(DAG x, Fold fold, int into);
  int evaluate(DAG x, int into);
  /// What an access to an element needs: the array, its view, and the registers of the indices.
  struct Place {
    int base, view, first, second;
    Word rank;
  };
  Place place(DAG reference);

  bool mayBeReference(DAG x) const;
  bool cannotFail(DAG x) const;

  // ---- registers

  int parameter(DAG param) const { return static_cast<int>(rawField(param, 1)) - 1; }
  int local(DAG x) const { return parameters_ + static_cast<int>(rawField(x, 1)) - 1; }
  /// The register of a parameter or local, or -1.
  int variable(DAG x) const;
  int constant(double v);
  int temporary();
  int target(int into) { return into >= 0 ? into : temporary(); }
  /// `from` in the register `into` if that is asked for.
  int moved(int from, int into);
  bool isConstant(int reg) const { return reg >= constantBase; }

  // ---- code

  Instruction& emit(Op op, int a = 0, int b = 0, int c = 0);
  void emitJump(Op op, Label label, int a = 0, int b = 0, int c = 0);
  Label newLabel();
  void place(Label label);
  void refuse() { refused_ = true; }

  void survey(DAG x, int depth);
  void findReferences();
  bool noteReferences(DAG x);

  // Constants get their registers behind all others when their count is known; until then they are numbered from here.
  static constexpr int constantBase = 20000;
  static constexpr int deepest = 200;
  static constexpr Word maxIndices = 63;

  DAG procedure_;
  int parameters_ = 0, locals_ = 0;
  int used_ = 0, most_ = 0;  // registers in use, and at most
  int depth_ = 0;
  bool refused_ = false;
  std::uint32_t knownNumeric_;  // parameters that hold numbers when the code runs
  std::uint32_t numericUses_ = 0;
  std::vector<bool> holdsReference_;  // by register of a variable: may be assigned one
  std::vector<Instruction> code_;
  std::vector<double> constants_;
  std::vector<CallSite> sites_;
  std::vector<int> labels_;  // place of each, or -1
  struct Jump {
    int at;
    Label label;
  };
  std::vector<Jump> jumps_;
  struct View {
    int reg;
    Word rank;
  };
  std::vector<View> views_;
  struct Loop {
    Label next, end;
  };
  std::vector<Loop> loops_;
  int viewOf(int reg, Word rank);
  int returnCalls_ = 0, returnsCompiled_ = 0;  // calls RETURN(x), all of which must be statements

};

}  // namespace korel
