#pragma once
// Texts as sequences of characters: searching, parts, order.

#include <cstdint>

#include "frame/builtin_call.h"
#include "store/dag.h"

namespace korel {

/// Index (from 0) of the first place in `text` of length `n` where `pattern` of length `m` stands, or -1;
/// 0 for an empty pattern. Boyer-Moore-Horspool: the window moves by the distance that the character
/// under its end allows, which for a long pattern is most of its length.
std::int64_t SearchText(const char* pattern, std::int64_t m, const char* text, std::int64_t n);
/// The same without regard to case.
std::int64_t searchtext(const char* pattern, std::int64_t m, const char* text, std::int64_t n);

namespace builtin {
/// SearchText(p, t), SearchText(p, t, i..j), and searchtext: the position from 1 in the whole text, 0 for
/// none. Errors: "invalid arguments for searchtext", "invalid range argument for searchtext",
/// "incorrect searching range in searchtext".
DAG SearchText(const BuiltinCall& call);
DAG searchtext(const BuiltinCall& call);
/// substring(text, i), substring(text, i..j): that part of a name or string, of the same kind.
/// Error: "improper op or subscript selector".
DAG substring(const BuiltinCall& call);
/// lexorder(a, b): a doesn't stand behind b in the order of their characters' codes.
DAG lexorder(const BuiltinCall& call);
}  // namespace builtin

}  // namespace korel
