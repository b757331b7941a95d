#include "builtins/builtins.h"

#include "algebra/differentiation/diff.h"
#include "algebra/modular/modular_expressions.h"
#include "algebra/modular/selectors.h"
#include "algebra/polynomials/coefficients.h"
#include "algebra/polynomials/degree.h"
#include "algebra/polynomials/divide.h"
#include "algebra/polynomials/expand.h"
#include "algebra/polynomials/frontend.h"
#include "algebra/polynomials/indeterminates.h"
#include "algebra/polynomials/integer_polynomials.h"
#include "algebra/polynomials/normal.h"
#include "algebra/series/expansion.h"
#include "builtins/name_builtins.h"
#include "builtins/operator_builtins.h"
#include "builtins/raw_objects.h"
#include "debug/debugger.h"
#include "debug/debugopts.h"
#include "debug/statement_trace.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/evaluation_builtins.h"
#include "eval/evaluate/known_values.h"
#include "eval/evaluate/loose_arguments.h"
#include "eval/simplify/aliases.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/control_builtins.h"
#include "eval/statements/sequences.h"
#include "eval/structure/attributes.h"
#include "eval/structure/convert.h"
#include "eval/structure/equality.h"
#include "eval/structure/map.h"
#include "eval/structure/operands.h"
#include "eval/structure/search_text.h"
#include "eval/structure/select_elements.h"
#include "eval/structure/sets.h"
#include "eval/structure/sort.h"
#include "eval/structure/subsop.h"
#include "eval/structure/substitute.h"
#include "eval/tables/tables.h"
#include "eval/types/type_match.h"
#include "eval/types/types.h"
#include "eval/walk/has.h"
#include "eval/walk/measure.h"
#include "external/call_external.h"
#include "external/define_external.h"
#include "external/float_library.h"
#include "files/iolib.h"
#include "files/redirection.h"
#include "files/shell_commands.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "frame/output_builtins.h"
#include "hardware/evalhf.h"
#include "library/native/native.h"
#include "library/retrieve.h"
#include "numbers/float/float_builtins.h"
#include "numbers/integer/integer_builtins.h"
#include "rtable/create.h"
#include "rtable/information.h"
#include "rtable/products.h"
#include "rtable/queries.h"
#include "rtable/scan_block.h"
#include "rtable/sorting.h"
#include "session/kernelopts.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/standard_names.h"
#include "store/vocabulary.h"
#include "text/read/shell_builtins.h"

namespace korel {

namespace {

using enum Arguments;

constexpr Builtin builtins[] = {
    // name                      arguments    function
    {"inner",                   simplified,  builtin::inner},
    {"ASSERT",                  unevaluated, builtin::ASSERT},
    {"*",                       simplified,  builtin::timesOperator},
    {"**",                      simplified,  builtin::powerOperator},
    {"Array",                   simplified,  builtin::Array},
    {"ArrayOptions",            simplified,  builtin::ArrayOptions},
    {"||",                      simplified,  builtin::catenate},
    {"^",                       simplified,  builtin::powerOperator},
    {"CopySign",                simplified,  builtin::CopySign},
    {"DEBUG",                   unevaluated, builtin::DEBUG_},
    {"Default0",                simplified,  builtin::Default0},
    {"DefaultOverflow",         simplified,  builtin::DefaultOverflow},
    {"DefaultUnderflow",        simplified,  builtin::DefaultUnderflow},
    {"=",                       simplified,  builtin::equalOperator},
    {"ERROR",                   simplified,  builtin::ERROR_},
    {"EqualEntries",            simplified,  builtin::EqualEntries},
    {"EqualStructure",          simplified,  builtin::EqualStructure},
    {"FromInert",               neverCalled, nullptr},
    {">",                       simplified,  builtin::greaterOperator},
    {">=",                      simplified,  builtin::greaterEqualOperator},
    {"Im",                      simplified,  builtin::Im},
    {"<",                       simplified,  builtin::lessOperator},
    {"<=",                      simplified,  builtin::lessEqualOperator},
    {"<>",                      simplified,  builtin::unequalOperator},
    {"MPFloat",                 simplified,  builtin::MPFloat},
    {"MorrBrilCull",            simplified,  builtin::MorrBrilCull},
    {"NextAfter",               simplified,  builtin::NextAfter},
    {"NumericClass",            simplified,  builtin::NumericClass},
    {"NumericEvent",            simplified,  builtin::NumericEvent},
    {"NumericEventHandler",     simplified,  builtin::NumericEventHandler},
    {"NumericStatus",           simplified,  builtin::NumericStatus},
    {"OrderedNE",               simplified,  builtin::OrderedNE},
    {"+",                       simplified,  builtin::plusOperator},
    {"RETURN",                  simplified,  builtin::RETURN_},
    {"Re",                      simplified,  builtin::Re},
    {"SFloatExponent",          simplified,  builtin::SFloatExponent},
    {"SFloatMantissa",          simplified,  builtin::SFloatMantissa},
    {"Scale10",                 simplified,  builtin::Scale10},
    {"Scale2",                  simplified,  builtin::Scale2},
    {"SearchText",              members,     builtin::SearchText},
    {"TRACE",                   unevaluated, builtin::TRACE},
    {"ToInert",                 neverCalled, nullptr},
    {"Unordered",               simplified,  builtin::Unordered},
    {"abs",                     simplified,  builtin::abs},
    {"add",                     unevaluated, builtin::add},
    {"addressof",               simplified,  builtin::addressof},
    {"alias",                   simplified,  builtin::alias},
    {"anames",                  simplified,  builtin::anames},
    {"and",                     simplified,  builtin::andOperator},
    {"appendto",                simplified,  builtin::appendto},
    {"array",                   simplified,  builtin::array},
    {"assemble",                simplified,  builtin::assemble},
    {"assigned",                unevaluated, builtin::assigned},
    {"attributes",              simplified,  builtin::attributes},
    {"bind",                    simplified,  builtin::bind},
    {"call_external",           unevaluated, builtin::call_external},
    {"callback",                simplified,  builtin::callback},
    {"cat",                     members,     builtin::cat},
    {"coeff",                   simplified,  builtin::coeff},
    {"coeffs",                  simplified,  builtin::coeffs},
    {"conjugate",               simplified,  builtin::conjugate},
    {"convert",                 simplified,  builtin::convert},
    {"crinterp",                neverCalled, nullptr},
    {"debugopts",               unevaluated, builtin::debugopts},
    {"define_external",         simplified,  builtin::define_external},
    {"degree",                  simplified,  builtin::degree},
    {"denom",                   simplified,  builtin::denom},
    {"diff",                    simplified,  builtin::diff},
    {"disassemble",             simplified,  builtin::disassemble},
    {"divide",                  simplified,  builtin::divide},
    {"$",                       simplified,  builtin::dollar},
    {"done",                    simplified,  builtin::quit},
    {"entries",                 simplified,  builtin::entries},
    {"eval",                    unevaluated, builtin::eval},
    {"evalb",                   simplified,  builtin::evalb},
    {"evalf",                   unevaluated, builtin::evalf},
    {"evalgf1",                 simplified,  builtin::evalgf1},
    {"evalhf",                  unevaluated, builtin::evalhf},
    {"evaln",                   unevaluated, builtin::evaln},
    {"expand",                  simplified,  builtin::expand},
    {"exports",                 simplified,  builtin::exports},
    {"frem",                    simplified,  builtin::frem},
    {"frontend",                simplified,  builtin::frontend},
    {"gc",                      simplified,  builtin::gc},
    {"genpoly",                 simplified,  builtin::genpoly},
    {"goto",                    simplified,  builtin::goto_},
    {"has",                     members,     builtin::has},
    {"hastype",                 members,     builtin::hastype},
    {"hfarray",                 simplified,  builtin::hfarray},
    {"evalf/hypergeom/kernel",  simplified,  builtin::hypergeomKernel},
    {"icontent",                simplified,  builtin::icontent},
    {"if",                      unevaluated, builtin::if_},
    {"igcd",                    members,     builtin::igcd},
    {"ilog10",                  simplified,  builtin::ilog10},
    {"ilog2",                   simplified,  builtin::ilog2},
    {"indets",                  simplified,  builtin::indets},
    {"indices",                 simplified,  builtin::indices},
    {"intersect",               simplified,  builtin::intersectOperator},
    {"int/series",              simplified,  builtin::intSeries},
    {"iolib",                   simplified,  builtin::iolib},
    {"iquo",                    members,     builtin::iquo},
    {"irem",                    members,     builtin::irem},
    {"isqrt",                   members,     builtin::isqrt},
    {"kernelopts",              simplified,  builtin::kernelopts},
    {"lcoeff",                  simplified,  builtin::lcoeff},
    {"ldegree",                 simplified,  builtin::ldegree},
    {"length",                  members,     builtin::length},
    {"lexorder",                members,     builtin::lexorder},
    {"lhs",                     members,     builtin::lhs},
    {"lprint",                  simplified,  builtin::lprint},
    {"macro",                   simplified,  builtin::macro},
    {"map",                     simplified,  builtin::map},
    {"map2",                    simplified,  builtin::map2},
    {"max",                     simplified,  builtin::max},
    {"maxnorm",                 simplified,  builtin::maxnorm},
    {"member",                  simplified,  builtin::member},
    {"min",                     simplified,  builtin::min},
    {"minus",                   simplified,  builtin::minusOperator},
    {"modp",                    simplified,  builtin::modp},
    {"modp1",                   simplified,  builtin::modp1},
    {"modp2",                   simplified,  builtin::modp2},
    {"mods",                    simplified,  builtin::mods},
    {"mul",                     unevaluated, builtin::mul},
    {"mvMultiply",              simplified,  builtin::mvMultiply},
    {"negate",                  simplified,  builtin::negate},
    {"nops",                    members,     builtin::nops},
    {"normal",                  simplified,  builtin::normal},
    {"not",                     simplified,  builtin::notOperator},
    {"numboccur",               members,     builtin::numboccur},
    {"numer",                   simplified,  builtin::numer},
    {"op",                      members,     builtin::op},
    {"or",                      simplified,  builtin::orOperator},
    {"order",                   simplified,  builtin::order},
    {"parse",                   simplified,  builtin::parse},
    {"pointto",                 simplified,  builtin::pointto},
    {"print",                   simplified,  builtin::print},
    {"quit",                    simplified,  builtin::quit},
    {"readlib",                 simplified,  builtin::readlib},
    {"remove",                  simplified,  builtin::remove},
    {"rhs",                     members,     builtin::rhs},
    {"rtable",                  simplified,  builtin::rtable},
    {"rtableInfo",              simplified,  builtin::rtableInfo},
    {"rtable_indfns",           simplified,  builtin::rtable_indfns},
    {"rtable_is_zero",          simplified,  builtin::rtable_is_zero},
    {"rtable_normalize_index",  simplified,  builtin::rtable_normalize_index},
    {"rtable_num_dims",         simplified,  builtin::rtable_num_dims},
    {"rtable_num_elems",        simplified,  builtin::rtable_num_elems},
    {"rtable_options",          simplified,  builtin::rtable_options},
    {"rtable_scanblock",        simplified,  builtin::rtable_scanblock},
    {"rtable_sort_indices",     simplified,  builtin::rtable_sort_indices},
    {"searchtext",              members,     builtin::searchtext},
    {"select",                  simplified,  builtin::select},
    {"selectremove",            simplified,  builtin::selectremove},
    {"seq",                     unevaluated, builtin::seq},
    {"series",                  simplified,  builtin::series},
    {"setattribute",            simplified,  builtin::setattribute},
    {"sign",                    simplified,  builtin::sign},
    {"sort",                    simplified,  builtin::sort},
    {"ssystem",                 simplified,  builtin::ssystem},
    {"stop",                    simplified,  builtin::quit},
    {"streamcall",              unevaluated, builtin::streamcall},
    {"subs",                    simplified,  builtin::subs},
    {"subsop",                  simplified,  builtin::subsop},
    {"substring",               members,     builtin::substring},
    {"system",                  simplified,  builtin::system_},
    {"table",                   simplified,  builtin::table},
    {"taylor",                  simplified,  builtin::taylor},
    {"tcoeff",                  simplified,  builtin::tcoeff},
    {"time",                    unevaluated, builtin::time},
    {"timelimit",               unevaluated, builtin::timelimit},
    {"kernel/transpose",        simplified,  builtin::kernel_transpose},
    {"traperror",               unevaluated, builtin::traperror},
    {"trunc",                   simplified,  builtin::trunc},
    {"type",                    unevaluated, builtin::type},
    {"typematch",               simplified,  builtin::typematch},
    {"unames",                  simplified,  builtin::unames},
    {"unbind",                  simplified,  builtin::unbind},
    {"union",                   simplified,  builtin::unionOperator},
    {"userinfo",                unevaluated, builtin::userinfo},
    {"writeto",                 simplified,  builtin::writeto},
};
static_assert(std::size(builtins) == lastBuiltin - firstBuiltin + 1);

// A row stands at its number.
constexpr bool rowsMatchNames() {
  for (int k = firstBuiltin; k <= lastBuiltin; ++k)
    if (inistrings[k] != builtins[k - firstBuiltin].name) return false;
  return true;
}
static_assert(rowsMatchNames());

DAG uniqueSequence(DAG x) { return isSequence(x) ? x : simpl(new2(EXPSEQ, x)); }

}  // namespace

const Builtin& builtinRow(int number) {
  static constexpr Builtin nativeRow = {"kernel/native", simplified, builtin::native};
  if (number == nativeBuiltin) return nativeRow;
  if (number < firstBuiltin || number > lastBuiltin || builtins[number - firstBuiltin].arguments == neverCalled)
    KernelException("not a built-in function");
  return builtins[number - firstBuiltin];
}

namespace {
DAG runBuiltin(int number, DAG form, DAG self) {
  const Builtin& row = builtinRow(number);
  if (row.function == nullptr) KernelException("the operation `%1` is not available", self);
  BuiltinCall call{uniqueSequence(form[2]), self, form};
  switch (row.arguments) {
    case unevaluated: return row.function(call);
    case simplified: call.arguments = uniqueSequence(simpl(eval(call.arguments))); return row.function(call);
    case members: case neverCalled: break;
  }
  LooseArguments loose = evalLooseArguments(call.arguments);
  call.arguments = uniqueSequence(loose.sequence);
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
  // What was called may have been a parameter, which means nothing outside its procedure.
  DAG head = isName(call.form[1]) ? call.form[1] : call.self;
  if (call.arguments == call.form[2] && head == call.form[1]) return call.form;
  DAG form = CopyAlg(call.form);
  form[1] = head;
  form[2] = call.arguments;
  return form;
}

void wrongParameters(const BuiltinCall& call) {
  KernelException("wrong number (or type) of parameters in function %1", call.self);
}

}  // namespace korel
