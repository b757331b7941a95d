#pragma once
// XML documents as expressions: a tree of calls, one for each element.
//
//   <name a="1" b="x">children</name>   OM_name(children), with the attributes "a" = "1", "b" = "x" as third word
//   text                                a STRING, or an integer where the reader is told so
//   <!-- t -->                          COMMENT(" t ")
//   <![CDATA[t]]>                       CDATA("t")
//   <!name text>                        SPECIAL_name("text")
//
// Nothing here knows what a vocabulary of mathematics means by its elements: the library translates.

#include "store/dag.h"
#include "text/print/sinks.h"

namespace korel {

enum XmlWriterFlag : int {
  xmlQuoteSpaced = 1,    // a string with white space in it stands in double quotes
  xmlWriteEntities = 2,  // < > & " ' as entities
  xmlBareIntegers = 4,   // integer values of attributes without quotes
};
enum XmlReaderFlag : int {
  xmlKeepSpace = 1,     // white space around text stays
  xmlReadEntities = 2,  // the five entities are decoded, once
  xmlIntegers = 4,      // text and values that read as integers become integers
};

/// Writes `x` as XML on one line. Errors: "integer, string, or function call expected", "named function expected",
/// "string argument expected for COMMENT" (CDATA, SPECIAL), "invalid function name", "invalid attribute".
void PrintOpenMath(DAG x, Sink sink, void* closure, int flags);

/// Told of a failure: the line, counted from 1, and the message, which ends in " on line N".
using XmlFailure = void (*)(void* context, int line, const char* message);
/// Reads one element; simplified. The character behind it goes back by `unget`. A character 0 or -1 ends the input. 0
/// after a failure, which `failed` has been told. Null functions: the standard input, nothing, and lines
/// "XML(line): message" on the standard error stream.
DAG ParseOpenMath(int (*get)(void* context), void (*unget)(void* context, int c), XmlFailure failed, int flags,
                  void* context);

/// A letter or `_`; those, digits, `.` and `-`.
bool beginsXmlName(int c);
bool continuesXmlName(int c);

}  // namespace korel
