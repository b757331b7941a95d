#pragma once
// The names that a person may mean: reserved words, built-ins, names with values, and what the library holds, none of
// which is loaded for it. Completion and help look here.

#include <string>
#include <string_view>
#include <vector>

namespace korel {

/// The names that begin with `prefix`, sorted, each once.
std::vector<std::string> namesBeginningWith(std::string_view prefix);
/// Files and folders, these with a slash behind them, whose path begins with `prefix`.
std::vector<std::string> filesBeginningWith(const std::string& prefix);
/// The names nearest to `word`, for one that is misspelt; the nearest first, at most `count`.
std::vector<std::string> namesNear(std::string_view word, std::size_t count);

}  // namespace korel
