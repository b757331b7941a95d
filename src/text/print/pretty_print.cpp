#include "text/print/pretty_print.h"

#include <algorithm>
#include <string>
#include <vector>

#include "rtable/printed_elements.h"
#include "session/interface.h"
#include "text/print/print_object.h"

namespace korel {

namespace {

// ---- boxes
//
// They stand in vectors that every call clears, so that an error on the way loses nothing.

using Box = int;  // position in `boxes`

enum class Kind : unsigned char {
  text,      // characters first .. first + count
  row,       // children first .. first + count, side by side on one base line
  bracket,   // one child between tall brackets: `opening` and its partner
  fraction,  // two children, one over the other
  power,     // two children, the second raised behind the first
  grid,      // first .. first + count, row after row of `columns` in columns of even width
};

struct BoxRecord {
  Kind kind;
  char opening;
  int width, height;
  int base;  // the row of the base line, from the top
  int first, count;
  int columns = 0;
};

std::vector<BoxRecord> boxes;
std::vector<Box> children;
std::vector<Box> pending;  // the rows under construction
std::string characters;

constexpr int deepest = 200;     // nested parts
constexpr int mostBoxes = 5000;  // beyond them nobody reads a picture
int depth;
bool tooMuch;
bool hasLayout;  // a grid or placeholder, which the plain form doesn't show even on one line

void appendCharacter(void*, int c) { characters.push_back(static_cast<char>(c)); }
void giveUp(void*, const char*) { tooMuch = true; }

Box addBox(BoxRecord record) {
  if (static_cast<int>(boxes.size()) >= mostBoxes) tooMuch = true;
  boxes.push_back(record);
  return static_cast<Box>(boxes.size()) - 1;
}

Box textFrom(int first) {
  int count = static_cast<int>(characters.size()) - first;
  auto width = characterCount(characters.data() + first, static_cast<std::size_t>(count));
  return addBox({Kind::text, 0, static_cast<int>(width), 1, 0, first, count});
}
Box textBox(const char* text) {
  int first = static_cast<int>(characters.size());
  characters += text;
  return textFrom(first);
}

int addChildren(std::initializer_list<Box> parts) {
  int first = static_cast<int>(children.size());
  children.insert(children.end(), parts);
  return first;
}

// The boxes pushed since `mark`, as one.
Box rowFrom(std::size_t mark) {
  if (pending.size() == mark + 1) {
    Box only = pending.back();
    pending.pop_back();
    return only;
  }
  BoxRecord row{Kind::row, 0, 0, 0, 0, static_cast<int>(children.size()), 0};
  int below = 0;
  for (std::size_t i = mark; i < pending.size(); ++i) {
    const BoxRecord& part = boxes[static_cast<std::size_t>(pending[i])];
    row.width += part.width;
    row.base = std::max(row.base, part.base);
    below = std::max(below, part.height - part.base);
    children.push_back(pending[i]);
    ++row.count;
  }
  row.height = row.base + below;
  pending.resize(mark);
  return addBox(row);
}

Box bracketed(Box inner, char opening) {
  const BoxRecord in = boxes[static_cast<std::size_t>(inner)];
  return addBox({Kind::bracket, opening, in.width + 2, in.height, in.base, addChildren({inner}), 1});
}
Box fractionBox(Box upper, Box lower) {
  const BoxRecord a = boxes[static_cast<std::size_t>(upper)];
  const BoxRecord b = boxes[static_cast<std::size_t>(lower)];
  return addBox({Kind::fraction, 0, std::max(a.width, b.width), a.height + 1 + b.height, a.height,
                 addChildren({upper, lower}), 2});
}
Box powerBox(Box base, Box exponent) {
  const BoxRecord a = boxes[static_cast<std::size_t>(base)];
  const BoxRecord b = boxes[static_cast<std::size_t>(exponent)];
  return addBox(
      {Kind::power, 0, a.width + b.width, a.height + b.height, b.height + a.base, addChildren({base, exponent}), 2});
}

// ---- expressions

Box boxOf(DAG x);

int textFlags = 0;  // of PrintFlag

Box plainText(DAG x) {
  int first = static_cast<int>(characters.size());
  PrintKorel(x, appendCharacter, giveUp, 0, nullptr, textFlags);
  return textFrom(first);
}

// A number without its minus, and whether it had one.
Box magnitudeText(DAG number, bool& negative) {
  int first = static_cast<int>(characters.size());
  PrintKorel(number, appendCharacter, giveUp, 0, nullptr, 0);
  if (static_cast<int>(characters.size()) > first && characters[static_cast<std::size_t>(first)] == '-') {
    characters.erase(static_cast<std::size_t>(first), 1);
    negative = !negative;
  }
  return textFrom(first);
}

// `x` where only objects of at least `level` stand without parentheses.
Box operandBox(DAG x, int level) {
  Box box = boxOf(x);
  const bool looseDot = level >= bindsProduct && isTag(x, FUNCTION) && isDotProduct(x);
  return ParenLevel(x) < level || looseDot ? bracketed(box, '(') : box;
}

Box raised(DAG base, Box exponent) { return powerBox(operandBox(base, bindsCall), exponent); }

void pushBetween(std::size_t mark, const char* separator) {
  if (pending.size() > mark) pending.push_back(textBox(separator));
}

// The members of a sequence with commas between them.
void pushMembers(DAG sequence) {
  std::size_t mark = pending.size();
  for (Word i = 1; i < lengthOf(sequence); ++i) {
    pushBetween(mark, ", ");
    pending.push_back(boxOf(sequence[i]));
  }
}

// ---- products

// One factor of a product: above the line, or, with its exponent made positive, below it.
struct Factor {
  DAG base, exponent;
};
bool isBelow(Factor factor) { return isNumeric(factor.exponent) && IsNegative(factor.exponent); }

Box factorBox(Factor factor) {
  if (factor.exponent == cons1 || factor.exponent == consm1) return operandBox(factor.base, bindsProduct);
  bool negative = false;
  bool number = isNumeric(factor.exponent);
  Box exponent = number ? magnitudeText(factor.exponent, negative) : boxOf(factor.exponent);
  return raised(factor.base, exponent);
}

Word factorsOn(DAG term, bool below) {
  Word count = 0;
  for (Word i = 1; i + 1 < lengthOf(term); i += 2) count += isBelow({term[i], term[i + 1]}) == below;
  return count;
}

// The factors of `term` on one side of the line, from place `first` on and behind `coefficient` if there is
// one; -1 for none. `stacked`: there is a line, which sets a single factor apart as parentheses would.
Box sideOfProduct(DAG term, Word first, bool below, Box coefficient, bool stacked) {
  std::size_t mark = pending.size();
  bool alone = stacked && coefficient < 0 && factorsOn(term, below) == 1;
  if (coefficient >= 0) pending.push_back(coefficient);
  for (Word i = first; i + 1 < lengthOf(term); i += 2) {
    Factor factor{term[i], term[i + 1]};
    if (isBelow(factor) != below) continue;
    pushBetween(mark, " ");
    bool plain = factor.exponent == cons1 || factor.exponent == consm1;
    pending.push_back(alone && plain ? boxOf(factor.base) : factorBox(factor));
  }
  return pending.size() == mark ? -1 : rowFrom(mark);
}

// `term` times `coefficient`, without a leading minus; `negative` tells whether there was one.
Box termBox(DAG term, DAG coefficient, bool& negative) {
  negative = false;
  DAG number = term == cons1 ? coefficient : term;
  if (isNumeric(number) || (isTag(number, COMPLEX) && coefficient == cons1)) return magnitudeText(number, negative);
  Box upperNumber = -1;
  Box lowerNumber = -1;
  bool product = isTag(term, PROD);
  bool divided = product && factorsOn(term, true) > 0;
  if (coefficient == consm1) {
    negative = true;
  } else if (coefficient != cons1) {
    if (divided && isTag(coefficient, RATIONAL)) {
      upperNumber = magnitudeText(coefficient[1], negative);
      lowerNumber = plainText(coefficient[2]);
      if (coefficient[1] == cons1 || coefficient[1] == consm1) upperNumber = -1;
    } else {
      upperNumber = magnitudeText(coefficient, negative);
    }
  }
  if (!product) {
    Box box = operandBox(term, coefficient == cons1 ? bindsSum : bindsProduct);
    if (upperNumber < 0) return box;
    std::size_t mark = pending.size();
    pending.push_back(upperNumber);
    pending.push_back(textBox(" "));
    pending.push_back(box);
    return rowFrom(mark);
  }
  // An imaginary head gives its minus to the term.
  Word first = 1;
  if (upperNumber < 0 && isTag(term[1], COMPLEX) && lengthOf(term[1]) == 2 && term[2] == cons1) {
    upperNumber = magnitudeText(term[1], negative);
    first = 3;
  }
  Box lower = sideOfProduct(term, first, true, lowerNumber, divided);
  Box upper = sideOfProduct(term, first, false, upperNumber, divided);
  if (!divided) return upper;
  return fractionBox(upper < 0 ? textBox("1") : upper, lower);
}

void pushTerm(DAG term, DAG coefficient, bool isFirst) {
  if (coefficient == cons1 && isTag(term, COMPLEX) && lengthOf(term) == 3 && isNumeric(term[1])) {
    pushTerm(term[1], cons1, isFirst);
    pushTerm(new2(COMPLEX, term[2]), cons1, false);
    return;
  }
  bool negative;
  Box box = termBox(term, coefficient, negative);
  if (isFirst) {
    // A minus right before a fraction's line would lengthen it.
    bool stacked = boxes[static_cast<std::size_t>(box)].kind == Kind::fraction;
    if (negative) pending.push_back(textBox(stacked ? "- " : "-"));
  } else {
    pending.push_back(textBox(negative ? " - " : " + "));
  }
  pending.push_back(box);
}

Box sumBox(DAG x) {
  std::size_t mark = pending.size();
  for (Word i = 1; i + 1 < lengthOf(x); i += 2) pushTerm(x[i], x[i + 1], i == 1);
  return rowFrom(mark);
}

Box productBox(DAG x) {
  std::size_t mark = pending.size();
  pushTerm(x, cons1, true);
  return rowFrom(mark);
}

// ---- the rest

Box callBox(DAG x) {
  std::size_t mark = pending.size();
  pushMembers(asSequence(x[2]));
  if (pending.size() == mark) return plainText(x);
  Box arguments = bracketed(rowFrom(mark), '(');
  pending.push_back(plainText(x[1]));
  pending.push_back(arguments);
  return rowFrom(mark);
}

Box collectionBox(DAG x, char opening) {
  std::size_t mark = pending.size();
  pushMembers(x[1]);
  return pending.size() == mark ? plainText(x) : bracketed(rowFrom(mark), opening);
}

// ---- rtables: rows and columns between tall brackets

constexpr int gridGap = 2;

struct GridSizes {
  std::vector<int> widths;                // of columns
  std::vector<std::pair<int, int>> rows;  // above and below the base line, of rows
};
GridSizes gridSizes(const BoxRecord& grid) {
  GridSizes sizes;
  sizes.widths.assign(static_cast<std::size_t>(grid.columns), 0);
  sizes.rows.assign(static_cast<std::size_t>(grid.count / grid.columns), {0, 0});
  for (int i = 0; i < grid.count; ++i) {
    const BoxRecord& cell = boxes[static_cast<std::size_t>(children[static_cast<std::size_t>(grid.first + i)])];
    int& width = sizes.widths[static_cast<std::size_t>(i % grid.columns)];
    auto& [above, below] = sizes.rows[static_cast<std::size_t>(i / grid.columns)];
    width = std::max(width, cell.width);
    above = std::max(above, cell.base);
    below = std::max(below, cell.height - cell.base);
  }
  return sizes;
}
// Rows of more than one line, such as those of fractions, stand a line apart.
bool standsApart(const GridSizes& sizes) {
  return std::any_of(sizes.rows.begin(), sizes.rows.end(), [](auto row) { return row.first + row.second > 1; });
}

Box gridBox(DAG x, const RTableLayout& layout) {
  std::size_t mark = pending.size();
  for (std::int64_t i = 0; i < layout.rows && !tooMuch; ++i)
    for (std::int64_t j = 0; j < layout.columns && !tooMuch; ++j) pending.push_back(boxOf(gridElement(x, i, j)));
  BoxRecord grid{Kind::grid, 0, 0, 0, 0, static_cast<int>(children.size()), static_cast<int>(pending.size() - mark)};
  grid.columns = static_cast<int>(layout.columns);
  if (tooMuch) grid.count = 0;
  hasLayout = true;
  children.insert(children.end(), pending.begin() + static_cast<std::ptrdiff_t>(mark), pending.end());
  pending.resize(mark);
  if (grid.count == 0) return addBox(grid);
  const GridSizes sizes = gridSizes(grid);
  for (int width : sizes.widths) grid.width += width + gridGap;
  grid.width -= gridGap;
  for (auto [above, below] : sizes.rows) grid.height += above + below + standsApart(sizes);
  grid.height -= standsApart(sizes);
  grid.base = (grid.height - 1) / 2;
  return bracketed(addBox(grid), '[');
}

Box rtableBox(DAG x) {
  const RTableLayout layout = layoutOf(x, defaultNerinVariables.rtablesize);
  switch (layout.appearance) {
    case Appearance::grid: return gridBox(x, layout);
    case Appearance::placeholder: {
      char note[noteLength + 1];
      placeholderNote(x, note);
      hasLayout = true;
      return bracketed(textBox(note), '[');
    }
    default: return plainText(x);
  }
}

Box infixBox(DAG x, const char* operation, int level) {
  std::size_t mark = pending.size();
  pending.push_back(operandBox(x[1], level));
  pending.push_back(textBox(operation));
  pending.push_back(operandBox(x[2], level));
  return rowFrom(mark);
}

// Calls that are written as operators keep their plain form.
bool isPlainCall(DAG x) {
  if (!isName(x[1]) || isDotProduct(x) || isFactorial(x) || constructorSeparator(x) != 0) return false;
  return textOf(x[1])[0] != '&' && lengthOf(x) == 3;
}

Box boxOf(DAG x) {
  if (isImmediate(x) || tooMuch) return plainText(x);
  if (++depth > deepest) tooMuch = true;
  Box box;
  switch (tagOf(x)) {
    case SUM: box = lengthOf(x) > 2 ? sumBox(x) : plainText(x); break;
    case PROD: box = lengthOf(x) > 2 ? productBox(x) : plainText(x); break;
    case POWER: box = raised(x[1], boxOf(x[2])); break;
    case FUNCTION: box = isPlainCall(x) ? callBox(x) : plainText(x); break;
    case LIST: box = collectionBox(x, '['); break;
    case SET: box = collectionBox(x, '{'); break;
    case RTABLE: box = rtableBox(x); break;
    case EQUATION: box = infixBox(x, " = ", bindsRange); break;
    case INEQUAT: box = infixBox(x, " <> ", bindsRange); break;
    case LESSEQ: box = infixBox(x, " <= ", bindsRange); break;
    case LESSTHAN: box = infixBox(x, " < ", bindsRange); break;
    case RANGE: box = infixBox(x, " .. ", bindsSeries); break;
    case ASSIGN: box = isSequence(x[1]) ? plainText(x) : infixBox(x, " := ", bindsNothing); break;
    case EXPSEQ: {
      std::size_t mark = pending.size();
      pushMembers(x);
      box = pending.size() == mark ? plainText(x) : rowFrom(mark);
      break;
    }
    default: box = plainText(x); break;
  }
  --depth;
  return box;
}

// ---- drawing

std::vector<std::string> canvas;

void put(int row, int column, const char* text, int bytes) {
  std::string& line = canvas[static_cast<std::size_t>(row)];
  auto at = static_cast<int>(characterCount(line.data(), line.size()));
  if (at < column) line.append(static_cast<std::size_t>(column - at), ' ');
  line.append(text, static_cast<std::size_t>(bytes));
}

// The sides of a bracket by row: the plain character for one row, and a drawn curve for more.
struct BracketShape {
  char opening;
  const char* single;  // both sides on one row
  const char* top;     // both sides, top row first
  const char* middle;
  const char* bottom;
};
constexpr BracketShape bracketShapes[] = {
    {'(', "()", "/\\", "||", "\\/"},
    {'[', "[]", "[]", "[]", "[]"},
    {'{', "{}", "{}", "{}", "{}"},
};

void draw(Box which, int top, int column);

// Each cell in the middle of its column, on the base line of its row.
void drawGrid(const BoxRecord& grid, int top, int column) {
  const GridSizes sizes = gridSizes(grid);
  for (int i = 0; i < grid.count; ++i) {
    const std::size_t row = static_cast<std::size_t>(i / grid.columns),
                      place = static_cast<std::size_t>(i % grid.columns);
    const Box cell = children[static_cast<std::size_t>(grid.first + i)];
    const BoxRecord& record = boxes[static_cast<std::size_t>(cell)];
    int at = column;
    for (std::size_t k = 0; k < place; ++k) at += sizes.widths[k] + gridGap;
    const int base = sizes.rows[row].first;
    draw(cell, top + base - record.base, at + (sizes.widths[place] - record.width) / 2);
    if (i % grid.columns == grid.columns - 1) top += base + sizes.rows[row].second + standsApart(sizes);
  }
}

void drawBracketSide(const BoxRecord& box, int top, int column, int side) {
  for (const BracketShape& shape : bracketShapes) {
    if (shape.opening != box.opening) continue;
    for (int row = 0; row < box.height; ++row) {
      const char* pair = box.height == 1         ? shape.single
                         : row == 0              ? shape.top
                         : row == box.height - 1 ? shape.bottom
                                                 : shape.middle;
      put(top + row, column, pair + side, 1);
    }
  }
}

// Draws from left to right, so that every line of the canvas only grows.
void draw(Box which, int top, int column) {
  const BoxRecord box = boxes[static_cast<std::size_t>(which)];
  const auto child = [&](int i) { return children[static_cast<std::size_t>(box.first + i)]; };
  const auto record = [&](int i) { return boxes[static_cast<std::size_t>(child(i))]; };
  switch (box.kind) {
    case Kind::text: put(top, column, characters.data() + box.first, box.count); break;
    case Kind::row:
      for (int i = 0; i < box.count; ++i) {
        draw(child(i), top + box.base - record(i).base, column);
        column += record(i).width;
      }
      break;
    case Kind::bracket:
      drawBracketSide(box, top, column, 0);
      draw(child(0), top, column + 1);
      drawBracketSide(box, top, column + box.width - 1, 1);
      break;
    case Kind::fraction: {
      draw(child(0), top, column + (box.width - record(0).width) / 2);
      const std::string bar(static_cast<std::size_t>(box.width), '-');
      put(top + box.base, column, bar.data(), box.width);
      draw(child(1), top + box.base + 1, column + (box.width - record(1).width) / 2);
      break;
    }
    case Kind::grid: drawGrid(box, top, column); break;
    case Kind::power:
      draw(child(0), top + record(1).height, column);
      draw(child(1), top, column + record(0).width);
      break;
  }
}

// ---- lines

// The parts of a row one after the other, brackets that are too wide opened up, and rows inside it that take more than
// half of a line: a term is broken only where that leaves the line much too short.
void flatten(Box which, int width, std::vector<Box>& parts) {
  const BoxRecord box = boxes[static_cast<std::size_t>(which)];
  if (box.kind == Kind::row && box.width > width / 2) {
    for (int i = 0; i < box.count; ++i) flatten(children[static_cast<std::size_t>(box.first + i)], width, parts);
  } else if (box.kind == Kind::bracket && box.width > width) {
    const BracketShape* shape = bracketShapes;
    while (shape->opening != box.opening) ++shape;
    const char opening[2] = {shape->single[0], 0}, closing[2] = {shape->single[1], 0};
    parts.push_back(textBox(opening));
    flatten(children[static_cast<std::size_t>(box.first)], width, parts);
    parts.push_back(textBox(closing));
  } else {
    parts.push_back(which);
  }
}

// A separator or closing bracket ends the line that it stands on.
bool staysOnItsLine(Box which) {
  const BoxRecord& box = boxes[static_cast<std::size_t>(which)];
  if (box.kind == Kind::bracket) return box.opening == '(';
  if (box.kind != Kind::text || box.count == 0) return false;
  char c = characters[static_cast<std::size_t>(box.first)];
  return c == ',' || c == ' ' || c == ')' || c == ']' || c == '}';
}

// The end of the group of parts that begins at `from` and can't be broken.
std::size_t groupEnd(const std::vector<Box>& parts, std::size_t from) {
  std::size_t to = from + 1;
  while (to < parts.size() && staysOnItsLine(parts[to])) ++to;
  return to;
}

int widthOf(const std::vector<Box>& parts, std::size_t from, std::size_t to) {
  int width = 0;
  for (; from < to; ++from) width += boxes[static_cast<std::size_t>(parts[from])].width;
  return width;
}

// Rows of boxes, none wider than the screen; false when one group alone is.
bool breakIntoLines(Box root, int width, std::vector<Box>& lines) {
  if (boxes[static_cast<std::size_t>(root)].width <= width) {
    lines.push_back(root);
    return true;
  }
  std::vector<Box> parts;
  flatten(root, width, parts);
  std::size_t mark = pending.size();
  int used = 0;
  for (std::size_t from = 0; from < parts.size();) {
    std::size_t to = groupEnd(parts, from);
    int group = widthOf(parts, from, to);
    if (group > width + 1) return false;  // the blank of a separator may stand behind the edge
    if (used > 0 && used + group > width) {
      lines.push_back(rowFrom(mark));
      used = 0;
    }
    pending.insert(pending.end(), parts.begin() + static_cast<std::ptrdiff_t>(from),
                   parts.begin() + static_cast<std::ptrdiff_t>(to));
    used += group;
    from = to;
  }
  if (pending.size() > mark) lines.push_back(rowFrom(mark));
  return true;
}

void send(const std::vector<Box>& lines, Sink sink, void* closure) {
  bool isFirst = true;
  for (Box line : lines) {
    const BoxRecord box = boxes[static_cast<std::size_t>(line)];
    canvas.assign(static_cast<std::size_t>(box.height), std::string());
    draw(line, 0, 0);
    // Broken lines stand apart, so that an exponent isn't taken for a part of the line above.
    if (!isFirst) sink(closure, '\n');
    for (std::string& row : canvas) {
      if (!isFirst) sink(closure, '\n');
      isFirst = false;
      row.erase(row.find_last_not_of(' ') + 1);
      for (char c : row) sink(closure, static_cast<unsigned char>(c));
    }
  }
}

void clear() {
  boxes.clear();
  children.clear();
  pending.clear();
  characters.clear();
  depth = 0;
  tooMuch = hasLayout = false;
}

}  // namespace

bool PrettyPrint(DAG object, Sink sink, int width, void* closure, bool withTildes) {
  clear();
  textFlags = withTildes ? printWithTildes : 0;
  Box root = boxOf(object);
  if (tooMuch || (boxes[static_cast<std::size_t>(root)].height == 1 && !hasLayout)) return false;
  std::vector<Box> lines;
  if (!breakIntoLines(root, width, lines)) return false;
  send(lines, sink, closure);
  return true;
}

}  // namespace korel
