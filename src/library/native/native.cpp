#include "library/native/native.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

#include "eval/simplify/simplify.h"
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

const NativeRow* rowNamed(const char* name) {
  const auto* row = std::lower_bound(std::begin(rows), std::end(rows), std::string_view(name),
                                     [](const NativeRow& r, std::string_view text) { return r.name < text; });
  return row != std::end(rows) && row->name == name ? row : nullptr;
}

// Functions whose errors name the procedure themselves, so that nobody misses its frame.
constexpr std::string_view direct[] = {
    "Dirac",   "Heaviside", "arccos",  "arccosh", "arccot",  "arccoth",  "arccsc", "arccsch", "arcsec",
    "arcsech", "arcsin",    "arcsinh", "arctan",  "arctanh", "argument", "cos",    "cosh",    "cot",
    "coth",    "csc",       "csch",    "csgn",    "exp",     "ln",       "log",    "log10",   "root",
    "sec",     "sech",      "signum",  "sin",     "sinh",    "sqrt",     "surd",   "tan",     "tanh",
};
bool isDirect(std::string_view name) {
  return std::find(std::begin(direct), std::end(direct), name) != std::end(direct);
}

// Names found before, by the object that they stand in. An object may have died and another one taken its place, so
// that the text decides.
struct Known {
  Word text;
  const NativeRow* row;
};
constexpr std::size_t knownCount = 256;
Known known[knownCount];

DAG nativeName;

}  // namespace

NativeFunction directNative(DAG procedure) {
  DAG body = bodyOf(procedure);
  if (isImmediate(body) || !hasTag(body, FUNCTION) || body[1] != nativeName) return nullptr;
  if (localsOf(procedure) != null) return nullptr;
  DAG arguments = body[2];
  if (isImmediate(arguments) || !hasTag(arguments, EXPSEQ) || lengthOf(arguments) != 3) return nullptr;
  DAG name = arguments[1], rest = arguments[2];
  if (isImmediate(rest) || !hasTag(rest, PARAM) || rawField(rest, 1) != static_cast<Word>(-1)) return nullptr;
  for (Word i = 1, n = lengthOf(paramsOf(procedure)); i < n; ++i)
    if (!hasTag(paramsOf(procedure)[i], NAME)) return nullptr;
  if (!isText(name)) return nullptr;
  Known& entry = known[name.word / 8 % knownCount];
  const char* text = textOf(name);
  if (entry.text == name.word && entry.row->name == text) return entry.row->function;
  const NativeRow* row = rowNamed(text);
  if (row == nullptr || !isDirect(row->name)) return nullptr;
  entry = {name.word, row};
  return row->function;
}

DAG unevaluatedNative(const BuiltinCall& call) { return new2(UNEVAL, new3(FUNCTION, call.self, call.arguments)); }

DAG builtin::native(const BuiltinCall& call) {
  if (argumentCount(call) < 1 || !isText(call.arguments[1]))
    KernelException("string expected for the name of a native procedure");
  const NativeRow* row = rowNamed(textOf(call.arguments[1]));
  if (row == nullptr) KernelException("there is no native procedure `%1`", call.arguments[1]);
  DAG caller = Environment->frame->procName;
  BuiltinCall inner{copysub(call.arguments, 1, argumentCount(call) - 1), caller ? caller : call.self, call.form};
  DAG value = row->function(inner);
  return value ? value : simpl(new3(FUNCTION, inner.self, inner.arguments));
}

void initializeNative() {
  DAG name = nativeName = naminstall("kernel/native");
  DAG proc = newProcedure({.options = builtinOptions, .body = immediate(nativeBuiltin)});
  setSimplified(proc);
  name[1] = proc;
  controlWord(name) &= ~deferredBit;
  hashinsert(name.word, name, AllIniNames);  // no name of the user's
}

}  // namespace korel
