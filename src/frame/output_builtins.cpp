#include "frame/output_builtins.h"

#include "eval/evaluate/environment_variables.h"
#include "eval/evaluate/evaluate.h"
#include "eval/simplify/simplify.h"
#include "eval/statements/statements.h"
#include "eval/tables/tables.h"
#include "frame/errors.h"
#include "frame/output.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

DAG sendArguments(Stream stream, DAG arguments) { return switch2(newStreamCall(stream, arguments)); }

}  // namespace

DAG builtin::print(const BuiltinCall& call) {
  sendArguments(Stream::PRINT, call.arguments);
  return null;
}

DAG builtin::lprint(const BuiltinCall& call) {
  sendArguments(Stream::LPRINT, call.arguments);
  return null;
}

// ---- reports

namespace {

// The name that a report is about, or 0. What parameters and quotes stand for is looked at, names are not.
DAG subject(DAG x) {
  x = evparloc(x);
  if (isTag(x, UNEVAL)) x = evparloc(x[1]);
  if (isTag(x, TABLEREF) || isTag(x, CATENATE)) x = evalname(x);
  return isNameOrIndexed(x) ? simpl(x) : DAG();
}

// The subjects as an EXPSEQ, or 0 when one is none.
DAG subjects(DAG x) {
  x = evparloc(x);
  if (isTag(x, UNEVAL)) x = evparloc(x[1]);
  if (!isTag(x, SET)) {
    DAG single = subject(x);
    return single ? new2(EXPSEQ, single) : DAG();
  }
  DAG members = CopyAlg(x[1]);
  for (Word i = 1; i < lengthOf(members); ++i)
    if (!(members[i] = subject(members[i]))) return DAG();
  return members;
}

// Whether the entry of `infolevel` for `name` is `level` at least.
bool isReported(DAG name, DAG table, DAG level) {
  DAG entry = lookUpEntry(new2(EXPSEQ, name), ini("infolevel"), table).value;
  return isImmediate(entry) && immediateValue(entry) >= immediateValue(level);
}

}  // namespace

DAG builtin::userinfo(const BuiltinCall& call) {
  DAG args = call.arguments;
  if (lengthOf(args) < 4) args = asSequence(simpl(korel::eval(args)));
  if (lengthOf(args) < 4) wrongParameters(call);
  DAG level = simpl(korel::eval(args[1]));
  if (!isImmediate(level)) wrongParameters(call);
  DAG names = subjects(args[2]);
  if (!names) wrongParameters(call);
  DAG table = valuenv(ini("infolevel"), false);
  if (!isTag(table, TABLE)) return null;
  bool wanted = isReported(ini("all"), table, level);
  for (Word i = 1; i < lengthOf(names) && !wanted; ++i) wanted = isReported(names[i], table, level);
  if (wanted) sendArguments(Stream::INFO, simpl(korel::eval(copysub(args, 2, lengthOf(args) - 3))));
  return null;
}

// ---- questions to the front end

namespace {

bool isStreamCall(DAG x) { return isTag(x, FUNCTION) && isStreamName(x[1]); }

}  // namespace

DAG builtin::streamcall(const BuiltinCall& call) {
  if (argumentCount(call) != 1) wrongParameters(call);
  // The value of a stream call would be the answer: only its arguments are evaluated.
  DAG stream = call.arguments[1];
  stream = isStreamCall(stream) ? new3(FUNCTION, stream[1], asSequence(simpl(korel::eval(stream[2]))))
                                : singleMember(simpl(korel::eval(stream)));
  if (!isStreamCall(stream)) wrongParameters(call);
  DAG reply = switch2(stream);
  if (!reply) return null;
  if (isTag(reply, ERROR)) KorelException(simpl(reply[1]));
  return nerintokorel(reply);
}

DAG builtin::callback(const BuiltinCall& call) {
  DAG reply = sendArguments(Stream::CALLBACK, call.arguments);
  return reply ? evalstat(nerintokorel(reply), modeParse) : null;
}

}  // namespace korel
