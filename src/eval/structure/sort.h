#pragma once
// Sorting of lists, by number, by text, by word, or by a procedure of the user's.
//
// A list is sorted by links: a scratch array says for each member which one comes next, a merge sort
// rearranges the links, and the members are read out once at the end. The members stay where they are
// until then, so that an error in the middle leaves the list as it was. The sort is stable. Long lists of
// small integers and of texts are sorted by digits instead, with the same result.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// How two members compare. Each order gives true when its first operand stands before the second or
/// beside it.
enum class Order {
  ascending,  // by value; whatever is undefined stays where it is
  descending,
  lexicographic,  // by the text of names and strings, byte by byte
  address,        // by word, unsigned
  procedure,      // as a boolean valued procedure of two arguments says
};

/// The order that sorts the members of the EXPSEQ `members`: the one that `order` names, or, when that
/// is 0, by value if all are numbers (none undefined), by text if all are names or strings, and by word
/// otherwise. Error: "invalid arguments to sort" for members that the order named cannot compare, and for
/// an order that is neither a name nor a function.
Order compareFunction(DAG members, DAG order);
/// The order that `order` names, whatever there is to be sorted; `Order::procedure` for what may be called. Error:
/// "invalid arguments to sort".
Order orderCalled(DAG order);
[[noreturn]] void refuseSorting();

/// The members of an EXPSEQ in order, as a simplified EXPSEQ; `procedure` decides for that order.
/// Error: "sort: 2nd argument must be a boolean valued function".
DAG sortedSequence(DAG members, Order order, DAG procedure);
/// The same as a fresh EXPSEQ that is not simplified, so that sequences among the members keep their places.
DAG sortedMembers(DAG members, Order order, DAG procedure);
/// The LIST in the order that `order` names, 0 for none. The list itself when it is in order.
DAG sortList(DAG list, DAG order);

namespace builtin {
/// sort(list), sort(list, order): a list in order. sort(p), sort(p, variables), sort(p, variables,
/// plex or tdeg): any other expression, its polynomials in order (polynomial_order.h).
/// Errors: those above.
DAG sort(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
