#pragma once
// The source tree as text: files by path, their lines, their includes.
//
// Paths are relative to the top of the tree and written with slashes. A room is a folder of src/.

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace house {

using Lines = std::vector<std::string>;

/// Every source, header and .def file below src, programs, tests, bench, fuzz and tools, and every document.
class Tree {
 public:
  explicit Tree(std::string top);

  const std::map<std::string, Lines>& files() const { return files_; }
  bool has(const std::string& path) const { return files_.contains(path); }
  const Lines& lines(const std::string& path) const { return files_.at(path); }
  void write(const std::string& path, const Lines& lines);
  const std::string& top() const { return top_; }

 private:
  std::string top_;
  std::map<std::string, Lines> files_;
};

/// What is wrong at a line of a file (0: with the file as a whole).
struct Finding {
  std::string path;
  std::size_t line;
  std::string text;
};
using Findings = std::vector<Finding>;

inline bool isHeader(std::string_view path) { return path.ends_with(".h"); }
inline bool isSource(std::string_view path) { return path.ends_with(".cpp"); }
inline bool isCode(std::string_view path) { return isHeader(path) || isSource(path) || path.ends_with(".def"); }
inline bool isInSrc(std::string_view path) { return path.starts_with("src/"); }
inline bool isDocument(std::string_view path) { return path.ends_with(".md"); }
/// Cells of a row of a table in a document, without the blanks around them; empty for any other line.
std::vector<std::string> tableCells(const std::string& line);

// ---- what the checks find

/// Own header, system headers, project headers: each group sorted, a blank line between the groups.
Findings checkIncludeOrder(const Tree& tree);
/// No header includes a room above its own, and none reaches itself.
Findings checkFloors(const Tree& tree);
/// Upward includes of sources against the list of doors in docs/architecture.md, both ways.
Findings checkDoors(const Tree& tree);
/// Files, functions and lines of src/ that are too long.
Findings checkSizes(const Tree& tree);
/// Files that documents and comments name exist.
Findings checkPaths(const Tree& tree);
/// The table of tags in docs/objects.md says what tags.def says.
Findings checkCatalogue(const Tree& tree);
/// `make format` would change nothing. Needs clang-format.
Findings checkFormat(const Tree& tree);

// ---- files as they should be

/// With the includes in order.
Lines sortedIncludes(const Tree& tree, const std::string& path);
/// The same, laid out by clang-format. It leaves tables alone, and the labels of one group of cases stand side by
/// side.
Lines formatted(const Tree& tree, const std::string& path);

/// What a line includes.
struct Include {
  std::string name;  // empty: the line is no include
  bool system = false;
};
Include includeOf(const std::string& line);

}  // namespace house
