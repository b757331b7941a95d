#include "builtins/builtins.h"

#include "eval/structure/attributes.h"
#include "eval/evaluate/evaluate.h"
#include "builtins/evaluator_builtins.h"
#include "numbers/float/float_builtins.h"
#include "numbers/integer/integer_builtins.h"
#include "library/library_builtins.h"
#include "eval/evaluate/loose_arguments.h"
#include "eval/statements/sequences.h"
#include "eval/simplify/simplify.h"
#include "eval/evaluate/known_values.h"
#include "frame/time_limit.h"
#include "frame/errors.h"
#include "session/kernelopts.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/raw_objects.h"
#include "store/standard_names.h"
#include "eval/structure/equality.h"
#include "eval/structure/sets.h"
#include "eval/structure/sort.h"
#include "eval/tables/tables.h"
#include "eval/simplify/aliases.h"
#include "eval/structure/convert.h"
#include "eval/walk/has.h"
#include "eval/structure/map.h"
#include "eval/walk/measure.h"
#include "eval/structure/operands.h"
#include "eval/structure/search_text.h"
#include "eval/structure/select_elements.h"
#include "eval/structure/subsop.h"
#include "eval/structure/substitute.h"
#include "eval/types/type_match.h"
#include "eval/types/types.h"

namespace korel {

namespace {

using enum Arguments;

constexpr Builtin builtins[] = {
    // name                      arguments    function
    {"inner",                   simplified,  nullptr},
    {"ASSERT",                  unevaluated, ASSERT},
    {"*",                       simplified,  timesOperator},
    {"**",                      simplified,  powerOperator},
    {"Array",                   simplified,  nullptr},
    {"ArrayOptions",            simplified,  nullptr},
    {"||",                      simplified,  catenate},
    {"^",                       simplified,  powerOperator},
    {"CopySign",                simplified,  CopySign},
    {"DEBUG",                   simplified,  DEBUG_},
    {"Default0",                simplified,  Default0},
    {"DefaultOverflow",         simplified,  DefaultOverflow},
    {"DefaultUnderflow",        simplified,  DefaultUnderflow},
    {"=",                       simplified,  equalOperator},
    {"ERROR",                   simplified,  ERROR_},
    {"EqualEntries",            simplified,  EqualEntriesBuiltin},
    {"EqualStructure",          simplified,  EqualStructureBuiltin},
    {"FromInert",               simplified,  nullptr},
    {">",                       simplified,  greaterOperator},
    {">=",                      simplified,  greaterEqualOperator},
    {"Im",                      simplified,  Im},
    {"<",                       simplified,  lessOperator},
    {"<=",                      simplified,  lessEqualOperator},
    {"<>",                      simplified,  unequalOperator},
    {"MPFloat",                 simplified,  MPFloat},
    {"MorrBrilCull",            simplified,  MorrBrilCull},
    {"NextAfter",               simplified,  NextAfter},
    {"NumericClass",            simplified,  NumericClass},
    {"NumericEvent",            simplified,  NumericEvent},
    {"NumericEventHandler",     simplified,  NumericEventHandler},
    {"NumericStatus",           simplified,  NumericStatus},
    {"OrderedNE",               simplified,  OrderedNE},
    {"+",                       simplified,  plusOperator},
    {"RETURN",                  simplified,  RETURN_},
    {"Re",                      simplified,  Re},
    {"SFloatExponent",          simplified,  SFloatExponent},
    {"SFloatMantissa",          simplified,  SFloatMantissa},
    {"Scale10",                 simplified,  Scale10},
    {"Scale2",                  simplified,  Scale2},
    {"SearchText",              members,     SearchTextBuiltin},
    {"TRACE",                   unevaluated, nullptr},
    {"ToInert",                 simplified,  nullptr},
    {"Unordered",               simplified,  Unordered},
    {"abs",                     simplified,  abs},
    {"add",                     unevaluated, addBuiltin},
    {"addressof",               simplified,  addressof},
    {"alias",                   simplified,  alias},
    {"anames",                  simplified,  anames},
    {"and",                     simplified,  andOperator},
    {"appendto",                simplified,  nullptr},
    {"array",                   simplified,  arrayBuiltin},
    {"assemble",                simplified,  assemble},
    {"assigned",                unevaluated, assigned},
    {"attributes",              simplified,  attributes},
    {"bind",                    simplified,  bind},
    {"call_external",           unevaluated, nullptr},
    {"callback",                simplified,  callback},
    {"cat",                     members,     cat},
    {"coeff",                   simplified,  nullptr},
    {"coeffs",                  simplified,  nullptr},
    {"conjugate",               simplified,  conjugate},
    {"convert",                 simplified,  convert},
    {"crinterp",                simplified,  nullptr},
    {"debugopts",               simplified,  nullptr},
    {"define_external",         simplified,  nullptr},
    {"degree",                  simplified,  nullptr},
    {"denom",                   simplified,  nullptr},
    {"diff",                    simplified,  nullptr},
    {"disassemble",             simplified,  disassemble},
    {"divide",                  simplified,  nullptr},
    {"$",                       simplified,  dollar},
    {"done",                    simplified,  quit},
    {"entries",                 simplified,  entriesBuiltin},
    {"eval",                    unevaluated, evalBuiltin},
    {"evalb",                   simplified,  evalb},
    {"evalf",                   unevaluated, evalf},
    {"evalgf1",                 simplified,  nullptr},
    {"evalhf",                  unevaluated, nullptr},
    {"evaln",                   unevaluated, evaln},
    {"expand",                  simplified,  nullptr},
    {"exports",                 simplified,  exports},
    {"frem",                    simplified,  frem},
    {"frontend",                simplified,  nullptr},
    {"gc",                      simplified,  gc},
    {"genpoly",                 simplified,  nullptr},
    {"goto",                    simplified,  goto_},
    {"has",                     members,     hasBuiltin},
    {"hastype",                 members,     hastypeBuiltin},
    {"hfarray",                 simplified,  nullptr},
    {"evalf/hypergeom/kernel",  simplified,  hypergeomKernel},
    {"icontent",                simplified,  icontent},
    {"if",                      unevaluated, if_},
    {"igcd",                    members,     igcd},
    {"ilog10",                  simplified,  ilog10},
    {"ilog2",                   simplified,  ilog2},
    {"indets",                  simplified,  nullptr},
    {"indices",                 simplified,  indicesBuiltin},
    {"intersect",               simplified,  intersectOperator},
    {"int/series",              simplified,  nullptr},
    {"iolib",                   simplified,  nullptr},
    {"iquo",                    members,     iquo},
    {"irem",                    members,     irem},
    {"isqrt",                   members,     isqrt},
    {"kernelopts",              simplified,  kernelopts},
    {"lcoeff",                  simplified,  nullptr},
    {"ldegree",                 simplified,  nullptr},
    {"length",                  members,     lengthBuiltin},
    {"lexorder",                members,     lexorder},
    {"lhs",                     members,     lhs},
    {"lprint",                  simplified,  lprint},
    {"macro",                   simplified,  macro},
    {"map",                     simplified,  mapBuiltin},
    {"map2",                    simplified,  map2Builtin},
    {"max",                     simplified,  max},
    {"maxnorm",                 simplified,  nullptr},
    {"member",                  simplified,  memberBuiltin},
    {"min",                     simplified,  min},
    {"minus",                   simplified,  minusOperator},
    {"modp",                    simplified,  nullptr},
    {"modp1",                   simplified,  nullptr},
    {"modp2",                   simplified,  nullptr},
    {"mods",                    simplified,  nullptr},
    {"mul",                     unevaluated, mulBuiltin},
    {"mvMultiply",              simplified,  nullptr},
    {"negate",                  simplified,  negateBuiltin},
    {"nops",                    members,     nops},
    {"normal",                  simplified,  nullptr},
    {"not",                     simplified,  notOperator},
    {"numboccur",               members,     numboccurBuiltin},
    {"numer",                   simplified,  nullptr},
    {"op",                      members,     opBuiltin},
    {"or",                      simplified,  orOperator},
    {"order",                   simplified,  nullptr},
    {"parse",                   simplified,  parse},
    {"pointto",                 simplified,  pointto},
    {"print",                   simplified,  print},
    {"quit",                    simplified,  quit},
    {"readlib",                 simplified,  readlib},
    {"remove",                  simplified,  removeBuiltin},
    {"rhs",                     members,     rhs},
    {"rtable",                  simplified,  nullptr},
    {"rtableInfo",              simplified,  nullptr},
    {"rtable_indfns",           simplified,  nullptr},
    {"rtable_is_zero",          simplified,  nullptr},
    {"rtable_normalize_index",  simplified,  nullptr},
    {"rtable_num_dims",         simplified,  nullptr},
    {"rtable_num_elems",        simplified,  nullptr},
    {"rtable_options",          simplified,  nullptr},
    {"rtable_scanblock",        simplified,  nullptr},
    {"rtable_sort_indices",     simplified,  nullptr},
    {"searchtext",              members,     searchtextBuiltin},
    {"select",                  simplified,  selectBuiltin},
    {"selectremove",            simplified,  selectremove},
    {"seq",                     unevaluated, seq},
    {"series",                  simplified,  nullptr},
    {"setattribute",            simplified,  setattribute},
    {"sign",                    simplified,  nullptr},
    {"sort",                    simplified,  korelSort},
    {"ssystem",                 simplified,  nullptr},
    {"stop",                    simplified,  quit},
    {"streamcall",              simplified,  streamcall},
    {"subs",                    simplified,  subsBuiltin},
    {"subsop",                  simplified,  subsopBuiltin},
    {"substring",               members,     substring},
    {"system",                  simplified,  system_},
    {"table",                   simplified,  tableBuiltin},
    {"taylor",                  simplified,  nullptr},
    {"tcoeff",                  simplified,  nullptr},
    {"time",                    unevaluated, time},
    {"timelimit",               unevaluated, timelimit},
    {"kernel/transpose",        simplified,  nullptr},
    {"traperror",               unevaluated, traperrorBuiltin},
    {"trunc",                   simplified,  trunc},
    {"type",                    unevaluated, typeBuiltin},
    {"typematch",               simplified,  typematch},
    {"unames",                  simplified,  unames},
    {"unbind",                  simplified,  unbind},
    {"union",                   simplified,  unionOperator},
    {"userinfo",                unevaluated, userinfo},
    {"writeto",                 simplified,  nullptr},
};
static_assert(std::size(builtins) == lastBuiltin - firstBuiltin + 1);

// A row stands at its number.
constexpr bool rowsMatchNames() {
  for (int k = firstBuiltin; k <= lastBuiltin; ++k)
    if (inistrings[k] != builtins[k - firstBuiltin].name) return false;
  return true;
}
static_assert(rowsMatchNames());

// Numbers without an operation, for good.
bool neverCalled(int number) {
  return number == builtinNumber("FromInert") || number == builtinNumber("ToInert") ||
         number == builtinNumber("crinterp");
}

DAG asSequence(DAG x) {
  return !isImmediate(x) && hasTag(x, EXPSEQ) ? x : simpl(new2(EXPSEQ, x));
}

}  // namespace

const Builtin& builtinRow(int number) {
  if (number < firstBuiltin || number > lastBuiltin || neverCalled(number))
    KernelException("not a built-in function");
  return builtins[number - firstBuiltin];
}

namespace {
DAG runBuiltin(int number, DAG form, DAG self) {
  const Builtin& row = builtinRow(number);
  if (row.function == nullptr) KernelException("the operation `%1` is not available", self);
  BuiltinCall call{asSequence(form[2]), self, form};
  switch (row.arguments) {
    case unevaluated: return row.function(call);
    case simplified:
      call.arguments = asSequence(simpl(eval(call.arguments)));
      return row.function(call);
    case members: break;
  }
  LooseArguments loose = evalLooseArguments(call.arguments);
  call.arguments = asSequence(loose.sequence);
  DAG value = row.function(call);
  // A value that isn't simplified may have the sequence in it.
  if (isSimplified(value)) releaseLoose(loose);
  return value;
}
}  // namespace

DAG callBuiltin(int number, DAG form, DAG self) {
  // It may change what a name stands for, for good or while it runs.
  stepEvaluationClock();
  DAG value = runBuiltin(number, form, self);
  stepEvaluationClock();
  return value;
}

DAG unevaluatedCall(const BuiltinCall& call) {
  if (call.arguments == call.form[2]) return call.form;
  DAG form = CopyAlg(call.form);
  form[2] = call.arguments;
  return form;
}

void wrongParameters(const BuiltinCall& call) {
  KernelException("wrong number (or type) of parameters in function %1", call.self);
}

}  // namespace korel
