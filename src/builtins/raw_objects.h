#pragma once
// The language's access to raw objects: built from words, taken apart into words, and their addresses.
//
// A word is shown as the signed 32-bit number that it holds, and taken as such or as the unsigned number
// of the same bits. Whatever comes in is verified before anything else looks at it.

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

namespace builtin {
/// assemble(tag, w1, w2, ...): a new object of the tag (a number, or its name) with these raw words;
/// gives its word, which is an address unless an integer folds into its immediate form. Errors:
/// "dagtag expected, but got %1", "invalid ID field in assemble", "rtables cannot be built using
/// assemble", "integer expected, but got %1", "assembled object is invalid".
DAG assemble(const BuiltinCall& call);
/// disassemble(address): the tag number and the raw words of the object; of an immediate, its tag and
/// word. Errors: the common failure for what is no integer, "object at address is invalid".
DAG disassemble(const BuiltinCall& call);
/// addressof(x): the word of x.
DAG addressof(const BuiltinCall& call);
/// pointto(address): the object there. Errors: as for `disassemble`.
DAG pointto(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
