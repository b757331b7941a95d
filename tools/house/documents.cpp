#include <regex>
#include <set>

#include "store/tag_facts.h"
#include "tree.h"

namespace house {

namespace {

/// All ends of all paths that begin behind a slash: "store/dag.h" and "dag.h" for "src/store/dag.h".
std::set<std::string> pathEnds(const Tree& tree) {
  std::set<std::string> ends;
  for (const auto& [path, lines] : tree.files()) {
    ends.insert(path);
    for (std::size_t at = path.find('/'); at != std::string::npos; at = path.find('/', at + 1))
      ends.insert(path.substr(at + 1));
  }
  return ends;
}

/// The part of a line in which files are named in words: all of a document, the comment of code.
std::string proseOf(const std::string& path, const std::string& line) {
  if (isDocument(path)) return line;
  std::size_t comment = line.find("//");
  return comment == std::string::npos ? std::string() : line.substr(comment);
}

std::string lengthInWords(const korel::TagFacts& row) {
  std::string text = std::to_string(row.least);
  if (row.most == korel::maxLength) text += " or more";
  else if (row.most != row.least) text += " to " + std::to_string(row.most);
  if (row.parity == korel::LengthParity::odd) text += ", odd";
  if (row.parity == korel::LengthParity::even) text += ", even";
  return text;
}

std::string fieldsInWords(const korel::TagFacts& row) {
  switch (row.fields) {
    case korel::FieldsHold::all: return row.most == 1 ? "none" : "references";
    case korel::FieldsHold::raw: return "raw";
    case korel::FieldsHold::some: return "both";
  }
  return {};
}

constexpr const char* catalogue = "docs/objects.md";

}  // namespace

Findings checkPaths(const Tree& tree) {
  static const std::regex fileName(R"([A-Za-z0-9_*-]+(/[A-Za-z0-9_*-]+)*\.(h|cpp|def|krl|sh|md)\b)");
  std::set<std::string> ends = pathEnds(tree);
  Findings findings;
  for (const auto& [path, lines] : tree.files()) {
    if (!isDocument(path) && !isCode(path)) continue;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      std::string prose = proseOf(path, lines[i]);
      for (std::sregex_iterator m(prose.begin(), prose.end(), fileName), last; m != last; ++m)
        if (m->str().find('*') == std::string::npos && !ends.contains(m->str()))
          findings.push_back({path, i + 1, "names " + m->str() + ", which does not exist"});
    }
  }
  return findings;
}

Findings checkCatalogue(const Tree& tree) {
  Findings findings;
  std::map<std::string, std::vector<std::string>> rows;  // by the tag's number
  for (const std::string& line : tree.lines(catalogue))
    if (std::vector<std::string> cells = tableCells(line); cells.size() == 6) rows.try_emplace(cells[0], cells);
  for (int number = 1; number <= korel::tagCount; ++number) {
    const korel::TagFacts& facts = korel::tagFacts[number];
    auto row = rows.find(std::to_string(number));
    std::vector<std::string> should = {std::to_string(number), std::string("`") + facts.name + "`",
                                       lengthInWords(facts), fieldsInWords(facts), facts.lasting ? "yes" : ""};
    bool agrees = row != rows.end() && std::equal(should.begin(), should.end(), row->second.begin());
    if (agrees) continue;
    std::string text = "the row of this tag should begin |";
    for (const std::string& cell : should) text += " " + cell + " |";
    findings.push_back({catalogue, 0, text});
  }
  return findings;
}

}  // namespace house
