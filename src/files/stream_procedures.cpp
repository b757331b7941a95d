// The procedures of the library that read and write, where a program calls them once a line or once a number: each is
// an operation of `iolib`, without the number (bench/files.sh).

#include "files/iolib.h"
#include "library/native/native.h"
#include "store/constants.h"
#include "store/objects.h"
#include "store/vocabulary.h"

namespace korel {

namespace {

/// The operation on what the procedure was given.
DAG run(DAG (*operation)(const IolibCall& call), const BuiltinCall& call) { return operation({call.arguments, 0}); }

/// The same with `default` as the first operand.
DAG runOnDefault(DAG (*operation)(const IolibCall& call), const BuiltinCall& call) {
  DAG operands = space_insert(call.arguments, 0, 1);
  operands[1] = ini("default");
  return operation({operands, 0});
}

}  // namespace

DAG native::printfProcedure(const BuiltinCall& call) {
  runOnDefault(iolib::formattedWrite, call);
  return null;
}
DAG native::fprintfProcedure(const BuiltinCall& call) { return run(iolib::formattedWrite, call); }
DAG native::sprintfProcedure(const BuiltinCall& call) { return run(iolib::formattedWriteToString, call); }
DAG native::scanfProcedure(const BuiltinCall& call) { return runOnDefault(iolib::formattedRead, call); }
DAG native::fscanfProcedure(const BuiltinCall& call) { return run(iolib::formattedRead, call); }
DAG native::sscanfProcedure(const BuiltinCall& call) { return run(iolib::formattedReadFromString, call); }

DAG native::readlineProcedure(const BuiltinCall& call) {
  return argumentCount(call) == 0 ? runOnDefault(iolib::readLineOperation, call) : run(iolib::readLineOperation, call);
}
DAG native::writelineProcedure(const BuiltinCall& call) { return run(iolib::writeLines, call); }
DAG native::readbytesProcedure(const BuiltinCall& call) { return run(iolib::readBytesOperation, call); }
DAG native::writebytesProcedure(const BuiltinCall& call) { return run(iolib::writeBytes, call); }
DAG native::feofProcedure(const BuiltinCall& call) { return truth(run(iolib::isAtEnd, call) == cons1); }
DAG native::fileposProcedure(const BuiltinCall& call) { return run(iolib::position, call); }

}  // namespace korel
