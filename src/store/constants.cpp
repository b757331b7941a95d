#include "store/constants.h"

#include <cstring>

#include "eval/evaluate/environment_variables.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "numbers/events/numeric_events.h"
#include "numbers/integer/integer.h"
#include "store/hash.h"
#include "store/names.h"
#include "store/object_fields.h"
#include "store/objects.h"

namespace korel {

DAG cons[smallConstantCount], consm[smallConstantCount];
DAG consbb, cons_maxfloatexp, cons_minfloatexp;
DAG null, emptyset, emptylist;
DAG consf0, consfm0, consf1, consfm1, conscxf0, consh, sqrtm1, conshf0;
DAG consfinf, consfminf, consminf, conscxinf, conscxfinf, consfNaN, conscxNaN, conscxfNaN;
DAG consfmaxrep, consfminrep;
DAG order1, InertProc, DefTestzero;
DAG builtinOptions, rememberOptions;
DAG builtrem[rememberingBuiltinCount];
DAG AliasToKorel, KorelToAlias;
DAG ininame[standardNameCount];

namespace {

// The built-ins that remember results, in the order of `builtrem`.
constexpr StandardName rememberingBuiltins[] = {"diff",    "expand",   "evalf",  "series",
                                                "readlib", "frontend", "divide", "normal"};
static_assert(std::size(rememberingBuiltins) == rememberingBuiltinCount);

bool isRemembering(int number) {
  for (StandardName name : rememberingBuiltins)
    if (name.index == number) return true;
  return false;
}

DAG table(Word buckets) { return newhashtab(buckets); }

void buildNumbers() {
  for (int i = 0; i < smallConstantCount; ++i) {
    cons[i] = immediate(i);
    consm[i] = immediate(-(i + 1));
  }
  consbb = simpl(Newint(100000000));
  cons_maxfloatexp = simpl(Newint(2147483646));
  cons_minfloatexp = simpl(Newint(-2147483646));
}

DAG makeFloat(DAG mantissa, DAG exponent) { return simpl(new3(FLOAT, mantissa, exponent)); }
DAG makeComplex(DAG re, DAG im) { return simpl(new3(COMPLEX, re, im)); }

void buildNumberObjects() {
  consf0 = makeFloat(cons0, cons0);
  consfm0 = makeFloat(consm0, cons0);
  consf1 = makeFloat(cons10, consm1);
  consfm1 = makeFloat(immediate(-10), consm1);
  conscxf0 = makeComplex(consf0, consf0);
  consh = simpl(new3(RATIONAL, cons1, immediate(2)));
  sqrtm1 = simpl(new2(COMPLEX, cons1));
  conshf0 = simpl(NewHFloat(0.0, false));
}

DAG builtinProcedure(int number) {
  DAG proc =
      newProcedure({.options = isRemembering(number) ? rememberOptions : builtinOptions, .body = immediate(number)});
  // Final as it stands: a procedure is never merged with another, so that no table holds it.
  setSimplified(proc);
  return proc;
}

void buildStandardNames() {
  for (int i = 0; i < standardNameCount; ++i) {
    ininame[i] = naminstall(inistrings[i].data());
    ininame[i][1] = DAG();
    ininame[i][2] = null;
  }
}

// The kernel's own value of a name: the library is not asked for another.
void setKernelValue(DAG name, DAG value) {
  name[1] = value;
  controlWord(name) &= ~deferredBit;
}

void buildBuiltins() {
  builtinOptions = simpl(new2(EXPSEQ, ini("builtin")));
  rememberOptions = simpl(new3(EXPSEQ, ini("builtin"), ini("remember")));
  for (int k = firstBuiltin; k <= lastBuiltin; ++k) setKernelValue(ininame[k], builtinProcedure(k));
}

DAG param(std::int32_t n) { return simpl(new2(PARAM, DAG(static_cast<Word>(n)))); }

// proc(O) evalb(Normalizer(O) = 0) end, with its names already resolved.
DAG testzeroProcedure() {
  DAG normalized = simpl(newCall(ini("Normalizer"), {param(1)}));
  DAG body = simpl(newCall(ini("evalb"), {simpl(new3(EQUATION, normalized, cons0))}));
  DAG proc = newProcedure({.params = simpl(newSequence({ini("O")})), .body = body});
  setSimplified(proc);
  return proc;
}

// The library path as the sequence of its directories, or the one directory.
DAG libraryPath(const char* text) {
  DAG parts = newl2(1, EXPSEQ);
  char item[512];
  for (const char* at = text; *at != 0;) {
    std::size_t n = std::strcspn(at, ",;");
    if (n >= sizeof item) n = sizeof item - 1;
    std::memcpy(item, at, n);
    item[n] = 0;
    if (n > 0) {
      DAG longer = space_insert(parts, lengthOf(parts) - 1, 1);
      longer[static_cast<std::int64_t>(lengthOf(longer)) - 1] = strinstall(item);
      parts = longer;
    }
    at += n;
    if (*at != 0) ++at;
  }
  return lengthOf(parts) == 2 ? parts[1] : simpl(parts);
}

void buildSpecialValues() {
  DAG infinity = ini("infinity"), undefined = ini("undefined");
  consfinf = makeFloat(cons1, infinity);
  consfminf = makeFloat(consm1, infinity);
  consminf = simpl(new3(SUM, infinity, consm1));
  conscxinf = makeComplex(infinity, infinity);
  conscxfinf = makeComplex(consfinf, consfinf);
  consfNaN = makeFloat(cons1, undefined);
  conscxNaN = makeComplex(undefined, undefined);
  conscxfNaN = makeComplex(consfNaN, consfNaN);
  consfmaxrep = makeFloat(immediate(9), cons_maxfloatexp);
  consfminrep = makeFloat(cons1, cons_minfloatexp);
}

bool enterName(void* arg, PairAddress pair) {
  DAG names = *static_cast<DAG*>(arg);
  DAG name = pairValue(pair);
  if (name[1]) hashinsert(name.word, name, names);
  return true;
}

// The names in use after the start: listing functions leave them out.
void collectInitialNames() {
  AllIniNames = table(512);
  hashforeach(nametab, enterName, &AllIniNames);
}

}  // namespace

void initialize(const char* libraryText) {
  simpltab = table(4096);
  simpltabCount = 0;
  controlWord(simpltab) |= tableBit;
  aliastab = table(256);
  // `null` stands for a missing attribute in every name, so that it comes before the first of them.
  null = simpl(new1(EXPSEQ));
  buildNumbers();
  AliasToKorel = KorelToAlias = null;
  emptyset = simpl(new2(SET, null));
  emptylist = simpl(new2(LIST, null));
  buildStandardNames();
  buildNumberObjects();
  buildBuiltins();
  for (int i = 0; i < rememberingBuiltinCount; ++i) builtrem[i] = ini(rememberingBuiltins[i])[1];
  order1 = simpl(newCall(ini("O"), {cons1}));
  DefTestzero = testzeroProcedure();
  initializeEnvironmentVariables();
  for (int code = 1; code <= numericEventCount; ++code) SetNumericStatusFlag(code, 0);
  setKernelValue(ini("libname"), libraryPath(libraryText));
  DAG inertCall = simpl(new3(FUNCTION, param(-2), simpl(new2(EXPSEQ, param(-1)))));
  InertProc = simpl(new2(UNEVAL, inertCall));
  buildSpecialValues();
  // The name stands for the empty sequence; everything else of the kind is the library's to assign.
  setKernelValue(ini("NULL"), null);
  collectInitialNames();
}

}  // namespace korel
