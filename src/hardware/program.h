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
#define KOREL_OPERATION(name, ...) name,
#include "hardware/operations.def"
#undef KOREL_OPERATION
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
