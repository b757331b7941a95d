#pragma once
// Output to a file in place of the screen: `writeto` and `appendto`. The front end does it; here is known which file.

#include "frame/builtin_call.h"

namespace korel {

/// Whether output goes to the file of that path.
bool isRedirectedTo(const char* path);
/// Part of the start.
void forgetRedirection();
/// Sends the output to the file that `name`, a NAME or STRING, stands for, or back to the screen for `terminal`.
/// Errors: "name or string expected for `%1` filename", "file is in use", `cannot open file "%1" to %2 to`, those of
/// `FullyQualifyFile`, "redirection is disabled".
void writeappend(DAG name, bool append);

namespace builtin {
/// writeto(file), appendto(file): `null`.
DAG writeto(const BuiltinCall& call);
DAG appendto(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
