#include "library/native/native.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string_view>

#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/generations.h"
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

constexpr std::string_view pure[] = {
    "Dirac",   "Heaviside", "arccos",  "arccosh", "arccot",  "arccoth",  "arccsc", "arccsch", "arcsec",
    "arcsech", "arcsin",    "arcsinh", "arctan",  "arctanh", "argument", "cos",    "cosh",    "cot",
    "coth",    "csc",       "csch",    "csgn",    "exp",     "ln",       "log",    "log10",   "root",
    "sec",     "sech",      "signum",  "sin",     "sinh",    "sqrt",     "surd",   "tan",     "tanh",
};
// What programs call once a line or once a number (bench/files.sh).
constexpr std::string_view acting[] = {
    "feof", "filepos", "fscanf", "readbytes", "readline", "sscanf", "writebytes", "writeline",
};
DirectCalls directCallsOf(std::string_view name) {
  if (std::find(std::begin(pure), std::end(pure), name) != std::end(pure)) return DirectCalls::pure;
  if (std::find(std::begin(acting), std::end(acting), name) != std::end(acting)) return DirectCalls::acting;
  return DirectCalls::none;
}

// Bodies found before, which stay alive: no other takes the place of one.
struct Known {
  DAG body;
  const NativeRow* row;
};
constexpr std::size_t knownCount = 256;
Known known[knownCount];

// The same of procedures that were asked for `directNative`.
struct KnownDirect {
  DAG procedure;
  DirectNative native;
};
KnownDirect knownDirect[knownCount];

DAG nativeName;

void visitKnown(Visitor visit) {
  for (const Known& entry : known)
    if (entry.body) visit(entry.body);
  for (const KnownDirect& entry : knownDirect)
    if (entry.procedure) visit(entry.procedure);
}

// The row that the body `kernel/native`("name", args) calls, or null.
const NativeRow* rowOfBody(DAG body) {
  Known& entry = known[body.word / 8 % knownCount];
  if (entry.body == body) return entry.row;
  if (!isTag(body, FUNCTION) || body[1] != nativeName || !isSimplified(body)) return nullptr;
  DAG arguments = body[2];
  if (isImmediate(arguments) || !hasTag(arguments, EXPSEQ) || lengthOf(arguments) != 3) return nullptr;
  DAG name = arguments[1], rest = arguments[2];
  if (isImmediate(rest) || !hasTag(rest, PARAM) || rawField(rest, 1) != static_cast<Word>(-1)) return nullptr;
  if (!isText(name)) return nullptr;
  const NativeRow* row = rowNamed(textOf(name));
  if (row == nullptr) return nullptr;
  updategen(body);
  entry = {body, row};
  return row;
}

}  // namespace

NativeFunction nativeBody(DAG procedure) {
  const NativeRow* row = rowOfBody(bodyOf(procedure));
  return row != nullptr ? row->function : nullptr;
}

DirectNative directNative(DAG procedure) {
  KnownDirect& entry = knownDirect[procedure.word / 8 % knownCount];
  if (entry.procedure == procedure) return entry.native;
  const NativeRow* row = rowOfBody(bodyOf(procedure));
  if (row == nullptr || localsOf(procedure) != null) return {};
  const DirectCalls calls = directCallsOf(row->name);
  if (calls == DirectCalls::none) return {};
  for (Word i = 1, n = lengthOf(paramsOf(procedure)); i < n; ++i)
    if (!hasTag(paramsOf(procedure)[i], NAME)) return {};
  updategen(procedure);
  entry = {procedure, {row->function, calls}};
  return entry.native;
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
  std::fill(std::begin(known), std::end(known), Known{});
  std::fill(std::begin(knownDirect), std::end(knownDirect), KnownDirect{});
  registerRootWalker(visitKnown);
  DAG name = nativeName = naminstall("kernel/native");
  DAG proc = newProcedure({.options = builtinOptions, .body = immediate(nativeBuiltin)});
  setSimplified(proc);
  name[1] = proc;
  controlWord(name) &= ~deferredBit;
  hashinsert(name.word, name, AllIniNames);  // no name of the user's
}

}  // namespace korel
