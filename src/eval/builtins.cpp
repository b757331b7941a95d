#include "eval/builtins.h"

#include "eval/attributes.h"
#include "eval/evaluate.h"
#include "eval/evaluator_builtins.h"
#include "eval/float_builtins.h"
#include "eval/integer_builtins.h"
#include "eval/library_builtins.h"
#include "eval/sequences.h"
#include "eval/simplify.h"
#include "eval/time_limit.h"
#include "frame/errors.h"
#include "frame/kernelopts.h"
#include "store/collector.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/raw_objects.h"
#include "store/standard_names.h"
#include "structure/equality.h"
#include "structure/sets.h"
#include "structure/sort.h"
#include "structure/tables.h"
#include "structure/aliases.h"
#include "structure/convert.h"
#include "structure/has.h"
#include "structure/map.h"
#include "structure/measure.h"
#include "structure/operands.h"
#include "structure/search_text.h"
#include "structure/select_elements.h"
#include "structure/subsop.h"
#include "structure/substitute.h"
#include "structure/type_match.h"
#include "structure/types.h"

namespace korel {

namespace {

constexpr Builtin builtins[] = {
    // name                      raw    function
    {"inner",                   false, nullptr},
    {"ASSERT",                  true,  ASSERT},
    {"*",                       false, timesOperator},
    {"**",                      false, powerOperator},
    {"Array",                   false, nullptr},
    {"ArrayOptions",            false, nullptr},
    {"||",                      false, catenate},
    {"^",                       false, powerOperator},
    {"CopySign",                false, CopySign},
    {"DEBUG",                   false, DEBUG_},
    {"Default0",                false, Default0},
    {"DefaultOverflow",         false, DefaultOverflow},
    {"DefaultUnderflow",        false, DefaultUnderflow},
    {"=",                       false, equalOperator},
    {"ERROR",                   false, ERROR_},
    {"EqualEntries",            false, EqualEntriesBuiltin},
    {"EqualStructure",          false, EqualStructureBuiltin},
    {"FromInert",               false, nullptr},
    {">",                       false, greaterOperator},
    {">=",                      false, greaterEqualOperator},
    {"Im",                      false, Im},
    {"<",                       false, lessOperator},
    {"<=",                      false, lessEqualOperator},
    {"<>",                      false, unequalOperator},
    {"MPFloat",                 false, MPFloat},
    {"MorrBrilCull",            false, MorrBrilCull},
    {"NextAfter",               false, NextAfter},
    {"NumericClass",            false, NumericClass},
    {"NumericEvent",            false, NumericEvent},
    {"NumericEventHandler",     false, NumericEventHandler},
    {"NumericStatus",           false, NumericStatus},
    {"OrderedNE",               false, OrderedNE},
    {"+",                       false, plusOperator},
    {"RETURN",                  false, RETURN_},
    {"Re",                      false, Re},
    {"SFloatExponent",          false, SFloatExponent},
    {"SFloatMantissa",          false, SFloatMantissa},
    {"Scale10",                 false, Scale10},
    {"Scale2",                  false, Scale2},
    {"SearchText",              false, SearchTextBuiltin},
    {"TRACE",                   true,  nullptr},
    {"ToInert",                 false, nullptr},
    {"Unordered",               false, Unordered},
    {"abs",                     false, abs},
    {"add",                     true,  addBuiltin},
    {"addressof",               false, addressof},
    {"alias",                   false, alias},
    {"anames",                  false, anames},
    {"and",                     false, andOperator},
    {"appendto",                false, nullptr},
    {"array",                   false, arrayBuiltin},
    {"assemble",                false, assemble},
    {"assigned",                true,  assigned},
    {"attributes",              false, attributes},
    {"bind",                    false, bind},
    {"call_external",           true,  nullptr},
    {"callback",                false, callback},
    {"cat",                     false, cat},
    {"coeff",                   false, nullptr},
    {"coeffs",                  false, nullptr},
    {"conjugate",               false, conjugate},
    {"convert",                 false, convert},
    {"crinterp",                false, nullptr},
    {"debugopts",               false, nullptr},
    {"define_external",         false, nullptr},
    {"degree",                  false, nullptr},
    {"denom",                   false, nullptr},
    {"diff",                    false, nullptr},
    {"disassemble",             false, disassemble},
    {"divide",                  false, nullptr},
    {"$",                       false, dollar},
    {"done",                    false, quit},
    {"entries",                 false, entriesBuiltin},
    {"eval",                    true,  evalBuiltin},
    {"evalb",                   false, evalb},
    {"evalf",                   true,  evalf},
    {"evalgf1",                 false, nullptr},
    {"evalhf",                  true,  nullptr},
    {"evaln",                   true,  evaln},
    {"expand",                  false, nullptr},
    {"exports",                 false, exports},
    {"frem",                    false, frem},
    {"frontend",                false, nullptr},
    {"gc",                      false, gc},
    {"genpoly",                 false, nullptr},
    {"goto",                    false, goto_},
    {"has",                     false, hasBuiltin},
    {"hastype",                 false, hastypeBuiltin},
    {"hfarray",                 false, nullptr},
    {"evalf/hypergeom/kernel",  false, hypergeomKernel},
    {"icontent",                false, icontent},
    {"if",                      true,  if_},
    {"igcd",                    false, igcd},
    {"ilog10",                  false, ilog10},
    {"ilog2",                   false, ilog2},
    {"indets",                  false, nullptr},
    {"indices",                 false, indicesBuiltin},
    {"intersect",               false, intersectOperator},
    {"int/series",              false, nullptr},
    {"iolib",                   false, nullptr},
    {"iquo",                    false, iquo},
    {"irem",                    false, irem},
    {"isqrt",                   false, isqrt},
    {"kernelopts",              false, kernelopts},
    {"lcoeff",                  false, nullptr},
    {"ldegree",                 false, nullptr},
    {"length",                  false, lengthBuiltin},
    {"lexorder",                false, lexorder},
    {"lhs",                     false, lhs},
    {"lprint",                  false, lprint},
    {"macro",                   false, macro},
    {"map",                     false, mapBuiltin},
    {"map2",                    false, map2Builtin},
    {"max",                     false, max},
    {"maxnorm",                 false, nullptr},
    {"member",                  false, memberBuiltin},
    {"min",                     false, min},
    {"minus",                   false, minusOperator},
    {"modp",                    false, nullptr},
    {"modp1",                   false, nullptr},
    {"modp2",                   false, nullptr},
    {"mods",                    false, nullptr},
    {"mul",                     true,  mulBuiltin},
    {"mvMultiply",              false, nullptr},
    {"negate",                  false, negateBuiltin},
    {"nops",                    false, nops},
    {"normal",                  false, nullptr},
    {"not",                     false, notOperator},
    {"numboccur",               false, numboccurBuiltin},
    {"numer",                   false, nullptr},
    {"op",                      false, opBuiltin},
    {"or",                      false, orOperator},
    {"order",                   false, nullptr},
    {"parse",                   false, parse},
    {"pointto",                 false, pointto},
    {"print",                   false, print},
    {"quit",                    false, quit},
    {"readlib",                 false, readlib},
    {"remove",                  false, removeBuiltin},
    {"rhs",                     false, rhs},
    {"rtable",                  false, nullptr},
    {"rtableInfo",              false, nullptr},
    {"rtable_indfns",           false, nullptr},
    {"rtable_is_zero",          false, nullptr},
    {"rtable_normalize_index",  false, nullptr},
    {"rtable_num_dims",         false, nullptr},
    {"rtable_num_elems",        false, nullptr},
    {"rtable_options",          false, nullptr},
    {"rtable_scanblock",        false, nullptr},
    {"rtable_sort_indices",     false, nullptr},
    {"searchtext",              false, searchtextBuiltin},
    {"select",                  false, selectBuiltin},
    {"selectremove",            false, selectremove},
    {"seq",                     true,  seq},
    {"series",                  false, nullptr},
    {"setattribute",            false, setattribute},
    {"sign",                    false, nullptr},
    {"sort",                    false, korelSort},
    {"ssystem",                 false, nullptr},
    {"stop",                    false, quit},
    {"streamcall",              false, streamcall},
    {"subs",                    false, subsBuiltin},
    {"subsop",                  false, subsopBuiltin},
    {"substring",               false, substring},
    {"system",                  false, system_},
    {"table",                   false, tableBuiltin},
    {"taylor",                  false, nullptr},
    {"tcoeff",                  false, nullptr},
    {"time",                    true,  time},
    {"timelimit",               true,  timelimit},
    {"kernel/transpose",        false, nullptr},
    {"traperror",               true,  traperrorBuiltin},
    {"trunc",                   false, trunc},
    {"type",                    true,  typeBuiltin},
    {"typematch",               false, typematch},
    {"unames",                  false, unames},
    {"unbind",                  false, unbind},
    {"union",                   false, unionOperator},
    {"userinfo",                true,  userinfo},
    {"writeto",                 false, nullptr},
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

DAG callBuiltin(int number, DAG form, DAG self) {
  const Builtin& row = builtinRow(number);
  if (row.function == nullptr) KernelException("the operation `%1` is not available", self);
  BuiltinCall call{asSequence(form[2]), self, form};
  if (!row.raw) {
    call.arguments = asSequence(simpl(eval(call.arguments)));
    // A call that stays as it is shows its evaluated arguments.
    if (call.arguments != form[2]) {
      call.form = CopyAlg(form);
      call.form[2] = call.arguments;
    }
  }
  return row.function(call);
}

void wrongParameters(const BuiltinCall& call) {
  KernelException("wrong number (or type) of parameters in function %1", call.self);
}

}  // namespace korel
