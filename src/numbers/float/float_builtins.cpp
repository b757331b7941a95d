#include "numbers/float/float_builtins.h"

#include "eval/evaluate/evalf.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "library/library_calls.h"
#include "numbers/arithmetic.h"
#include "numbers/complex/complex.h"
#include "numbers/complex/complex_forms.h"
#include "numbers/events/numeric_events.h"
#include "numbers/float/float.h"
#include "numbers/float/hypergeometric.h"
#include "numbers/float/ieee_functions.h"
#include "numbers/integer/integer_functions.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

DAG argument(const BuiltinCall& call, Word i) { return call.arguments[i]; }

void requireCount(const BuiltinCall& call, Word count) {
  if (argumentCount(call) != count) wrongParameters(call);
}

DAG asItStands(const BuiltinCall& call) { return simpl(new3(FUNCTION, call.self, call.arguments)); }

// The library's answer, or the call as it stands while the library has none.
DAG fromLibrary(const BuiltinCall& call, LibraryProcedure procedure) {
  DAG value = evalextf(procedure, call.arguments);
  return value == null ? asItStands(call) : value;
}

// An argument for arithmetic that knows software floats only.
DAG softArgument(const BuiltinCall& call, Word i) { return SuppressHFloats(argument(call, i)); }

using Unary = DAG (*)(DAG);
using Binary = DAG (*)(DAG, DAG);

DAG applyUnary(const BuiltinCall& call, Unary f) {
  requireCount(call, 1);
  return simpl(f(argument(call, 1)));
}
DAG applyBinary(const BuiltinCall& call, Binary f) {
  requireCount(call, 2);
  return simpl(f(argument(call, 1), argument(call, 2)));
}

}  // namespace

// ---- size, order, parts

namespace {

// The root of a rational square, or 0.
DAG exactRoot(DAG x) {
  auto rootOf = [](DAG n) {
    DAG r = isqrt(n);
    return compint(mulint(r, r), n) == 0 ? r : DAG();
  };
  if (isInteger(x)) return rootOf(x);
  DAG p = rootOf(x[1]), q = rootOf(x[2]);
  return p && q ? new3(RATIONAL, p, q) : DAG();
}

// |x| of a COMPLEX, or 0 where it is no number.
DAG complexSize(DAG x) {
  if (isFloatComplex(x)) return cxfabs(x);
  if (isInfinite(x)) return ini("infinity");
  if (isUndefined(x)) return ini("undefined");
  if (!hasNumericParts(x)) return DAG();
  if (lengthOf(x) == 2) return absalg(x[1]);
  return exactRoot(add(mul(x[1], x[1]), mul(x[2], x[2])));
}

// The extreme of numbers in the order `wanted`; 0 when an argument can't be compared.
DAG extremeOf(const BuiltinCall& call, int wanted) {
  DAG best;
  for (Word i = 1; i <= argumentCount(call); ++i) {
    DAG x = softArgument(call, i);
    if (isComplex(x) || !(isNumeric(x) || isInfinite(x) || isUndefined(x))) return DAG();
    if (best && isUndefined(best)) continue;
    if (!best || isUndefined(x) || compcon(x, best) == wanted) best = x;
  }
  return best;
}

}  // namespace

DAG builtin::abs(const BuiltinCall& call) {
  if (argumentCount(call) == 0) wrongParameters(call);
  if (argumentCount(call) == 1) {
    DAG x = softArgument(call, 1);
    if (isComplex(x)) {
      if (DAG size = complexSize(x)) return simpl(size);
    } else if (isNumeric(x) || isInfinite(x) || isUndefined(x)) {
      return simpl(absalg(x));
    }
  }
  return fromLibrary(call, "simpl/abs");
}

DAG builtin::max(const BuiltinCall& call) {
  if (argumentCount(call) == 0) return consminf;
  DAG largest = extremeOf(call, 1);
  return largest ? simpl(largest) : fromLibrary(call, "simpl/max");
}

DAG builtin::min(const BuiltinCall& call) {
  if (argumentCount(call) == 0) return ini("infinity");
  DAG least = extremeOf(call, -1);
  return least ? simpl(least) : fromLibrary(call, "simpl/min");
}

DAG builtin::trunc(const BuiltinCall& call) {
  if (argumentCount(call) == 0) wrongParameters(call);
  if (argumentCount(call) == 1) {
    DAG x = softArgument(call, 1);
    if (isInfinite(x) || isUndefined(x)) return x;
    if (isNumeric(x)) return simpl(mtrunc(x));
    if (isComplex(x) && hasNumericParts(x)) {
      DAG im = korel::mul(sqrtm1, mtrunc(imaginaryPartOf(x)));
      return simpl(lengthOf(x) == 2 ? im : korel::add(mtrunc(x[1]), im));
    }
  }
  return fromLibrary(call, "simpl/trunc");
}

DAG builtin::Re(const BuiltinCall& call) { return applyUnary(call, cxRealPart); }
DAG builtin::Im(const BuiltinCall& call) { return applyUnary(call, cxImaginaryPart); }
DAG builtin::conjugate(const BuiltinCall& call) { return applyUnary(call, korel::conjugate); }
DAG builtin::ilog10(const BuiltinCall& call) { return applyUnary(call, korel::ilog10); }
DAG builtin::ilog2(const BuiltinCall& call) { return applyUnary(call, korel::ilog2); }

// ---- the functions of IEEE 754

DAG builtin::frem(const BuiltinCall& call) { return applyBinary(call, korel::frem); }
DAG builtin::CopySign(const BuiltinCall& call) { return applyBinary(call, korel::CopySign); }
DAG builtin::NextAfter(const BuiltinCall& call) { return applyBinary(call, korel::NextAfter); }
DAG builtin::NumericClass(const BuiltinCall& call) { return applyUnary(call, korel::NumericClass); }
DAG builtin::Unordered(const BuiltinCall& call) { return applyBinary(call, korel::Unordered); }
DAG builtin::OrderedNE(const BuiltinCall& call) { return applyBinary(call, korel::OrderedNE); }
DAG builtin::Scale2(const BuiltinCall& call) { return applyBinary(call, korel::Scale2); }
DAG builtin::Scale10(const BuiltinCall& call) { return applyBinary(call, korel::Scale10); }
DAG builtin::DefaultOverflow(const BuiltinCall& call) { return applyUnary(call, korel::DefaultOverflow); }
DAG builtin::DefaultUnderflow(const BuiltinCall& call) { return applyUnary(call, korel::DefaultUnderflow); }

DAG builtin::Default0(const BuiltinCall& call) {
  requireCount(call, 0);
  return korel::Default0();
}

DAG builtin::SFloatMantissa(const BuiltinCall& call) {
  requireCount(call, 1);
  DAG x = softArgument(call, 1);
  return isSoftFloat(x) ? x[1] : asItStands(call);
}

DAG builtin::SFloatExponent(const BuiltinCall& call) {
  requireCount(call, 1);
  DAG x = softArgument(call, 1);
  return isSoftFloat(x) ? x[2] : asItStands(call);
}

// ---- numeric events

namespace {

DAG equationFor(int code, DAG value) { return new3(EQUATION, NumericEventName(code), value); }

// All six equations, in code order.
DAG allEvents(DAG (*valueOf)(int)) {
  DAG result = newl2(numericEventCount + 1, EXPSEQ);
  for (int code = 1; code <= numericEventCount; ++code) result[code] = equationFor(code, valueOf(code));
  return simpl(result);
}

DAG statusOf(int code) { return truth(GetNumericStatusFlag(code) != 0); }

// A handler as it is stored: the procedure itself in place of its name.
DAG handlerFrom(DAG action) {
  if (action == ini("default") || action == ini("exception")) return action;
  DAG value = isName(action) ? action[1] : action;
  if (isTag(value, PROC)) return value;
  KernelException("procedure, `default`, or `exception` expected for event handler");
}

}  // namespace

DAG builtin::NumericEventHandler(const BuiltinCall& call) {
  Word count = argumentCount(call);
  if (count == 0) return allEvents(GetNumericEventHandler);
  DAG only = argument(call, 1);
  if (count == 1 && (only == ini("default") || only == ini("exception"))) {
    DAG before = allEvents(GetNumericEventHandler);
    for (int code = 1; code <= numericEventCount; ++code) SetNumericEventHandler(code, only);
    return before;
  }
  DAG result = newl2(count + 1, EXPSEQ);
  for (Word i = 1; i <= count; ++i) {
    DAG x = argument(call, i);
    if (isTag(x, EQUATION)) {
      if (!isName(x[1])) KernelException("event name=action expected");
      int code = NumericEventCode(x[1]);
      DAG handler = handlerFrom(x[2]);
      result[i] = equationFor(code, GetNumericEventHandler(code));
      SetNumericEventHandler(code, handler);
    } else if (isName(x)) {
      result[i] = GetNumericEventHandler(NumericEventCode(x));
    } else {
      KernelException("event name or name=action expected");
    }
  }
  return simpl(result);
}

DAG builtin::NumericStatus(const BuiltinCall& call) {
  Word count = argumentCount(call);
  if (count == 0) return allEvents(statusOf);
  if (count == 1 && argument(call, 1) == ini("false")) {
    DAG before = allEvents(statusOf);
    for (int code = 1; code <= numericEventCount; ++code) SetNumericStatusFlag(code, 0);
    return before;
  }
  DAG result = newl2(count + 1, EXPSEQ);
  for (Word i = 1; i <= count; ++i) {
    DAG x = argument(call, i);
    if (isTag(x, EQUATION)) {
      if (!isName(x[1])) KernelException("event name=value expected");
      int code = NumericEventCode(x[1]);
      if (x[2] != ini("true") && x[2] != ini("false")) KernelException("true or false expected for event value");
      result[i] = equationFor(code, statusOf(code));
      SetNumericStatusFlag(code, x[2] == ini("true"));
    } else if (isName(x)) {
      result[i] = statusOf(NumericEventCode(x));
    } else {
      KernelException("event name or name=value expected");
    }
  }
  return simpl(result);
}

DAG builtin::NumericEvent(const BuiltinCall& call) {
  const Frame* frame = Environment->frame;
  Word count = argumentCount(call);
  const bool inProcedure = frame->previousFrame != nullptr;
  if (count != 4 && !(count == 2 && inProcedure))
    KernelException("event name, operation, operands, and default expected");
  DAG event = argument(call, 1);
  if (!isName(event)) KernelException("symbol expected for event name");
  DAG operation, operands;
  if (count == 4) {
    operation = argument(call, 2);
    operands = argument(call, 3);
    if (!isName(operation)) KernelException("symbol expected for operation");
    if (!isTag(operands, LIST)) KernelException("list expected for operands");
  } else {
    operation = frame->procName;
    operands = new2(LIST, frame->args);
  }
  DAG sequence = new4(EXPSEQ, operation, operands, argument(call, count));
  return simpl(TriggerNumericEvent(NumericEventCode(event), sequence, DAG(), DAG(), DAG(), false));
}

// ---- evalf and series

DAG builtin::MorrBrilCull(const BuiltinCall& call) {
  requireCount(call, 10);
  for (Word i = 1; i <= 10; ++i)
    if (!isInteger(argument(call, i))) wrongParameters(call);
  constexpr Word modulus = 7;
  if (isZero(argument(call, modulus))) wrongParameters(call);
  return simpl(korel::MorrBrilCull(call.arguments));
}

DAG builtin::hypergeomKernel(const BuiltinCall& call) {
  Word count = argumentCount(call);
  if (count != 3 && count != 4) wrongParameters(call);
  DAG terms = cons0;
  if (count == 4) {
    terms = argument(call, 4);
    // The kernel's own 0 stands for "no limit".
    if (!isInteger(terms) || isZero(terms)) KernelException("optional fourth argument must be a positive integer");
  }
  return simpl(hypergeom(argument(call, 1), argument(call, 2), argument(call, 3), terms));
}

namespace {

// A number of digits as it is given to `evalf`.
std::int64_t digitsFrom(const BuiltinCall& call, DAG n) {
  if (!isImmediate(n) || immediateValue(n) <= 0) wrongParameters(call);
  return immediateValue(n);
}

}  // namespace

DAG builtin::evalf(const BuiltinCall& call) {
  Word count = argumentCount(call);
  if (isTag(call.self, TABLEREF)) {
    DAG index = call.self[2];
    if (count != 1 || !hasTag(index, EXPSEQ) || lengthOf(index) != 2) wrongParameters(call);
    return simpl(binevalf(argument(call, 1), digitsFrom(call, simpl(korel::eval(index[1])))));
  }
  if (count != 1 && count != 2) wrongParameters(call);
  if (count == 2) {
    DAG n = simpl(korel::eval(argument(call, 2)));
    if (n != null) return simpl(binevalf(argument(call, 1), digitsFrom(call, n)));
  }
  return simpl(korel::evalf(simpl(korel::eval(argument(call, 1)))));
}

}  // namespace korel
