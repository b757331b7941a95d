#pragma once
// The C text of a wrapper, and the file that it goes to.
//
// The text is collected first. The file lies in the present directory and is named from the function; one that
// holds the same text is used again, with its shared object. A file of other text, be it a wrapper or somebody's own,
// is never written over: the next number is tried. Files are written aside and get their name when they are complete,
// so that several processes can define in one directory.

#include "external/compile_module.h"
#include "store/dag.h"

namespace korel {

/// Begins the text of `wrapper`, the wrapper of a function whose file is named from `function`.
void BeginC(const char* function, const char* wrapper);
/// The head of the wrapper's C function.
void BeginCFunc(const char* name);
void AppendToC(const char* text);
void AppendIntegerToC(long value);
void AppendCharToC(char c);
/// Appends as printf does.
[[gnu::format(printf, 1, 2)]] void AppendFormatToC(const char* format, ...);
void CNewLine();
void BeginCBlock();
void EndCBlock();

/// The text so far.
const char* textOfC();
/// Ends the text and sees to the file. Error: "could not create wrapper source file".
void EndC(const CompileOptions& options);
/// Compiles the file, unless that has been done before, and links it; the path of the shared object. Errors: those of
/// `CompileModule`.
const char* CompileC(const CompileOptions& options);

}  // namespace korel
