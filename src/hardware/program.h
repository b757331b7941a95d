#pragma once
// Compiled procedures: code for a machine whose registers are doubles.
//
// An activation has one row of registers: the parameters that the code reads, the locals, the constants, and what is
// computed on the way. Every operand is a register, so that an instruction is an operation, its registers, and a
// target, a function or an object. Expressions that need more than numbers stay objects, which the plain walk
// evaluates in the activation's frame.
//
// Where the code indexes the array in a register, a view keeps where its elements lie: as long as the register
// holds the same array, an access takes a comparison and the bounds.

#include <cstdint>

#include "hardware/hardware_frame.h"
#include "store/dag.h"

namespace korel {

enum class Op : std::uint16_t {
  move,           // a := b
  add,            // a := b + c
  subtract,       // a := b - c
  multiply,       // a := b * c
  divide,         // a := b / c; error for c = 0: "division by zero"
  square,         // a := b^2
  wholePower,     // a := b^d, 3 <= d
  power,          // a := b^c
  squareRoot,     // a := sqrt(b)
  apply1,         // a := one(b)
  apply2,         // a := two(b, c)
  checkNumber,    // error for a reference in a: "non-numeric expression in evalhf"
  evaluate,       // a := value of the object
  evaluateTruth,  // a := truth of the object
  jump,
  jumpIfLess,
  jumpUnlessLess,
  jumpIfLessEqual,
  jumpUnlessLessEqual,
  jumpIfEqual,
  jumpUnlessEqual,  // of a and b
  jumpIfTrue,
  jumpUnlessTrue,  // a is 1 or 0, else an error
  jumpIfZero,
  jumpUnlessZero,  // a is 1 or 0
  test,            // a := test(b)
  leaveLoop,       // leaves when a is past the bound c in the direction of b
  nextUp,
  nextDown,
  nextEither,
  nextUnbounded,  // a := a + b; the next round unless it's past c
  view,           // errors for an a that is no array of `c` dimensions; view d
  load1,
  load2,  // a := b[c], b[c, e] by view d
  store1,
  store2,     // b[c] := a, b[c, e] := a
  loadMany,   // a := b[c, ...], e indices from register c on
  storeMany,  // b[c, ...] := a
  resolve,    // a := the procedure of call site d; when the call is none of a procedure, b := its value, and a jump
  call,       // a := the procedure in b on e arguments from register c on
  raise,      // the error statement with the arguments `object`
  strayBreak,
  strayNext,
  leave,  // the value is a
};

struct Instruction {
  Op op;
  std::uint16_t a = 0, b = 0, c = 0;
  struct Tail {
    std::uint16_t d, e;
    std::int32_t target;
  };
  union {
    Tail tail;
    double (*one)(double);
    double (*two)(double, double);
    bool (*test)(double);
    DAG object;
  };
  Instruction(Op o, int a_, int b_, int c_)
      : op(o),
        a(static_cast<std::uint16_t>(a_)),
        b(static_cast<std::uint16_t>(b_)),
        c(static_cast<std::uint16_t>(c_)),
        tail{} {}
};

struct CompiledProcedure;

/// A call of a name or variable, and what its procedure was the last time.
struct CallSite {
  DAG call;
  DAG procedure;
  CompiledProcedure* compiled = nullptr;
  std::uint32_t generation = 0;
};

struct Program {
  Instruction* code;
  CallSite* sites;
  double* constants;
  int parameters, locals, constantCount, registers, views;
  std::uint32_t numericParameters;  // bit k: the code takes argument k for a number
};

/// The program for `procedure`; null for what only the plain walk can run. The caller owns it.
Program* compileProcedure(DAG procedure);
void deleteProgram(Program* program);

}  // namespace korel
