#pragma once
// The characters of the record format: which one opens the record of each kind of object, and how
// numbers and texts are spelled.
//
// All is printable text, so that records travel through mail and editors. A record opens with one character, the
// code's; codes up to 52 are tag numbers, those of objects with an attribute lie 55 above their tag.
//
//   Int       v < 0: `~` and Int(-v).  0 to 57: one character, 33 + v.  Above: hexadecimal digits from the
//             lowest, each as 91 + d, the last one as 107 + d.
//   text      a character from 33 to 122 as itself, a blank as `~`, any other as `|` and Int of its byte.
//   digits    of a long integer from the lowest: two digits d, e with d + 10 e < 80 as 43 + d + 10 e, else
//             one digit as 33 + d.

#include <array>
#include <cstdint>

#include "store/dag.h"

namespace korel {

/// Codes beside the tag numbers.
enum RecordCode : int {
  recordTable = 53,      // HASHTAB
  recordBack = 54,       // back reference
  recordZero = 55,       // the word 0
  recordReference = 56,  // reference to an object of the repository
  recordControl = 57,    // CONTROL
  recordDebug = 58,      // DEBUG
  recordAttribute = 55,  // added to the tag number of an object with an attribute
  recordTopName = 63,    // NAME with value and attribute
  // Only read: what earlier versions wrote.
  recordOldProc = 114,
  recordOldLexical = 115,
  recordOldLocal = 116,
  recordOldParam = 117,
  recordOldFloatArray = 118,
};

/// `dotMOutputTable[code]` is the character of the code, less 32.
inline constexpr std::array<unsigned char, 90> dotMOutputTable = [] {
  std::array<unsigned char, 90> table{};
  struct Row {
    int code;
    char character;
  };
  constexpr Row rows[] = {
      {1, '!'},   {2, '"'},  {3, '#'},  {4, '$'},  {5, ']'},  {6, '^'},  {7, 'Q'},  {8, '%'},  {9, '_'},  {10, '&'},
      {11, '\''}, {12, '('}, {13, ')'}, {14, '*'}, {15, '+'}, {16, ','}, {17, 'd'}, {18, '-'}, {19, '.'}, {20, '/'},
      {21, '0'},  {22, '1'}, {23, '2'}, {24, '3'}, {25, '4'}, {26, '5'}, {27, '6'}, {28, '7'}, {29, '8'}, {30, '9'},
      {31, 'T'},  {32, 'R'}, {33, ';'}, {34, '<'}, {35, '='}, {36, 'X'}, {37, 'b'}, {38, '`'}, {39, '>'}, {40, '?'},
      {41, '@'},  {42, 'A'}, {43, 'B'}, {44, 'C'}, {45, 'D'}, {46, 'Y'}, {47, 'Z'}, {48, 'O'}, {49, '['}, {50, '\\'},
      {51, 'a'},  {52, 'e'}, {53, 'E'}, {54, 'F'}, {55, 'G'}, {56, 'c'}, {57, 'N'}, {58, 'P'}, {59, 'H'}, {63, 'I'},
      {65, 'J'},  {73, 'K'}, {83, 'L'}, {89, 'M'},
  };
  for (Row row : rows) table[row.code] = static_cast<unsigned char>(row.character - 32);
  return table;
}();

/// The code of each character, 0 for none: the table above turned around, and the characters of earlier versions.
inline constexpr std::array<unsigned char, 128> dotMInputTable = [] {
  std::array<unsigned char, 128> table{};
  for (std::size_t code = 1; code < dotMOutputTable.size(); ++code)
    if (dotMOutputTable[code] != 0) table[dotMOutputTable[code] + 32] = static_cast<unsigned char>(code);
  table[':'] = recordOldProc;
  table['S'] = recordOldLexical;
  table['U'] = recordOldLocal;
  table['V'] = recordOldParam;
  table['W'] = recordOldFloatArray;
  return table;
}();

constexpr int largestShortInt = 57;
constexpr int firstHexDigit = 91, firstLastHexDigit = 107;
constexpr int firstSingleDigit = 33, firstDigitPair = 43, digitPairLimit = 80;

}  // namespace korel
