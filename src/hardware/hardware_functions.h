#pragma once
// The functions that the hardware-float evaluator knows by name: one table of functions of numbers, and names of
// constants.

#include "store/dag.h"

namespace korel {

/// How a function takes its arguments.
enum class HardwareArity : unsigned char {
  fixed,  // one number, or two where there is a function for two
  fold,   // any number of them, folded from the left
};

struct HardwareFunction {
  const char* name;
  HardwareArity arity;
  double (*one)(double x);
  double (*two)(double a, double b);
};
/// The function with this name, or null.
const HardwareFunction* hardwareFunction(const char* name);
/// Error: "wrong arguments for function `%1`".
[[noreturn]] void wrongHardwareArguments(DAG name);

/// The value of a name that stands for a constant; false for any other name.
bool hardwareConstant(const char* name, double& value);

}  // namespace korel
