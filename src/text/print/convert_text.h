#pragma once
// Objects as names and strings.

#include "store/dag.h"

namespace korel {

/// `object` as a STRING: itself, or its text with nothing quoted.
DAG ConvertToString(DAG object);
/// `object` as a NAME: itself unless `quoted`, or its text, written as a name or string has to be
/// written to read it back when `quoted`, and bare otherwise.
DAG ConvertToName(DAG object, bool quoted);
/// The STRING that `format` gives for `values`, one value or an EXPSEQ of them: %a prints an
/// object, %A the same with nothing quoted, %s a text, %d an integer, %% a percent sign. Errors:
/// "number of parameters does not match format".
DAG FormattedConvertToString(const char* format, DAG values);

}  // namespace korel
