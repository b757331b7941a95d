#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include "tree.h"

namespace house {

namespace {

// The floors, from the ground up. Rooms of one floor may include each other's headers.
constexpr std::string_view floors[][5] = {
    {"store"},    {"frame"},   {"numbers"},
    {"text"},     {"eval"},    {"library"},
    {"rtable"},   {"algebra"}, {"debug", "external", "hardware", "openmath", "files"},
    {"builtins"}, {"session"}, {"client"},
};

/// Number of the floor on which a header stands, whose path begins with its room, or -1.
int floorOf(std::string_view header) {
  std::string_view room = header.substr(0, header.find('/'));
  for (std::size_t floor = 0; floor < std::size(floors); ++floor)
    if (std::ranges::find(floors[floor], room) != std::end(floors[floor])) return static_cast<int>(floor);
  return -1;
}
std::string roomOf(std::string_view path) { return std::string(path.substr(0, path.find('/'))); }

/// Calls `visit(name, line)` for each project header that a file of src/ includes.
template <class Visit>
void forEachInclude(const Lines& lines, Visit visit) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    Include include = includeOf(lines[i]);
    if (!include.name.empty() && !include.system) visit(include.name, i + 1);
  }
}

/// Depth-first search for a way from a header back to itself.
class Circles {
 public:
  Circles(const Tree& tree, Findings& findings) : tree_(tree), findings_(findings) {}

  void visit(const std::string& header) {
    if (done_.contains(header) || !tree_.has("src/" + header)) return;
    if (auto from = std::ranges::find(way_, header); from != way_.end()) {
      std::string circle;
      for (; from != way_.end(); ++from) circle += *from + " -> ";
      findings_.push_back({"src/" + header, 0, "reaches itself: " + circle + header});
      return;
    }
    way_.push_back(header);
    forEachInclude(tree_.lines("src/" + header), [this](const std::string& name, std::size_t) { visit(name); });
    way_.pop_back();
    done_.insert(header);
  }

 private:
  const Tree& tree_;
  Findings& findings_;
  std::vector<std::string> way_;
  std::set<std::string> done_;
};

constexpr const char* page = "docs/architecture.md";

/// Header of a door, then a room that may call through it: the line of the page.
using Doors = std::map<std::pair<std::string, std::string>, std::size_t>;

/// The rows of the first table below the heading "## Doors": `header`, what it offers, rooms.
Doors listedDoors(const Tree& tree) {
  Doors doors;
  const Lines& lines = tree.lines(page);
  bool inside = false;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].starts_with("## ")) inside = lines[i] == "## Doors";
    std::vector<std::string> cells = tableCells(lines[i]);
    if (!inside || cells.size() != 3 || !cells[0].starts_with('`')) continue;
    std::string header = cells[0].substr(1, cells[0].size() - 2);
    std::istringstream rooms(cells[2]);
    for (std::string room; std::getline(rooms >> std::ws, room, ',');) doors[{header, room}] = i + 1;
  }
  return doors;
}

}  // namespace

Findings checkFloors(const Tree& tree) {
  Findings findings;
  Circles circles(tree, findings);
  for (const auto& [path, lines] : tree.files()) {
    if (!isInSrc(path) || !isCode(path)) continue;
    std::string file = path.substr(4);
    if (floorOf(file) < 0) findings.push_back({path, 0, "no floor is known for its room (tools/house/doors.cpp)"});
    if (isSource(path)) continue;
    circles.visit(file);
    forEachInclude(lines, [&](const std::string& name, std::size_t line) {
      if (floorOf(name) > floorOf(file)) findings.push_back({path, line, "a header includes a room above its own"});
    });
  }
  return findings;
}

Findings checkDoors(const Tree& tree) {
  Findings findings;
  Doors listed = listedDoors(tree);
  Doors used;
  for (const auto& [path, lines] : tree.files()) {
    if (!isInSrc(path) || !isSource(path)) continue;
    std::string file = path.substr(4);
    forEachInclude(lines, [&](const std::string& name, std::size_t line) {
      if (floorOf(name) <= floorOf(file)) return;
      used[{name, roomOf(file)}] = line;
      if (!listed.contains({name, roomOf(file)}))
        findings.push_back(
            {path, line, "calls up through " + name + ", which " + page + " lists as no door for " + roomOf(file)});
    });
  }
  for (const auto& [door, line] : listed)
    if (!used.contains(door))
      findings.push_back({page, line, "nothing in " + door.second + " calls up through " + door.first});
  return findings;
}

}  // namespace house
