#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <unistd.h>

#include "tree.h"

namespace house {

namespace {

constexpr std::size_t width = 120;
constexpr const char* fenceBegin = "// clang-format off";
constexpr const char* fenceEnd = "// clang-format on";

std::size_t marginOf(const std::string& line) {
  std::size_t margin = line.find_first_not_of(' ');
  return margin == std::string::npos ? 0 : margin;
}

bool isComment(const std::string& line) { return line.compare(marginOf(line), 2, "//") == 0; }

/// Encloses each table, an initializer that begins with its column headings in a comment, in marks that clang-format
/// passes over.
Lines fenceTables(const Lines& lines) {
  Lines out;
  std::string end;  // the last line of the table that is open
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::string margin(marginOf(lines[i]), ' ');
    bool begins = end.empty() && lines[i].ends_with("= {") && i + 1 < lines.size() && isComment(lines[i + 1]);
    if (begins) {
      out.push_back(margin + fenceBegin);
      end = margin + "};";
    }
    out.push_back(lines[i]);
    if (lines[i] == end) {
      out.push_back(margin + fenceEnd);
      end.clear();
    }
  }
  return out;
}

Lines withoutFences(const Lines& lines) {
  Lines out;
  for (const std::string& line : lines) {
    std::string text = line.substr(marginOf(line));
    if (text != fenceBegin && text != fenceEnd) out.push_back(line);
  }
  return out;
}

Lines throughClangFormat(const Tree& tree, const std::string& path, const Lines& lines) {
  std::string top = std::filesystem::absolute(tree.top()).string();
  std::string copy = (std::filesystem::temp_directory_path() / "house_format_XXXXXX").string();
  int file = mkstemp(copy.data());
  if (file < 0) std::exit(2);
  close(file);
  std::ofstream out(copy);
  for (const std::string& line : lines) out << line << '\n';
  out.close();
  std::string command = "clang-format --assume-filename='" + top + "/" + path + "' < " + copy;
  std::FILE* pipe = popen(command.c_str(), "r");
  std::string text;
  char piece[4096];
  for (std::size_t n; pipe != nullptr && (n = std::fread(piece, 1, sizeof piece, pipe)) > 0;) text.append(piece, n);
  bool failed = pipe == nullptr || pclose(pipe) != 0;
  std::filesystem::remove(copy);
  if (failed) {
    std::fprintf(stderr, "house: clang-format fails on %s\n", path.c_str());
    std::exit(2);
  }
  Lines result;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = text.find('\n', at);
    result.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return result;
}

// ---- labels of one group of cases, which clang-format gives a line each

/// "  case A: rest": margin, label and rest.
struct Label {
  std::string margin, label, rest;
};
bool readLabel(const std::string& line, Label& out) {
  static const std::regex pattern(R"(^( *)(case (?:[^:']|::|'(?:\\.|[^'\\])+')+:|default:)(?: (.*))?$)");
  std::smatch match;
  if (line.find("case ") == std::string::npos && line.find("default:") == std::string::npos) return false;
  if (!std::regex_match(line, match, pattern)) return false;
  out = {match[1], match[2], match[3]};
  return true;
}

/// Adds one group: on one line with what follows when that fits, otherwise as many labels a line as do.
void layOut(const Lines& labels, const std::string& margin, const std::string& rest, Lines& out) {
  std::string line = margin + labels[0];
  bool oneLine = true;
  for (std::size_t i = 1; i < labels.size(); ++i) {
    if (line.size() + 1 + labels[i].size() <= width) {
      line += ' ' + labels[i];
      continue;
    }
    out.push_back(line);
    line = margin + labels[i];
    oneLine = false;
  }
  oneLine = oneLine && line.size() + 1 + rest.size() <= width;
  if (rest.empty()) {
    out.push_back(line);
  } else if (rest == "{" || rest.starts_with("//") || labels.size() == 1 || oneLine) {
    out.push_back(line + ' ' + rest);
  } else {
    out.push_back(line);
    out.push_back(margin + "  " + rest);
  }
}

Lines joinCaseLabels(const Lines& lines) {
  Lines out;
  bool fenced = false;
  for (std::size_t i = 0; i < lines.size();) {
    std::string text = lines[i].substr(marginOf(lines[i]));
    if (text == fenceBegin || text == fenceEnd) fenced = text == fenceBegin;
    Label first;
    if (fenced || !readLabel(lines[i], first)) {
      out.push_back(lines[i++]);
      continue;
    }
    Lines labels = {first.label};
    std::string rest = first.rest;
    ++i;
    for (Label next; rest.empty() && i < lines.size() && readLabel(lines[i], next) && next.margin == first.margin;
         ++i) {
      labels.push_back(next.label);
      rest = next.rest;
    }
    layOut(labels, first.margin, rest, out);
  }
  return out;
}

/// Column of the comment behind the code of a line, or npos.
std::size_t trailingComment(const std::string& line) {
  std::size_t at = line.rfind("  // ");
  return at == std::string::npos || line.find_first_not_of(' ') >= at ? std::string::npos : at + 2;
}

/// The code of a line with its comment behind it, without the blanks between them.
std::size_t codeLength(const std::string& line) { return line.find_last_not_of(' ', trailingComment(line) - 1) + 1; }

/// Where labels have moved up to their neighbours, the comments behind a run of cases stand below each other again.
void alignCaseComments(Lines& lines) {
  Label label;
  auto hasComment = [&](std::size_t i) {
    return i < lines.size() && trailingComment(lines[i]) != std::string::npos && readLabel(lines[i], label);
  };
  for (std::size_t begin = 0; begin < lines.size();) {
    std::size_t end = begin, column = 0;
    bool joined = false;
    for (; hasComment(end); ++end) {
      column = std::max(column, codeLength(lines[end]) + 2);
      joined = joined || label.rest.starts_with("case ");
    }
    for (std::size_t i = begin; joined && i < end; ++i) {
      std::size_t code = codeLength(lines[i]);
      if (column + lines[i].size() - trailingComment(lines[i]) <= width)
        lines[i].replace(code, trailingComment(lines[i]) - code, column - code, ' ');
    }
    begin = end + 1;
  }
}

}  // namespace

Lines formatted(const Tree& tree, const std::string& path) {
  Lines lines = fenceTables(sortedIncludes(tree, path));
  lines = withoutFences(joinCaseLabels(throughClangFormat(tree, path, lines)));
  alignCaseComments(lines);
  return lines;
}

Findings checkFormat(const Tree& tree) {
  Findings findings;
  for (const auto& [path, lines] : tree.files()) {
    if (!isHeader(path) && !isSource(path)) continue;
    Lines should = formatted(tree, path);
    if (should == lines) continue;
    std::size_t line = 0;
    while (line < lines.size() && line < should.size() && lines[line] == should[line]) ++line;
    findings.push_back({path, line + 1, "is laid out otherwise (make format)"});
  }
  return findings;
}

}  // namespace house
