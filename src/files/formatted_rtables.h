#pragma once
// Rtables in formats: printed and scanned element by element, in rows.
//
// Printing, `%{options}code`:
//
//   t   the first index runs fastest: columns are printed as rows
//   v   a vector on one line         e   one element on each line
//   cX  X between the elements of a row, a blank by default
//   s   no empty line behind a slice of two dimensions
//   n   rows follow each other on one line     x   no line ends at all
//   b+ b-   the diagonals of the storage, each on a line, the uppermost first or last
//
// A line is a row: the last index runs fastest. A column vector has an element on each line.
//
// Scanning, `%{dimensions; options}code`. Dimensions are integers, ranges, or `*` for an argument. Without options they
// make a Vector or a Matrix where all begin at 1, else an Array; of hardware floats where the code reads floats.
//
//   a   an Array                     v   a Vector            r   read-only when it is complete
//   C F     the order                t   the first index runs fastest
//   iN fN cN  integers of N bytes, floats, complex floats    h   the hardware type that the code suggests
//   l u     a triangle, of which only its elements are read
//   b+(b1,b2) b-(b1,b2)  a band, read diagonal by diagonal as it is printed
//   d(...)  the characters that stand between elements
//   e   entries, each an index and its value, up to the end of the input
//   s(...) x(...) y(...)  storage, indexing functions, data type

#include "store/dag.h"
#include "text/format/print_format.h"
#include "text/format/scan_format.h"

namespace korel {

/// Prints `r` by the options of the conversion. Errors: those of the options, as "unknown rtable formatting option:
/// `%1`", and of the element's code.
void FormatRTable(PrintTarget& out, const PrintConversion& c, DAG r);

/// Reads an rtable; `at` stands behind the `{` of its format and is moved behind the code of its elements.
/// Errors: those of the format, as "unclosed table format dimension/option sequence", of its options, as "unknown
/// rtable scanning option: `%1`", and of the input, as "end of input encountered while reading rtable".
ScanOutcome ScanRTable(ScanSource& source, const char*& at, FormatArguments& arguments);
/// Reads floats by `code` as long as there are some, at most `limit` of them unless that is 0, into an Array of
/// hardware floats. Error: "e, f, g, or x expected for %h format".
DAG ScanHFArray(ScanSource& source, char code, int limit);

// ---- shared by the files of the scanner

struct TableFormat {
  DAG ranges;  // EXPSEQ
  TextBuffer options;
  ScanConversion element;
};
/// What the options ask for.
struct TableOptions {
  bool array = false, vector = false, transposed = false, entries = false, hardware = false, readOnly = false;
  char triangle = 0;  // `l`, `u`
  char band = 0;      // `+`, `-`
  DAG bandWidths;     // EXPSEQ, or 0
  char order = 0;     // `C`, `F`
  DAG storage, functions, datatype;
  char delimiters[65] = "";
};
/// Errors: those of the options.
TableOptions readTableOptions(const char* at);
/// Calls `rtable`. Errors: "could not create rtable in scanf", "dimensions and/or elements must be specified", "number
/// of elements must be specified for `v` scanning option", "scanned rtable is not one-dimensional", "scanned rtable is
/// not two-dimensional".
DAG newScannedRTable(const TableFormat& format, const TableOptions& options);
/// Reads the elements by a format whose text has been read.
ScanOutcome readRTable(ScanSource& source, TableFormat& format);
/// `Array(1..n, datatype = float[8])` of the doubles whose bytes lie there.
DAG newHardwareArray(const void* values, std::int64_t n);

}  // namespace korel
