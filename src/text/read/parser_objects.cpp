#include "text/read/parser_objects.h"

#include "numbers/integer/integer.h"
#include "store/allocator.h"
#include "store/append.h"
#include "store/object_fields.h"
#include "store/vocabulary.h"
#include "text/read/lexer.h"

namespace korel {

DAG binaryCall(DAG function, DAG a, DAG b) { return new3(FUNCTION, function, new3(EXPSEQ, a, b)); }
DAG unaryCall(DAG function, DAG a) { return new3(FUNCTION, function, new2(EXPSEQ, a)); }

DAG joinSequence(DAG a, DAG b) { return hasTag(a, EXPSEQ) ? Append2(a, b) : new3(EXPSEQ, a, b); }

DAG makeSum(DAG a, DAG b, DAG sign) { return hasTag(a, SUM) ? Append3(a, b, sign) : new5(SUM, a, cons1, b, sign); }

DAG makeProduct(DAG a, DAG b) {
  if (!hasTag(a, PROD)) return new5(PROD, a, cons1, b, cons1);
  if (!hasTag(b, PROD) || lengthOf(b) != 3) return Append3(a, b, cons1);
  DAG factor = b[1], exponent = b[2];
  release(b, 3);
  return Append3(a, factor, exponent);
}

DAG makeQuotient(DAG a, DAG b) { return hasTag(a, PROD) ? Append3(a, b, consm1) : new5(PROD, a, cons1, b, consm1); }

DAG makeDot(DAG a, DAG b) {
  if (!hasTag(a, FUNCTION) || a[1] != ini(".")) return binaryCall(ini("."), a, b);
  // `.`() . b: the empty sequence is shared by all and cannot grow.
  a[2] = a[2] == null ? new2(EXPSEQ, b) : Append2(a[2], b);
  return a;
}

DAG makePower(DAG a, DAG b) { return new3(isRationalNumber(b) ? PROD : POWER, a, b); }

DAG makeRelation(Word tagWord, DAG a, DAG b) {
  if (tagWord == swappedLessEqual) return new3(LESSEQ, b, a);
  return new3(static_cast<Tag>(tagWord), a, b);
}

DAG rawLocals() { return new2(LIST, null); }

DAG arrowProcedure(DAG parameters, DAG body) {
  DAG options = new3(EXPSEQ, ini("operator"), ini("arrow"));
  return newProcedure({.params = asSequence(parameters), .locals = rawLocals(), .options = options, .body = body});
}

DAG joinStatements(DAG statements, DAG next) {
  if (next == null) return statements;
  if (!hasTag(statements, STATSEQ)) return new3(STATSEQ, statements, next);
  return Append2(statements, next);
}

DAG makeTry(DAG body, DAG catches, DAG finallyBody) {
  Word pairs = catches ? memberCount(catches) : 0;
  DAG s = newl3(tryFirstCatch + pairs + (finallyBody ? 1 : 0), TRY, body);
  for (Word i = 0; i < pairs; ++i) s[tryFirstCatch + i] = catches[i + 1];
  if (finallyBody) s[tryFirstCatch + pairs] = finallyBody;
  return s;
}

DAG makeLoop(DAG clauses, DAG variable, DAG body) {
  auto setDefault = [&](Word field, DAG value) {
    if (!clauses[field]) clauses[field] = value;
  };
  clauses[loopVariable] = variable;
  setDefault(loopFrom, cons1);
  setDefault(loopBy, cons1);
  setDefault(loopTo, null);
  setDefault(loopWhile, ini("true"));
  clauses[loopBody] = body;
  return clauses;
}

DAG makeContainerLoop(DAG variable, DAG container, DAG condition, DAG body) {
  return new5(FOR, variable, container, condition, body);
}

DAG numcat(DAG a, DAG b, std::int32_t digitsOfB) {
  if (isZeroImmediate(a)) return b;
  if (isImmediate(a) && isImmediate(b) && digitsOfB <= 9)
    return NewInteger(std::int64_t{immediateValue(a)} * pow10[digitsOfB] + immediateValue(b));
  // Four decimal digits to a digit: a moves up by whole digits and by a factor below 10000, and the
  // digits of b fall below it without a carry.
  DAG high = isImmediate(a) ? NewSoftInt(a) : a;
  DAG low = isImmediate(b) ? NewSoftInt(b) : b;
  Word shift = static_cast<Word>(digitsOfB) / 4;
  Word factor = static_cast<Word>(pow10[digitsOfB % 4]);
  Word count = digitCount(high) + shift + 1;
  DAG sum = newl2(count + 1, INTPOS);
  Word* digits = digitsOf(sum);
  Word carry = 0;
  for (Word i = 0; i < digitCount(high); ++i) {
    Word t = digitsOf(high)[i] * factor + carry;
    digits[shift + i] = t % BASE;
    carry = t / BASE;
  }
  digits[count - 1] = carry;
  for (Word i = 0; i < digitCount(low); ++i) digits[i] += digitsOf(low)[i];
  if (carry == 0) shorten(sum, count + 1, count);
  return sum;
}

}  // namespace korel
