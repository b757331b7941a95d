#pragma once
// Products of Matrices and Vectors, and transposition; the same for the tables of the old linear algebra.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// The transposed rtable, which has two dimensions, or product or table (`builtin::kernel_transpose`).
DAG transpose(DAG x);

namespace builtin {
/// mvMultiply(a, b), mvMultiply(a, b, target): the product of two Matrices or Vectors, by the rules of rows and
/// columns; a new rtable, or the rtable or name `target`, into which the finished product goes. A row times a column
/// is a scalar. Errors: those of shapes, as "cannot multiply two row Vectors", and of sizes, as "vector lengths must
/// be the same".
DAG mvMultiply(const BuiltinCall& call);
/// inner(a, b, ...): the product, from the left, of arrays that are tables: matrices of two dimensions, vectors of one,
/// which the indexing functions `row` and `column` make rows and columns. What is no array goes to the library.
/// Errors: as "non matching dimensions for vector/matrix product", "undefined elements in matrix".
DAG inner(const BuiltinCall& call);
/// `kernel/transpose`(x): of an rtable of two dimensions, a table of the old linear algebra, or a product of such.
/// Errors: "invalid object to transpose", "transpose can only handle 2D %1", "cannot transpose table".
DAG kernel_transpose(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
