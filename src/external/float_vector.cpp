#include "external/float_vector.h"

#include <cstdlib>
#include <cstring>

#include "eval/evaluate/evalf.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/assign.h"
#include "external/addresses.h"
#include "external/vector_functions.h"
#include "frame/environment_block.h"
#include "frame/errors.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "numbers/float/float.h"
#include "numbers/integer/integer.h"
#include "store/collect/collector.h"
#include "store/names.h"
#include "store/vocabulary.h"
#include "text/print/convert_text.h"
#include "text/read/source.h"

namespace korel {

namespace floats {

// ---- memory of its own

namespace {

// In front of each block, so that a foreign pointer is known.
struct BlockHead {
  BlockHead *before, *after;
};
BlockHead blocks = {&blocks, &blocks};

BlockHead* headOf(void* block) {
  for (BlockHead* head = blocks.after; head != &blocks; head = head->after)
    if (head + 1 == block) return head;
  return nullptr;
}

DAG integerOf(std::int64_t value) { return simpl(NewInteger(value)); }

void link(BlockHead* head) {
  head->before = &blocks;
  head->after = blocks.after;
  head->after->before = blocks.after = head;
}
void unlink(BlockHead* head) {
  head->before->after = head->after;
  head->after->before = head->before;
}

void checkBytes(long bytes) {
  if (bytes < 1) KernelException("%1 is too few bytes to allocate", integerOf(bytes));
}
BlockHead* memoryFor(BlockHead* old, long bytes) {
  constexpr long mostBytes = 1L << 39;  // no machine has more to give, and no allocator is asked for it
  void* memory = bytes > mostBytes ? nullptr : std::realloc(old, sizeof(BlockHead) + static_cast<std::size_t>(bytes));
  return static_cast<BlockHead*>(memory);
}

BlockHead* knownBlock(void* block) {
  BlockHead* head = headOf(block);
  if (head == nullptr)
    KernelException("trying to free memory at %1 that was never allocated",
                    integerOf(static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(block))));
  return head;
}

void* allocate(long bytes) {
  checkBytes(bytes);
  BlockHead* head = memoryFor(nullptr, bytes);
  if (head == nullptr) KernelException("not enough memory to allocate %1 bytes", integerOf(bytes));
  link(head);
  return head + 1;
}
void deallocate(void* block) {
  BlockHead* head = knownBlock(block);
  unlink(head);
  std::free(head);
}
void* reallocate(void* block, long bytes) {
  if (block == nullptr) return allocate(bytes);
  checkBytes(bytes);
  BlockHead* head = knownBlock(block);
  unlink(head);
  BlockHead* moved = memoryFor(head, bytes);
  link(moved != nullptr ? moved : head);
  if (moved == nullptr) KernelException("not enough memory to allocate %1 bytes", integerOf(bytes));
  return moved + 1;
}

// ---- what C keeps

// The count of uses in the control word (docs/objects.md).
constexpr int useCountShift = 12;
constexpr Word useCountMask = 0x3ffu << useCountShift, useUnit = Word{1} << useCountShift;

ALGEB hold(ALGEB x) {
  DAG object = fromC(x);
  if (isObject(object) && (controlWord(object) & useCountMask) != useCountMask) controlWord(object) += useUnit;
  return x;
}
void drop(ALGEB x) {
  DAG object = fromC(x);
  const Word uses = isObject(object) ? controlWord(object) & useCountMask : 0;
  // A count at its limit is no count any more: the object stays.
  if (uses != 0 && uses != useCountMask) controlWord(object) -= useUnit;
}

}  // namespace

void collectInTurn(DAG a, DAG b) {
  if (!InExternalCall || cusedext <= nextsfgc) return;
  hold(toC(a));
  if (b) hold(toC(b));
  GarbageCollectSoftwareFloats();
  nextsfgc = cusedext + incrgc;
  if (b) drop(toC(b));
  drop(toC(a));
}

// ---- making and reading

namespace {

[[noreturn]] void noFloat(const char* operation, DAG x) {
  KernelException("could not evaluate %1(%2) to a float", naminstall(operation), x);
}
[[noreturn]] void noFloat(const char* operation, DAG x, DAG y) {
  KernelException("could not evaluate %1(%2,%3) to a float", naminstall(operation), x, y);
}

// A number as a float; 0 for what is none.
DAG floatFor(ALGEB reference) {
  DAG x = vector::valueOf(reference);
  if (isFloatNumber(x)) return isTag(x, HFLOAT) ? HFloatToFloat(x) : x;
  if (!isObject(x) || isText(x) || isSequence(x)) return isImmediate(x) ? simpl(evalf(x)) : DAG();
  DAG value = simpl(evalf(x));
  return isFloatNumber(value) ? value : DAG();
}

ALGEB fromDouble(double value) { return toC(HardwareToSoftwareFloat(value)); }
double toDouble(ALGEB x) { return vector::korelToFloat64(x); }
ALGEB fromInteger(long value) { return toC(newFLOAT(NewInteger(value), cons0)); }

ALGEB fromText(const char* text) {
  DAG parsed = parsestring(text, true);
  DAG value = parsed ? floatFor(toC(simpl(eval(simpl(parsed))))) : DAG();
  if (!value) noFloat("parse", strinstall(text));
  return toC(value);
}
std::size_t toText(ALGEB x, char* buffer, std::size_t size) {
  DAG text = ConvertToString(simpl(fromC(x)));
  const std::size_t length = std::strlen(textOf(text));
  if (size != 0) {
    const std::size_t kept = length < size ? length : size - 1;
    std::memcpy(buffer, textOf(text), kept);
    buffer[kept] = '\0';
  }
  return length;
}

ALGEB build(ALGEB mantissa, long exponent) {
  DAG m = vector::valueOf(mantissa);
  if (!isInteger(m)) noFloat("Float", m, integerOf(exponent));
  return toC(BuildFloat(m, NewInteger(exponent)));
}
DAG softFloat(ALGEB x, const char* operation) {
  DAG value = floatFor(x);
  if (!value) noFloat(operation, fromC(x));
  return value;
}
ALGEB mantissa(ALGEB x) { return toC(mantissaOf(softFloat(x, "SFloatMantissa"))); }
ALGEB exponent(ALGEB x) { return toC(exponentOf(softFloat(x, "SFloatExponent"))); }
M_BOOL isFloat(ALGEB x) { return isFloatNumber(vector::valueOf(x)); }

// ---- operations

using BinaryOperation = DAG (*)(DAG a, DAG b);

// Operands that are no floats become floats first; the result is fresh, so that it can be taken back.
ALGEB binary(const char* name, BinaryOperation f, ALGEB a, ALGEB b) {
  DAG x = floatFor(a), y = floatFor(b);
  if (!x || !y) noFloat(name, fromC(a), fromC(b));
  collectInTurn(x, y);
  DAG value = f(x, y);
  if (!isFloatNumber(value)) noFloat(name, fromC(a), fromC(b));
  return toC(value);
}

ALGEB add(ALGEB a, ALGEB b) { return binary("add", evalfadd, a, b); }
ALGEB subtract(ALGEB a, ALGEB b) {
  return binary(
      "subtract", [](DAG x, DAG y) { return evalfadd(x, korel::negate(y)); }, a, b);
}
ALGEB multiply(ALGEB a, ALGEB b) { return binary("multiply", evalfmul, a, b); }
ALGEB divide(ALGEB a, ALGEB b) { return binary("divide", evalfdiv, a, b); }
ALGEB power(ALGEB a, ALGEB b) {
  return binary(
      "power", [](DAG x, DAG y) { return simpl(evalf(simpl(new3(POWER, simpl(x), simpl(y))))); }, a, b);
}

ALGEB unary(const char* name, DAG (*f)(DAG x), ALGEB a) {
  DAG x = floatFor(a);
  if (!x) noFloat(name, fromC(a));
  collectInTurn(x);
  DAG value = f(x);
  if (!isFloatNumber(value)) noFloat(name, fromC(a));
  return toC(value);
}
// By the function of the language.
ALGEB byFunction(const char* name, ALGEB a) {
  DAG x = floatFor(a);
  if (!x) noFloat(name, fromC(a));
  collectInTurn(x);
  DAG value = simpl(evalf(simpl(eval(simpl(newCall(naminstall(name), {simpl(x)}))))));
  if (!isFloatNumber(value)) noFloat(name, fromC(a));
  return toC(value);
}

ALGEB negate(ALGEB x) { return unary("negate", korel::negate, x); }
ALGEB absolute(ALGEB x) { return unary("abs", absalg, x); }
ALGEB sqrt(ALGEB x) {
  return unary(
      "sqrt", [](DAG a) { return consneg(a) ? DAG(null) : evalfsqrt(a); }, x);
}
ALGEB exp(ALGEB x) { return byFunction("exp", x); }
ALGEB ln(ALGEB x) { return byFunction("ln", x); }
ALGEB log10(ALGEB x) { return byFunction("log10", x); }
ALGEB sin(ALGEB x) { return byFunction("sin", x); }
ALGEB cos(ALGEB x) { return byFunction("cos", x); }
ALGEB arctan(ALGEB x) { return byFunction("arctan", x); }

// The whole part toward zero, one more or less where `up` or `down` asks for it.
DAG wholeFloat(DAG x, int direction) {
  if (!isFiniteFloat(x)) return x;
  DAG whole = simpl(mtrunc(x));
  const int order = compcon(simpl(x), whole);
  if (direction != 0 && order == direction) whole = simpl(korel::add(whole, immediate(direction)));
  return newFLOAT(whole, cons0);
}
ALGEB ceil(ALGEB x) {
  return unary(
      "ceil", [](DAG a) { return wholeFloat(a, 1); }, x);
}
ALGEB floor(ALGEB x) {
  return unary(
      "floor", [](DAG a) { return wholeFloat(a, -1); }, x);
}
ALGEB trunc(ALGEB x) {
  return unary(
      "trunc", [](DAG a) { return wholeFloat(a, 0); }, x);
}

// ---- comparison

int compare(ALGEB a, ALGEB b) {
  DAG x = floatFor(a), y = floatFor(b);
  if (!x || !y) noFloat("compare", fromC(a), fromC(b));
  constexpr int unordered = 2;
  if (isFloatUndefined(x) || isFloatUndefined(y)) return unordered;
  return compcon(simpl(x), simpl(y));
}
M_BOOL equal(ALGEB a, ALGEB b) { return compare(a, b) == 0; }
M_BOOL less(ALGEB a, ALGEB b) { return compare(a, b) == -1; }
M_BOOL isZero(ALGEB x) { return vector::isZero(x); }
M_BOOL isNegative(ALGEB x) { return consneg(softFloat(x, "sign")); }
M_BOOL isInfinite(ALGEB x) { return isFloatInfinity(softFloat(x, "isInfinite")); }
M_BOOL isUndefined(ALGEB x) { return isFloatUndefined(softFloat(x, "isUndefined")); }

// ---- digits and rounding

long getDigits() { return precisionDigits(); }
void setDigits(long digits) {
  if (digits < 1) userror("Digits has to be an integer greater than 0");
  korel::assign(naminstall("Digits"), integerOf(digits));
}

// In the order of KorelRounding.
DAG roundingValue(int mode) {
  DAG infinity = ini("infinity");
  const DAG values[] = {ini("nearest"), cons0, infinity, consminf};
  return values[mode];
}
constexpr int roundingModes = 4;

KorelRounding getRounding() {
  DAG value = environmentWord(envRounding);
  for (int mode = 0; mode < roundingModes; ++mode)
    if (roundingValue(mode) == value) return static_cast<KorelRounding>(mode);
  return ROUND_NEAREST;
}
void setRounding(KorelRounding mode) {
  if (static_cast<int>(mode) < 0 || static_cast<int>(mode) >= roundingModes)
    KernelException("invalid rounding mode %1", immediate(static_cast<int>(mode)));
  korel::assign(naminstall("Rounding"), roundingValue(mode));
}

// ---- the kernel around

void warning(int level, const char* message) { KernelWarning(level, message); }
M_BOOL interrupted() {
  if (TestInterrupt()) jumpback();
  return FALSE;
}

}  // namespace

}  // namespace floats

using namespace floats;

constexpr int floatVectorLength = 49;
static_assert(sizeof(KorelFloatVectorTable) == floatVectorLength * sizeof(void (*)()));

const KorelFloatVectorTable ExternalFloatVector = {
    /*  0 */ allocate,
    reallocate,
    deallocate,
    hold,
    drop,
    /*  5 */ fromDouble,
    toDouble,
    fromInteger,
    fromText,
    toText,
    build,
    mantissa,
    exponent,
    isFloat,
    /* 14 */ add,
    subtract,
    multiply,
    divide,
    floats::negate,
    absolute,
    floats::power,
    sqrt,
    exp,
    ln,
    log10,
    ceil,
    floor,
    trunc,
    sin,
    cos,
    arctan,
    /* 31 */ compare,
    equal,
    less,
    isZero,
    isNegative,
    isInfinite,
    isUndefined,
    /* 38 */ getDigits,
    setDigits,
    getRounding,
    setRounding,
    /* 42 */ printFile,
    printText,
    scanFile,
    scanText,
    /* 46 */ vector::error,
    warning,
    interrupted,
};

}  // namespace korel
