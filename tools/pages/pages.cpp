// The pages of help, held against the program:
//
//     pages check KORELTTY FILE...      runs the examples of all pages; tells each whose output differs
//     pages update KORELTTY FILE...     writes what the program shows behind each example (read it before you commit)
//     pages names FILE...               lists the names that have a page
//
// A page goes from a heading `## name, name` to the next. The lines of an example begin with `    > `, and what the
// program shows follows them, as deep. The statements of a page run in one session, which begins anew with each page.
// `check` also asks that a page has a way to call, an example (or a line `Not shown here: reason`), and names behind
// `See also:` that have pages themselves.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

const std::string pageMark = "## ", promptMark = "    > ", indent = "    ", marker = "@@@@";

struct Example {
  Lines statement;  // without the mark
  Lines shown;      // without the indent
};

// A file in order: lines as they stand, and examples between them.
struct Piece {
  std::string line;
  bool isExample = false;
  Example example;
};
struct Page {
  Lines names;
  std::vector<Piece> pieces;  // the first page of a file is what stands before any heading
};

bool startsWith(const std::string& s, const std::string& mark) { return s.compare(0, mark.size(), mark) == 0; }

Lines linesOf(std::istream& in) {
  Lines lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

Lines namesIn(std::string text) {
  Lines names;
  std::string name;
  for (char c : text + ",") {
    if (c != ',' && c != ' ' && c != '`') name += c;
    if (c != ',' || name.empty()) continue;
    names.push_back(name);
    name.clear();
  }
  return names;
}

bool endsStatement(const std::string& line) {
  const std::size_t last = line.find_last_not_of(" ");
  return last != line.npos && (line[last] == ';' || line[last] == ':');
}

std::vector<Page> pagesOf(const Lines& lines) {
  std::vector<Page> pages(1);
  for (std::size_t i = 0; i < lines.size();) {
    if (startsWith(lines[i], pageMark)) pages.push_back({namesIn(lines[i].substr(pageMark.size())), {}});
    if (!startsWith(lines[i], promptMark)) {
      pages.back().pieces.push_back({lines[i++], false, {}});
      continue;
    }
    Piece piece{"", true, {}};
    while (i < lines.size() && startsWith(lines[i], promptMark)) {
      piece.example.statement.push_back(lines[i++].substr(promptMark.size()));
      if (endsStatement(piece.example.statement.back())) break;
    }
    while (i < lines.size() && !startsWith(lines[i], promptMark) && startsWith(lines[i], indent))
      piece.example.shown.push_back(lines[i++].substr(indent.size()));
    pages.back().pieces.push_back(piece);
  }
  return pages;
}

// What the program shows for each example of the pages, in order.
std::vector<Lines> run(const std::string& program, const std::vector<Page>& pages) {
  namespace fs = std::filesystem;
  char scratch[] = "/tmp/korel_pages_XXXXXX";
  if (mkdtemp(scratch) == nullptr) return {};
  const std::string place = scratch;
  {
    std::ofstream input(place + "/.input");
    for (const Page& page : pages) {
      input << "restart:\n";
      for (const Piece& piece : page.pieces) {
        if (!piece.isExample) continue;
        for (const std::string& line : piece.example.statement) input << line << "\n";
        input << "INTERFACE_CHAR(\"" << marker << "\\n\"):\n";
      }
    }
  }
  const std::string command = "cd " + place + " && ulimit -f 200000 && timeout 120 '" + fs::absolute(program).string() +
                              "' -q < .input > .output 2>&1";
  if (std::system(command.c_str()) != 0) std::cerr << "the program did not end well\n";
  std::ifstream output(place + "/.output");
  std::vector<Lines> shown(1);
  for (const std::string& line : linesOf(output)) {
    if (line == marker) shown.emplace_back();
    else shown.back().push_back(line);
  }
  shown.pop_back();
  fs::remove_all(place);
  return shown;
}

void write(const std::string& file, const std::vector<Page>& pages) {
  std::ofstream out(file);
  for (const Page& page : pages)
    for (const Piece& piece : page.pieces) {
      if (!piece.isExample) {
        out << piece.line << "\n";
        continue;
      }
      for (const std::string& line : piece.example.statement) out << promptMark << line << "\n";
      for (const std::string& line : piece.example.shown) out << indent << line << "\n";
    }
}

std::string text(const Lines& lines) {
  std::string all;
  for (const std::string& line : lines) all += "        " + line + "\n";
  return all;
}

// A shape that every page has; tells what is missing.
int checkShape(const std::string& file, const Page& page, const std::set<std::string>& known) {
  int faults = 0;
  auto tell = [&](const std::string& fault) {
    std::cout << file << ": " << page.names.front() << ": " << fault << "\n";
    ++faults;
  };
  bool called = false, shown = false;
  for (const Piece& piece : page.pieces) {
    shown |= piece.isExample || startsWith(piece.line, "Not shown here:");
    called |= !piece.isExample && startsWith(piece.line, indent);
    if (startsWith(piece.line, "See also: "))
      for (std::string name : namesIn(piece.line.substr(10))) {
        if (name.back() == '.' && name.size() > 1) name.pop_back();
        if (!known.contains(name)) tell("see also " + name + ", which has no page");
      }
  }
  if (!called) tell("has no way to call");
  if (!shown) tell("has no example");
  return faults;
}

}  // namespace

int main(int count, char** words) {
  const std::string mode = count > 1 ? words[1] : "";
  const int first = mode == "names" ? 2 : 3;
  if (count <= first || (mode != "names" && mode != "check" && mode != "update")) {
    std::cerr << "pages check|update KORELTTY FILE... | pages names FILE.md...\n";
    return 2;
  }
  std::vector<std::vector<Page>> files;
  std::set<std::string> known;
  int faults = 0;
  for (int i = first; i < count; ++i) {
    std::ifstream in(words[i]);
    files.push_back(pagesOf(linesOf(in)));
    for (const Page& page : files.back())
      for (const std::string& name : page.names)
        if (!known.insert(name).second) {
          std::cout << words[i] << ": " << name << ": has two pages\n";
          ++faults;
        }
  }
  if (mode == "names") {
    for (const std::string& name : known) std::cout << name << "\n";
    return 0;
  }
  for (int i = first; i < count; ++i) {
    std::vector<Page>& pages = files[static_cast<std::size_t>(i - first)];
    const std::vector<Lines> shown = run(words[2], pages);
    std::size_t at = 0;
    for (Page& page : pages) {
      if (!page.names.empty()) faults += checkShape(words[i], page, known);
      for (Piece& piece : page.pieces) {
        if (!piece.isExample) continue;
        const Lines now = at < shown.size() ? shown[at] : Lines{"(the session ended)"};
        ++at;
        if (mode == "update") piece.example.shown = now;
        if (now == piece.example.shown) continue;
        ++faults;
        std::cout << words[i] << ": " << text(piece.example.statement) << "    shows\n"
                  << text(now) << "    and not\n"
                  << text(piece.example.shown);
      }
    }
    if (mode == "update") write(words[i], pages);
  }
  return faults == 0 ? 0 : 1;
}
