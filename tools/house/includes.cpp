#include <algorithm>
#include <optional>

#include "tree.h"

namespace house {

namespace {

bool isBlank(const std::string& line) { return line.find_first_not_of(' ') == std::string::npos; }

/// The lines from the first include to the last one that only blank lines and includes separate from it.
struct Block {
  std::size_t first, end;
};
std::optional<Block> blockOf(const Lines& lines) {
  std::size_t first = 0;
  while (first < lines.size() && includeOf(lines[first]).name.empty()) {
    // What a condition encloses stays where it is.
    if (lines[first].starts_with("#if")) return std::nullopt;
    ++first;
  }
  if (first == lines.size()) return std::nullopt;
  std::size_t end = first;
  for (std::size_t i = first; i < lines.size(); ++i) {
    Include include = includeOf(lines[i]);
    if (include.name.ends_with(".def")) break;
    if (!include.name.empty()) end = i + 1;
    else if (!isBlank(lines[i])) break;
  }
  return Block{first, end};
}

/// Folder and name of a path without its ending: "src/store/hash.cpp" is "src/store/hash".
std::string withoutEnding(const std::string& path) { return path.substr(0, path.rfind('.')); }

/// The header that a source of src/ serves: that of its own name, otherwise the one in its folder whose name is
/// the longest beginning of the source's (simplify.h for simplify_sum.cpp). "" when there is none.
std::string ownHeader(const Tree& tree, const std::string& path) {
  if (!isInSrc(path) || !isSource(path)) return {};
  for (std::string stem = withoutEnding(path);;) {
    if (tree.has(stem + ".h")) return (stem + ".h").substr(4);
    std::size_t cut = stem.find_last_of("_/");
    if (cut == std::string::npos || stem[cut] == '/') return {};
    stem.resize(cut);
  }
}

/// The includes of the block, in the order in which they should stand.
Lines sorted(const Tree& tree, const std::string& path, const Block& block) {
  const Lines& lines = tree.lines(path);
  std::string own = ownHeader(tree, path);
  Lines groups[3];  // own, system, project
  for (std::size_t i = block.first; i < block.end; ++i) {
    Include include = includeOf(lines[i]);
    if (include.name.empty()) continue;
    groups[include.system ? 1 : include.name == own ? 0 : 2].push_back(lines[i]);
  }
  Lines result;
  for (Lines& group : groups) {
    if (group.empty()) continue;
    std::ranges::sort(group, {}, [](const std::string& line) { return includeOf(line).name; });
    group.erase(std::unique(group.begin(), group.end()), group.end());
    if (!result.empty()) result.emplace_back();
    result.insert(result.end(), group.begin(), group.end());
  }
  return result;
}

/// Includes behind the block that no condition encloses: they belong to it.
void checkStrays(const std::string& path, const Lines& lines, const Block& block, Findings& findings) {
  int conditions = 0;
  for (std::size_t i = block.end; i < lines.size(); ++i) {
    if (lines[i].starts_with("#if")) ++conditions;
    if (lines[i].starts_with("#endif")) --conditions;
    Include include = includeOf(lines[i]);
    if (conditions == 0 && !include.name.empty() && !include.name.ends_with(".def"))
      findings.push_back({path, i + 1, "stands apart from the other includes"});
  }
}

}  // namespace

Include includeOf(const std::string& line) {
  constexpr std::string_view word = "#include ";
  if (!line.starts_with(word) || line.size() <= word.size()) return {};
  bool system = line[word.size()] == '<';
  std::size_t begin = word.size() + 1, end = line.find(system ? '>' : '"', begin);
  if (end == std::string::npos) return {};
  return {line.substr(begin, end - begin), system};
}

Findings checkIncludeOrder(const Tree& tree) {
  Findings findings;
  for (const auto& [path, lines] : tree.files()) {
    if (!isHeader(path) && !isSource(path)) continue;
    std::optional<Block> block = blockOf(lines);
    if (!block) continue;
    Lines should = sorted(tree, path, *block);
    Lines are(lines.begin() + block->first, lines.begin() + block->end);
    if (are != should) findings.push_back({path, block->first + 1, "includes are out of order (make format)"});
    std::string own = ownHeader(tree, path);
    if (!own.empty() && own == withoutEnding(path).substr(4) + ".h" && includeOf(should[0]).name != own)
      findings.push_back({path, block->first + 1, "does not include its own header"});
    checkStrays(path, lines, *block, findings);
  }
  return findings;
}

Lines sortedIncludes(const Tree& tree, const std::string& path) {
  Lines lines = tree.lines(path);
  std::optional<Block> block = blockOf(lines);
  if (!block) return lines;
  Lines should = sorted(tree, path, *block);
  lines.erase(lines.begin() + block->first, lines.begin() + block->end);
  lines.insert(lines.begin() + block->first, should.begin(), should.end());
  return lines;
}

}  // namespace house
