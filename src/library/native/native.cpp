#include "library/native/native.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

#include "frame/environment.h"
#include "frame/errors.h"
#include "store/constants.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

struct NativeRow {
  std::string_view name;
  NativeFunction function;
};
constexpr NativeRow rows[] = {
#define KOREL_NATIVE(name, function) {name, native::function},
#include "library/native/native.def"
#undef KOREL_NATIVE
};
static_assert(std::is_sorted(std::begin(rows), std::end(rows),
                             [](const NativeRow& a, const NativeRow& b) { return a.name < b.name; }));

NativeFunction functionOf(const char* name) {
  const auto* row = std::lower_bound(std::begin(rows), std::end(rows), std::string_view(name),
                                     [](const NativeRow& r, std::string_view text) { return r.name < text; });
  return row != std::end(rows) && row->name == name ? row->function : nullptr;
}

}  // namespace

DAG unevaluatedNative(const BuiltinCall& call) { return new2(UNEVAL, new3(FUNCTION, call.self, call.arguments)); }

DAG builtin::native(const BuiltinCall& call) {
  if (argumentCount(call) < 1 || !isText(call.arguments[1]))
    KernelException("string expected for the name of a native procedure");
  NativeFunction function = functionOf(textOf(call.arguments[1]));
  if (function == nullptr) KernelException("there is no native procedure `%1`", call.arguments[1]);
  DAG caller = Environment->frame->procName;
  BuiltinCall inner{copysub(call.arguments, 1, argumentCount(call) - 1), caller ? caller : call.self, call.form};
  return function(inner);
}

void initializeNative() {
  DAG name = naminstall("kernel/native");
  DAG proc = newProcedure({.options = builtinOptions, .body = immediate(nativeBuiltin)});
  setSimplified(proc);
  name[1] = proc;
  controlWord(name) &= ~deferredBit;
  hashinsert(name.word, name, AllIniNames);  // no name of the user's
}

}  // namespace korel
