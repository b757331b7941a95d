#include <optional>
#include <regex>

#include "tree.h"

namespace house {

namespace {

constexpr std::size_t longestFile = 700, longestFunction = 80, longestLine = 120;

bool opensRecord(const std::string& line) {
  static const std::regex record("^(template.*|class .*|struct .*|union .*)");
  return std::regex_match(line, record);
}

std::size_t indent(const std::string& line) { return line.find_first_not_of(' '); }

/// Functions end at a line "}" at the margin, member functions at one two blanks further in, and begin at the
/// nearest line above with the same margin: true of code that `make format` has laid out.
void checkFunctions(const std::string& path, const Lines& lines, Findings& findings) {
  std::optional<std::size_t> begin[2];  // the function, the member function that may be open
  bool inRecord = false;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string& line = lines[i];
    std::size_t margin = indent(line);
    if (margin != 0 && margin != 2) continue;
    std::optional<std::size_t>& open = begin[margin / 2];
    if (line == std::string(margin, ' ') + "}") {
      if (open && (margin == 0 || inRecord) && i - *open + 1 > longestFunction)
        findings.push_back({path, *open + 1, "function of " + std::to_string(i - *open + 1) + " lines"});
      open.reset();
      continue;
    }
    bool opens = line[margin] != '}' && line[margin] != '#' && line[margin] != '/';
    if (opens) open = i;
    if (margin == 0 && opens) inRecord = opensRecord(line);
  }
}

}  // namespace

Findings checkSizes(const Tree& tree) {
  Findings findings;
  for (const auto& [path, lines] : tree.files()) {
    if (!isInSrc(path) || !isCode(path)) continue;
    if (lines.size() > longestFile) findings.push_back({path, 0, "file of " + std::to_string(lines.size()) + " lines"});
    checkFunctions(path, lines, findings);
    for (std::size_t i = 0; i < lines.size(); ++i)
      if (lines[i].size() > longestLine && !path.ends_with(".def"))
        findings.push_back({path, i + 1, "line of " + std::to_string(lines[i].size()) + " characters"});
  }
  return findings;
}

}  // namespace house
