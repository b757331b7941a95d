#include "hardware/machine.h"

#include "hardware/hardware_calls.h"

namespace korel {

double runProcedure(DAG procedure, double* arguments, int count) { return walkProcedure(procedure, arguments, count); }

}  // namespace korel
