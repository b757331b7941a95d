#include "external/define_external.h"

#include <cctype>
#include <cstdint>

#include "eval/simplify/simplify.h"
#include "external/c_writer.h"
#include "external/call_external.h"
#include "external/describe_types.h"
#include "external/libraries.h"
#include "external/type_tree.h"
#include "frame/errors.h"
#include "numbers/integer/integer.h"
#include "session/driver.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// ---- options

struct Options {
  bool isKernelFunction = false;  // KOREL
  bool checksCount = true;
  bool showsText = false;  // NO_COMPILE
  DAG library, wrapperLibrary;
  CompileOptions compile;
};

const char* textValue(DAG value) {
  if (!isTag(value, STRING)) KernelException("invalid library name %1", value);
  return textOf(value);
}

struct OptionRow {
  const char* name;
  void (*take)(Options& o, DAG value);
};
constexpr OptionRow optionRows[] = {
    // name         take
    {"COMPILER",   [](Options& o, DAG value) { o.compile.compiler = textValue(value); }},
    {"INC_FLAG",   [](Options& o, DAG value) { o.compile.incFlag = textValue(value); }},
    {"LIB",        [](Options& o, DAG value) {
       if (!isTag(value, STRING)) KernelException("invalid library value %1", value);
       o.library = value;
     }},
    {"LIBS",       [](Options& o, DAG value) {
       if (!isTag(value, LIST)) KernelException("invalid library name %1", value);
       for (Word i = 1; i < lengthOf(value[1]); ++i) textValue(value[1][i]);
       o.compile.libs = value[1];
     }},
    {"LINK_FLAGS", [](Options& o, DAG value) { o.compile.linkFlags = textValue(value); }},
    {"OBJ_FLAG",   [](Options& o, DAG value) { o.compile.objFlag = textValue(value); }},
    {"OPTIONS",    [](Options& o, DAG value) { o.compile.options = textValue(value); }},
    {"WRAPLIB",    [](Options& o, DAG value) {
       textValue(value);
       o.wrapperLibrary = value;
     }},
};

void takeEquation(Options& o, DAG equation) {
  DAG name = equation[1];
  if (isText(name))
    for (const OptionRow& row : optionRows)
      if (hasText(name, row.name)) return row.take(o, equation[2]);
  KernelException("unknown option name %1", name);
}

void takeWord(Options& o, DAG word) {
  if (isName(word) && hasText(word, "KOREL")) o.isKernelFunction = true;
  else if (isName(word) && hasText(word, "NO_CHECK")) o.checksCount = false;
  else if (isName(word) && hasText(word, "NO_COMPILE")) o.showsText = true;
  else KernelException("unknown option %1", word);
}

void readOptions(Options& o, DAG arguments) {
  for (Word i = 2; i < lengthOf(arguments); ++i) {
    DAG x = arguments[i];
    if (isTag(x, EQUATION)) takeEquation(o, x);
    else if (!isTag(x, DCOLON)) takeWord(o, x);
  }
  if (!o.library && !o.showsText) userror("no library file specified");
}

// ---- the wrapper

// "MWRAP_" and the function's name, as C can write it.
const char* wrapperName(DAG function) {
  auto* text = const_cast<char*>(newText("MWRAP_%s", textOf(function)));
  for (char* at = text; *at != '\0'; ++at)
    if (!std::isalnum(static_cast<unsigned char>(*at)) || static_cast<unsigned char>(*at) >= 128) *at = '_';
  return text;
}

struct Addresses {
  void *wrapper = nullptr, *external = nullptr;
  bool returnsValue = true;
};

// Whether a wrapper calls procedures of the language, or assigns to names.
bool isPlainText(const char* text) {
  return std::strstr(text, "->evalKorel") == nullptr && std::strstr(text, "->assign") == nullptr;
}

void linkWrapper(Addresses& a, const char* library, const char* wrapper, bool isPlain) {
  void* handle = LoadExternalLibrary(library);
  a.wrapper = LookUpExternalSymbol(handle, wrapper);
  const char* statics = newText("%s_statics", wrapper);
  registerWrapper(a.wrapper, findExternalSymbol(handle, statics), isPlain);
}

// `call_external(wrapper, external, returnsValue, args)` as a procedure.
DAG newExternalProcedure(const Addresses& a) {
  auto number = [](void* address) {
    return simpl(NewInteger(static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(address))));
  };
  constexpr Word argsParameter = static_cast<Word>(-1);
  DAG all = new2(PARAM, DAG(argsParameter));
  DAG name = ini("call_external");
  DAG given = new5(EXPSEQ, number(a.wrapper), number(a.external), truth(a.returnsValue), all);
  ProcedureFields fields;
  fields.options = new2(EXPSEQ, name);
  fields.body = new3(FUNCTION, name, given);
  return simpl(newProcedure(fields));
}

// The C text, where that is all that is wanted.
DAG describedProcedure(const Options& o, DAG arguments) {
  DAG function = arguments[1];
  Addresses a;
  Node* head = beginDescription(function);
  for (Word i = 2; i < lengthOf(arguments); ++i)
    if (isTag(arguments[i], DCOLON)) parseParameter(head, arguments[i]);
  resolveRanges(head);
  a.returnsValue = returnNode(head) != nullptr;
  if (secureMode && !o.showsText) userror("system calls are disabled");
  const char* wrapper = wrapperName(function);
  DAG text;
  const char* library = nullptr;
  if (o.wrapperLibrary) {
    library = textOf(o.wrapperLibrary);
    if (!o.showsText) LoadExternalLibrary(library);
  } else {
    BeginC(textOf(function), wrapper);
    describeFunction(head, wrapper, o.checksCount);
    if (o.showsText) text = strinstall(textOfC());
  }
  if (!text) {
    bool isPlain = false;
    if (library == nullptr) {
      isPlain = isPlainText(textOfC());
      EndC(o.compile);
      library = CompileC(o.compile);
    }
    a.external = LookUpExternalSymbol(LoadExternalLibrary(textOf(o.library)), textOf(function));
    linkWrapper(a, library, wrapper, isPlain);
  }
  PopErrorProc();
  cleanup(nullptr);
  return text ? text : newExternalProcedure(a);
}

}  // namespace

DAG builtin::define_external(const BuiltinCall& call) {
  DAG arguments = call.arguments;
  if (memberCount(arguments) == 0 || !isName(arguments[1])) userror("function name expected");
  Options o;
  readOptions(o, arguments);
  if (!o.isKernelFunction) return describedProcedure(o, arguments);
  if (secureMode) userror("system calls are disabled");
  Addresses a;
  a.external = LookUpExternalSymbol(LoadExternalLibrary(textOf(o.library)), textOf(arguments[1]));
  return newExternalProcedure(a);
}

}  // namespace korel
