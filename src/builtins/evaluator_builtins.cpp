#include "builtins/evaluator_builtins.h"

#include <cstdio>
#include <cstring>
#include <limits>

#include "numbers/arithmetic.h"
#include "eval/statements/assign.h"
#include "eval/simplify/bindings.h"
#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/evaluate/concatenation.h"
#include "eval/evaluate/evaluate_at.h"
#include "eval/procedures/modules.h"
#include "eval/procedures/scoping.h"
#include "eval/statements/boolean.h"
#include "builtins/name_lists.h"
#include "eval/evaluate/select.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "eval/tables/tables.h"
#include "session/driver.h"
#include "frame/environment.h"
#include "frame/errors.h"
#include "frame/long_operation.h"
#include "frame/output.h"
#include "session/reset_hooks.h"
#include "numbers/integer/integer.h"
#include "store/collect/collector.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "store/long_string.h"
#include "store/vocabulary.h"
#include "text/read/source.h"

namespace korel {

namespace {


bool isEquationList(DAG x) {
  if (isTag(x, EQUATION)) return true;
  if (!isTag(x, LIST) && !isTag(x, SET)) return false;
  for (Word i = 1; i < lengthOf(x[1]); ++i)
    if (!isTag(x[1][i], EQUATION)) return false;
  return true;
}

constexpr std::int64_t manyLevels = std::numeric_limits<std::int64_t>::max();

}  // namespace

// ---- evaluation

DAG builtin::ASSERT(const BuiltinCall& call) {
  if (optASSERT == 0) return null;
  Word n = argumentCount(call);
  if (n == 0) wrongParameters(call);
  DAG condition = evalbool(singleMember(simpl(korel::eval(call.arguments[1]))));
  if (condition == ini("true")) return null;
  if (condition != ini("false"))
    KernelException("first argument of ASSERT should evaluate to true/false");
  DAG parameters = n > 1 ? simpl(korel::eval(copysub(call.arguments, 1, n - 1))) : null;
  char* text = AppendStringToString(NewLongString(), "assertion failed");
  Word count = lengthOf(parameters) - 1;
  for (Word k = 1; k <= count; ++k) {
    char mark[16];
    std::snprintf(mark, sizeof mark, ", %%%u", static_cast<unsigned>(k));
    text = AppendStringToString(text, mark);
  }
  DAG exception = newl2(count + 2, EXPSEQ);
  exception[1] = StringToMString(text);
  for (Word k = 1; k <= count; ++k) exception[k + 1] = parameters[k];
  SpecialError = assertionFailed;
  KorelException(exception);
}

DAG builtin::eval(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 1) {
    DAG lastName;
    DAG once = simpl(korel::eval(call.arguments[1], &lastName));
    return simpl(korel::eval(once, &lastName));
  }
  if (n != 2) wrongParameters(call);
  DAG second = singleMember(simpl(korel::eval(call.arguments[2])));
  if (isEquationList(second)) {
    DAG equations = isTag(second, EQUATION) ? simpl(new2(EXPSEQ, second)) : second[1];
    return evalat(equations, simpl(korel::eval(call.arguments[1])));
  }
  if (!isInteger(second) || consneg(second) || isZero(second)) wrongParameters(call);
  DAG x = call.arguments[1];
  for (std::int64_t level = FitIntoLongLong(second) ? LongLongValue(second) : manyLevels; level > 0; --level) {
    passWork(objectSteps);
    DAG next = simpl(mvalue(x));
    if (next == x) break;
    x = next;
  }
  return x;
}

DAG builtin::evalb(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return evalbool(call.arguments[1]);
}

DAG builtin::evaln(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  return simpl(evalname(call.arguments[1]));
}

DAG builtin::assigned(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  DAG x = call.arguments[1];
  if (isTag(x, TABLEREF)) {
    // The entry is looked for in what the base stands for, not in the name that was written.
    DAG base = simpl(korel::eval(x[1]));
    if (base != x[1] && (isTag(base, NAME) || isTag(base, TABLEREF))) {
      x = CopyAlg(x);
      x[1] = base;
    }
  }
  DAG name = evalname(x);
  if (isTag(name, NAME)) return truth(valuenv(name, false) != name);
  if (isTag(name, TABLEREF) || isTag(name, FUNCTION)) {
    // Asked for its last name, an entry that is a procedure or table shows itself and not its reference.
    DAG lastName;
    DAG value = simpl(korel::eval(x, &lastName));
    if (value == simpl(name)) return truth(false);
    // An indexing function may answer with the reference to another place, which is empty as well.
    if (isTag(name, TABLEREF) && isTag(value, TABLEREF) && value[1] == name[1])
      return truth(simpl(korel::eval(value, &lastName)) != value);
    return truth(true);
  }
  wrongParameters(call);
}

DAG builtin::if_(const BuiltinCall& call) {
  if (argumentCount(call) != 3) wrongParameters(call);
  DAG args = call.arguments;
  if (args[2] == args[3]) return korel::eval(args[2]);
  DAG condition = singleMember(simpl(korel::eval(args[1])));
  DAG decided = evalbool(condition);
  if (decided == ini("true")) return korel::eval(args[2]);
  if (decided == ini("false") || decided == ini("FAIL")) return korel::eval(args[3]);
  // Undecided, the call outlives the frame that its other arguments may refer to.
  return simpl(newCall(call.self, {decided, evparloc(args[2]), evparloc(args[3])}));
}

DAG builtin::traperror(const BuiltinCall& call) {
  DAG value = korel::traperror(singleMember(call.arguments));
  // Special errors go on: they cannot be trapped.
  if (SpecialError != noSpecialError) jumpOut(jumpError);
  return value;
}

DAG builtin::parse(const BuiltinCall& call) {
  Word n = argumentCount(call);
  if (n == 0 || !isText(call.arguments[1])) wrongParameters(call);
  bool statement = false, terminator = true;
  for (Word i = 2; i <= n; ++i) {
    DAG option = call.arguments[i];
    if (isTag(option, NAME) && std::strcmp(textOf(option), "statement") == 0) statement = true;
    else if (isTag(option, NAME) && std::strcmp(textOf(option), "nosemicolon") == 0) terminator = false;
    else wrongParameters(call);
  }
  DAG parsed = parsestring(textOf(call.arguments[1]), terminator);
  if (!parsed) return null;
  DAG x = nerintokorel(parsed);
  bool isStatement = !isImmediate(x) && tagOf(x) >= ASSIGN && tagOf(x) <= USE;
  if (statement) return evalstat(x, modeParse);
  if (isStatement) KernelException("invalid expression");
  return simpl(evparloc(x));
}

// ---- control

DAG builtin::RETURN_(const BuiltinCall& call) {
  jumpOutWith(jumpReturn, singleMember(call.arguments));
}

DAG builtin::ERROR_(const BuiltinCall& call) {
  // With an attribute, an error of the kernel's own that has waited until its trap runs.
  if (lengthOf(call.form) == 4 && argumentCount(call) != 0 && hasTag(call.arguments[1], STRING))
    raiseKernelException(textOf(call.arguments[1]), &call.arguments[1] + 1, static_cast<int>(argumentCount(call)) - 1);
  KorelException(argumentCount(call) == 0 ? naminstall("") : call.arguments);
}

DAG builtin::goto_(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  jumpOutWith(jumpReturn, unevaluatedCall(call));
}

DAG builtin::quit(const BuiltinCall& call) {
  Word n = argumentCount(call);
  DAG status = cons0;
  if (n > 1) wrongParameters(call);
  if (n == 1) {
    status = call.arguments[1];
    if (!isImmediate(status) || immediateValue(status) < 0 || immediateValue(status) > 255)
      KernelException("argument to `%1` must be from 0 to 255", call.self);
  }
  runHooks(HookMoment::stop);
  sendstatus();
  return switch2(newCall(call.self, {status}));
}

DAG builtin::userinfo(const BuiltinCall& call) {
  DAG args = call.arguments;
  if (lengthOf(args) < 4) args = simpl(korel::eval(args));
  if (lengthOf(args) < 4) wrongParameters(call);
  DAG level = simpl(korel::eval(args[1]));
  DAG names = simpl(evalname(args[2]));
  if (!isImmediate(level)) wrongParameters(call);
  if (isTag(names, NAME) || isTag(names, TABLEREF)) names = simpl(new2(SET, new2(EXPSEQ, names)));
  else if (!isTag(names, SET)) wrongParameters(call);
  // The information level is an entry of the table `infolevel`, of the name or of `all`.
  DAG table = ini("infolevel")[1];
  if (!table || !isTag(table, TABLE)) return null;
  bool wanted = false;
  auto reaches = [&](DAG name) {
    DAG entry = lookUpEntry(new2(EXPSEQ, name), ini("infolevel"), table).value;
    return isImmediate(entry) && immediateValue(entry) >= immediateValue(level);
  };
  wanted = reaches(ini("all"));
  for (Word i = 1; i < lengthOf(names[1]) && !wanted; ++i) wanted = reaches(names[1][i]);
  if (!wanted) return null;
  DAG pieces = simpl(korel::eval(copysub(args, 2, lengthOf(args) - 3)));
  switch2(new3(FUNCTION, naminstall("INTERFACE_INFO"), pieces));
  return null;
}

// ---- names and operands

DAG builtin::cat(const BuiltinCall& call) {
  DAG args = call.arguments;
  if (argumentCount(call) == 0) return naminstall("");
  bool joinable = true;
  for (Word i = 1; i < lengthOf(args); ++i) joinable = joinable && (isText(args[i]) || isInteger(args[i]));
  if (joinable) return korelCat(args);
  DAG joined = isTag(args[1], STRING) ? strinstall("") : naminstall("");
  for (Word i = 1; i < lengthOf(args); ++i) joined = concatenate(joined, args[i]);
  return joined;
}

DAG builtin::catenate(const BuiltinCall& call) {
  if (argumentCount(call) < 2) wrongParameters(call);
  DAG joined = call.arguments[1];
  for (Word i = 2; i < lengthOf(call.arguments); ++i) joined = concatenate(joined, call.arguments[i]);
  return joined;
}

DAG builtin::anames(const BuiltinCall& call) {
  if (argumentCount(call) > 1) wrongParameters(call);
  if (argumentCount(call) == 0) return assignedNames();
  DAG kind = call.arguments[1];
  if (isTag(kind, NAME) && std::strcmp(textOf(kind), "environment") == 0) return EnvNameSeq();
  return namesAssigned(kind);
}

DAG builtin::unames(const BuiltinCall& call) {
  if (argumentCount(call) != 0) wrongParameters(call);
  return unassignedNames();
}

DAG builtin::bind(const BuiltinCall& call) { return AppendToWithBindings(call.arguments); }
DAG builtin::unbind(const BuiltinCall& call) { return RemoveFromWithBindings(call.arguments); }

namespace {
bool hasSides(DAG x) {
  if (isImmediate(x)) return false;
  switch (tagOf(x)) {
    case EQUATION: case INEQUAT: case LESSEQ: case LESSTHAN: case RANGE: case DCOLON: return true;
    default: return false;
  }
}
}  // namespace

DAG builtin::lhs(const BuiltinCall& call) {
  if (argumentCount(call) != 1 || !hasSides(call.arguments[1])) wrongParameters(call);
  return call.arguments[1][1];
}
DAG builtin::rhs(const BuiltinCall& call) {
  if (argumentCount(call) != 1 || !hasSides(call.arguments[1])) wrongParameters(call);
  return call.arguments[1][2];
}

DAG builtin::exports(const BuiltinCall& call) {
  if (argumentCount(call) < 1) wrongParameters(call);
  DAG module = call.arguments[1];
  if (isTag(module, NAME)) module = valuenv(module, false);
  if (!isTag(module, MODULE)) wrongParameters(call);
  DAG instances = module[1];
  DAG names = CopyAlg(instances);
  for (Word i = 1; i < lengthOf(instances); ++i)
    names[i] = naminstall(textOf(declaredName(instances[i])));
  return simpl(names);
}

// ---- output

DAG builtin::print(const BuiltinCall& call) {
  switch2(new3(FUNCTION, naminstall("INTERFACE_PRINT"), call.arguments));
  return null;
}

DAG builtin::lprint(const BuiltinCall& call) {
  switch2(new3(FUNCTION, naminstall("INTERFACE_LPRINT"), call.arguments));
  return null;
}

DAG builtin::streamcall(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  DAG stream = call.arguments[1];
  if (!isTag(stream, FUNCTION) || !isTag(stream[1], NAME) ||
      std::strncmp(textOf(stream[1]), "INTERFACE_", 10) != 0)
    wrongParameters(call);
  DAG reply = switch2(stream);
  if (!reply) return null;
  if (isTag(reply, ERROR)) KorelException(simpl(reply[1]));
  return nerintokorel(reply);
}

DAG builtin::callback(const BuiltinCall& call) {
  DAG reply = switch2(new3(FUNCTION, naminstall("INTERFACE_CALLBACK"), call.arguments));
  return reply ? evalstat(nerintokorel(reply), modeParse) : null;
}

}  // namespace korel
