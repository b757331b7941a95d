#pragma once
// Type checking: does an expression match a type?

#include "store/dag.h"

namespace korel {

/// True when `e` matches the type `t`, itself an object. Error: "testing against an invalid type".
bool type(DAG e, DAG t);

}  // namespace korel
