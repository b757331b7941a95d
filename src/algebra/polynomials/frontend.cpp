#include "algebra/polynomials/frontend.h"

#include <numeric>

#include "algebra/float_context.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/structure/map.h"
#include "eval/structure/substitute.h"
#include "eval/types/types.h"
#include "eval/walk/walk_memory.h"
#include "frame/environment.h"
#include "frame/interrupts.h"
#include "numbers/arithmetic.h"
#include "store/append.h"
#include "store/copy_on_change.h"
#include "store/object_set.h"
#include "store/objects.h"
#include "store/tag_facts.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

// What one walk freezes.
struct Freezing {
  DAG types;           // EXPSEQ of types whose objects are looked into; 0 for sums and products
  DAG kept;            // EXPSEQ of expressions that stay
  DAG (*ofPart)(DAG);  // what parts are taken through first, or null
  DAG roots;           // EXPSEQ (base, n, base, n, ...): bases of which the n-th root is a part
  ObjectSet& met;      // names given in this walk
  DAG equations;       // EXPSEQ under construction: name = part
};

constexpr TagSet structures = TagSet{LIST, SET, EXPSEQ, RANGE} | relationTags;
constexpr TagSet atoms = numberTags | TagSet{STRING, NAME, TABLEREF};

bool looksInto(const Freezing& freezing, DAG x) {
  if (!freezing.types) return isAmong(x, pairTags);
  return !everyMember(freezing.types, [x](DAG t) { return !type(x, t); });
}

// The name of a part: the one that it was given before, here or in another walk.
DAG frozenName(Freezing& freezing, DAG part) {
  if (freezing.ofPart != nullptr) {
    part = freezing.ofPart(part);
    if (isAmong(part, atoms)) return part;
  }
  DAG name = recall(Remembering::frontend, part);
  if (name == absent) {
    name = simpl(newLocalName("O"));
    if (NAMED_PROC(ini("frontend"))) pcinsert(ini("frontend"), part, name);
  }
  if (freezing.met.insert(name)) freezing.equations = Append2(freezing.equations, simpl(new3(EQUATION, name, part)));
  return name;
}

// ---- roots: x^(1/2) and x^(1/3) are powers of x^(1/6), and so is x where it stands beside them

Word placeOfRoot(DAG roots, DAG base) {
  for (Word i = 1; i < lengthOf(roots); i += 2)
    if (roots[i] == base) return i;
  return 0;
}

// The least common denominators of the exponents of each base that has fractional ones.
void collectRoots(DAG x, DAG& roots) {
  constexpr std::int64_t most = 1000;
  if (!isAmong(x, pairTags)) return;
  checkStack();
  passWork(objectSteps);
  for (Word i = 1; i < lengthOf(x); i += 2) {
    if (isTag(x, SUM) || isInteger(x[i + 1])) {
      collectRoots(x[i], roots);
    } else if (isTag(x[i + 1], RATIONAL) && isImmediate(x[i + 1][2])) {
      const std::int64_t n = immediateValue(x[i + 1][2]);
      const Word place = placeOfRoot(roots, x[i]);
      if (place == 0) {
        if (n <= most) roots = Append3(roots, x[i], immediate(static_cast<std::int32_t>(n)));
      } else if (const std::int64_t all = std::lcm(n, std::int64_t{immediateValue(roots[place + 1])}); all <= most) {
        roots[place + 1] = immediate(static_cast<std::int32_t>(all));
      }
    }
  }
}

// The part whose n-th power is the base.
DAG rootPart(Freezing& freezing, DAG base, DAG n) {
  return frozenName(freezing, simpl(new3(PROD, base, simpl(new3(RATIONAL, cons1, n)))));
}

// A power with the fraction p/q as exponent, as (part, integer) in place of the pair at i.
void freezeFraction(Freezing& freezing, CopyOnChange& copy, Word i, DAG base, DAG exponent) {
  DAG n = exponent[2];
  if (const Word place = placeOfRoot(freezing.roots, base); place != 0) {
    DAG times = simpl(mul(exponent, freezing.roots[place + 1]));
    if (isInteger(times)) {
      n = freezing.roots[place + 1];
      exponent = times;
    }
  }
  copy.set(i, rootPart(freezing, base, n));
  copy.set(i + 1, isInteger(exponent) ? exponent : exponent[1]);
}

DAG freezeIn(Freezing& freezing, DAG x);

// The base of an integer power; the root of which a fractional one is a power.
DAG freezeProduct(Freezing& freezing, DAG x) {
  CopyOnChange copy(x);
  for (Word i = 1; i < lengthOf(x); i += 2) {
    DAG base = x[i], exponent = x[i + 1];
    if (isInteger(exponent)) {
      copy.set(i, freezeIn(freezing, base));
    } else if (isTag(exponent, RATIONAL)) {
      freezeFraction(freezing, copy, i, base, exponent);
    } else {
      copy.set(i, frozenName(freezing, simpl(new3(PROD, base, exponent))));
      copy.set(i + 1, cons1);
    }
  }
  return copy.changed() ? simpl(copy.result) : x;
}

DAG freezeFields(Freezing& freezing, DAG x, Word from, Word step) {
  DAG result = withFields(x, from, step, [&](DAG field) { return freezeIn(freezing, field); });
  return result == x ? x : simpl(result);
}

DAG freezeIn(Freezing& freezing, DAG x) {
  if (isNameOrIndexed(x) && lengthOf(freezing.roots) > 1)
    if (const Word place = placeOfRoot(freezing.roots, x); place != 0)
      return simpl(new3(PROD, rootPart(freezing, x, freezing.roots[place + 1]), freezing.roots[place + 1]));
  if (isAmong(x, atoms) || isMember(x, freezing.kept)) return x;
  checkStack();
  passWork(objectSteps);
  if (isTag(x, LIST) || isTag(x, SET)) {
    DAG members = freezeIn(freezing, x[1]);
    return members == x[1] ? x : simpl(withField(x, 1, members));
  }
  if (isAmong(x, structures)) return freezeFields(freezing, x, 1, 1);
  if (isTag(x, PROD) && lengthOf(x) == 3 && isInteger(x[2])) return freezeProduct(freezing, x);
  if (!looksInto(freezing, x)) return frozenName(freezing, x);
  if (isTag(x, SUM)) return freezeFields(freezing, x, 1, 2);
  if (isTag(x, PROD)) return freezeProduct(freezing, x);
  return simpl(MapFunction({[](DAG operand, void* state) { return freezeIn(*static_cast<Freezing*>(state), operand); },
                            &freezing, OperandWalk::mapping},
                           x));
}

Frozen freezeWith(DAG x, DAG types, DAG kept, DAG (*ofPart)(DAG)) {
  return withWalkMemory<ObjectSet>([&](ObjectSet& met) {
    Freezing freezing{types, kept, ofPart, new1(EXPSEQ), met, new1(EXPSEQ)};
    if (ofPart != nullptr) collectRoots(x, freezing.roots);
    DAG expression = freezeIn(freezing, x);
    return Frozen{expression, simpl(freezing.equations)};
  });
}

// The members of entry `i` of the rules, or an empty sequence.
DAG ruleMembers(DAG rules, Word i) {
  if (memberCount(rules) < i) return null;
  DAG entry = rules[i];
  return isTag(entry, LIST) || isTag(entry, SET) ? entry[1] : asSequence(entry);
}

}  // namespace

Frozen freeze(DAG x, DAG (*ofPart)(DAG part)) { return freezeWith(x, DAG(), null, ofPart); }

DAG thaw(DAG x, DAG equations) { return equations == null ? x : subs1(equations, x); }

DAG builtin::frontend(const BuiltinCall& call) {
  const Word n = argumentCount(call);
  if (n < 2 || n > 3 || !isTag(call.arguments[2], LIST) || (n == 3 && !isTag(call.arguments[3], LIST)))
    wrongParameters(call);
  DAG types{}, kept = null;
  if (n == 3) {
    types = ruleMembers(call.arguments[3][1], 1);
    kept = ruleMembers(call.arguments[3][1], 2);
  }
  Frozen frozen = freezeWith(call.arguments[2][1], types, kept, nullptr);
  DAG value = simpl(eval(simpl(new3(FUNCTION, call.arguments[1], asSequence(frozen.expression)))));
  return thaw(value, frozen.thaw);
}

}  // namespace korel
