#pragma once
// Unique names and strings, and the tables that hold them.
//
// A NAME or STRING of a given text is one object, found through `nametab` or `strtab`; a comparison of
// words compares texts. Local instances of names (`newLocalName`) stand outside the tables.

#include <string_view>

#include "store/dag.h"
#include "store/hash.h"

namespace korel {

extern DAG nametab;                              // 512 buckets, key hashstring
extern DAG strtab;                               // 512 buckets, key hashstring
extern DAG simpltab;                             // 4096 buckets at first, key hashalg
extern std::int64_t simpltabCount, strtabCount;  // pairs in them
extern DAG aliastab;                             // 256 buckets, key object
extern DAG AllIniNames;                          // 512 buckets: the names in use after the start

/// The unique object of `text`, which holds no zero, in `table` (nametab or strtab); its hash is `k`.
DAG stringhashunique(Word k, std::string_view text, DAG table);
/// Has the memory fetched that a look for the string with hash `k` will read.
void prefetchString(Word k);
/// The unique NAME (tag NAME) or STRING (any other tag) of `text`, which holds no zero.
DAG strnaminstall(std::string_view text, Tag tag);
DAG naminstall(std::string_view text);
DAG strinstall(std::string_view text);
/// The unique STRING of one character.
DAG charinstall(char c);
/// The pair of a text in its table, or `notFound`: nothing is created.
PairAddress srchname(const char* text);
PairAddress srchstring(const char* text);
PairAddress srchstringname(const char* text, Tag tag);

/// True when the simplified object `a` and the candidate `b` have the same content, in which case the
/// generation of `a` is corrected to live as long as `b` would. Procedures and statements are never
/// identical to another object.
bool identical(DAG a, DAG b);

}  // namespace korel
