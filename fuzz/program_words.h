#pragma once
// The texts that random programs are chosen from: names, operators, options, constants, odd ones among them.

#include <cstddef>

#include "store/standard_names.h"

namespace korel::fuzz {

inline constexpr const char* variables[] = {"a", "b", "c", "x", "y", "z", "i", "j", "n", "v"};
inline constexpr const char* functions[] = {"f", "g", "h", "p", "q", "m"};
inline constexpr const char* tables[] = {"t", "u", "T"};
inline constexpr const char* oddNames[] = {"`a b`", "`if`", "`*`", "`+`", "``",    "`x~`", "%",     "%%",
                                           "%%%",   "_x",   "~y",  "`;`", "`\\n`", "a||b", "`f/g`", "NULL"};
inline constexpr const char* keyNames[] = {
    "args",  "nargs", "procname", "true",       "false",     "FAIL",          "infinity", "undefined",
    "Pi",    "I",     "Digits",   "printlevel", "lasterror", "lastexception", "Order",    "libname",
    "`mod`", "gamma", "anything", "Normalizer", "NULL",      "thismodule",    "Catalan",  "constants"};
inline constexpr const char* environmentNames[] = {
    "Digits",   "printlevel",       "Order", "_EnvA", "_Env1", "%", "`mod`", "Normalizer", "Testzero",
    "Rounding", "UseHardwareFloats"};
inline constexpr const char* typeNames[] = {"integer",
                                            "posint",
                                            "name",
                                            "list",
                                            "set",
                                            "anything",
                                            "nothing",
                                            "string",
                                            "`=`",
                                            "`+`",
                                            "`*`",
                                            "function",
                                            "procedure",
                                            "numeric",
                                            "symbol",
                                            "float",
                                            "table",
                                            "list(integer)",
                                            "{name, integer}",
                                            "[integer, name]",
                                            "identical(x)",
                                            "evaln",
                                            "uneval",
                                            "f(integer)",
                                            "`..`",
                                            "module",
                                            "boolean",
                                            "rational",
                                            "complex",
                                            "indexed",
                                            "x",
                                            "5",
                                            "list(list)",
                                            "`and`",
                                            "fraction"};
inline constexpr const char* operators[] = {
    "+",       "-",       "*",           "/",     "^", "=",  "<>",  "<", "<=", ">",    ">=",   "..", " and ", " or ",
    " union ", " minus ", " intersect ", " mod ", "@", "@@", " . ", "$", "::", " &+ ", " &* ", ", ", "**"};
inline constexpr const char* optionNames[] = {"remember",        "remember, system", "operator",
                                              "operator, arrow", "`Copyright me`",   "trace",
                                              "inline",          "remember = 3",     "package"};
inline constexpr const char* kernelOptions[] = {
    "ASSERT",  "assertlevel", "bytesalloc", "bytesused", "cputime",      "dagtag",     "gcbytesavail",
    "gcfreq",  "gctimes",     "inline",     "level",     "maxdigits",    "printbytes", "printlevel",
    "profile", "system",      "version",    "wordsize",  "nosuchoption", "limits",     "opaquemodules"};
inline constexpr const char* eventNames[] = {
    "invalid_operation", "division_by_zero", "overflow", "underflow", "inexact", "all", "real_to_complex"};
// Built-ins that reach outside of the language, or end it.
inline constexpr std::string_view excludedBuiltins[] = {"pointto", "system", "ssystem", "writeto", "appendto"};
inline constexpr const char* broken[] = {")",   "]", "end", "fi", "od", "then",          ":=", "\"",    "`",
                                         "'",   "(", "if",  "&",  "%1", "1e99999999999", "..", "proc(", "local",
                                         "\\n", "?", "#"};
inline constexpr const char* strings[] = {"\"\"",    "\"abc\"", "\"%1 %2\"", "\"a\\nb\\\"\"", "\"%a %s\"",
                                          "\"x+y\"", "\"for\"", "\"1;2\"",   "\"\\\\\"",      "\"%0 %-1 %%\""};
inline constexpr const char* numbers[] = {"0",
                                          "1",
                                          "-1",
                                          "2",
                                          "3",
                                          "7",
                                          "10",
                                          "-12",
                                          "99",
                                          "1/2",
                                          "-7/3",
                                          "0.5",
                                          "-1.5e3",
                                          "1.",
                                          "1e-5",
                                          "2^31",
                                          "2^30-1",
                                          "-2^30",
                                          "10^25",
                                          "12345678901234567890",
                                          "1e1000",
                                          "Float(infinity)",
                                          "Float(undefined)",
                                          "Float(3,undefined)",
                                          "I",
                                          "2-3*I",
                                          "0.",
                                          "-0.",
                                          "1e2147483646",
                                          "-2^31",
                                          "4294967296",
                                          "1.0*I",
                                          "infinity",
                                          "-infinity",
                                          "undefined"};

template <std::size_t n>
using Texts = const char* const (&)[n];

}  // namespace korel::fuzz
