#include "library/library_calls.h"

#include <cassert>

#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/errors.h"
#include "library/retrieve.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// Value of the call of `name`, or of name[index] for an indexed `form`.
DAG callByName(const LibraryCall& call, DAG name, DAG form, DAG arguments) {
  DAG head = isTag(form, TABLEREF) ? new3(TABLEREF, name, form[2]) : name;
  arguments = asSequence(arguments);
  assert(call.operands == anyOperands || memberCount(arguments) == static_cast<Word>(call.operands));
  static_cast<void>(call);
  return simpl(eval(simpl(new3(FUNCTION, head, arguments))));
}

DAG callOrNull(const LibraryCall& call, const char* suffix, DAG form, DAG arguments) {
  DAG name = nameInLibrary(call.base, suffix);
  return name == null ? null : callByName(call, name, form, arguments);
}

DAG callOrFail(const LibraryCall& call, const char* suffix, DAG form, DAG arguments) {
  DAG name = nameInLibrary(call.base, suffix);
  if (name == null) KernelException("%1%2: missing system function", naminstall(call.base), naminstall(suffix));
  return callByName(call, name, form, arguments);
}

// The NAME inside a NAME or TABLEREF, or 0.
DAG baseName(DAG x) {
  while (isTag(x, TABLEREF)) x = x[1];
  return isName(x) ? x : DAG();
}

}  // namespace

DAG evalsysf(LibraryProcedure procedure, DAG arguments) {
  const LibraryCall& call = libraryCalls[procedure.row];
  return callOrFail(call, call.suffix, DAG(), arguments);
}
DAG evalsysf(LibraryFamily family, const char* suffix, DAG arguments) {
  return callOrFail(libraryCalls[family.row], suffix, DAG(), arguments);
}

DAG evalextf(LibraryProcedure procedure, DAG arguments) {
  const LibraryCall& call = libraryCalls[procedure.row];
  return callOrNull(call, call.suffix, DAG(), arguments);
}
DAG evalextf(LibraryFamily family, const char* suffix, DAG arguments) {
  return callOrNull(libraryCalls[family.row], suffix, DAG(), arguments);
}
DAG evalextf(LibraryFamily family, DAG head, DAG arguments) {
  DAG function = baseName(head);
  return function ? callOrNull(libraryCalls[family.row], textOf(function), head, arguments) : null;
}

DAG EvalSystemFunction(LibraryFamily prefix, DAG function, DAG form, DAG arguments) {
  DAG named = baseName(function);
  if (!named) KernelException("name expected for external function");
  return callOrFail(libraryCalls[prefix.row], textOf(named), form, arguments);
}

DAG retrieve(LibraryProcedure procedure) {
  const LibraryCall& call = libraryCalls[procedure.row];
  return nameInLibrary(call.base, call.suffix);
}
DAG retrieve(LibraryFamily family, const char* suffix) { return nameInLibrary(libraryCalls[family.row].base, suffix); }

}  // namespace korel
