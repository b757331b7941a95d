# Rows of fields in files: comma-separated values, numbers in columns; as lists of lists, or as matrices.

parsecsv := proc(s::{string, symbol}, separator::{string, symbol}, kind::symbol)
  description "parsecsv(s), parsecsv(s, separator), parsecsv(s, separator, text): the list of rows of a text, each a list of its fields: numbers where they read as such, else strings, or only strings; the separator \" \" stands for any blanks";
  `kernel/native`("csvrows", args)
end proc:

csvtext := proc(rows::list(list), separator::{string, symbol})
  description "csvtext(rows), csvtext(rows, separator): the text of the rows, a line for each, with texts in quotes where they have to be";
  `kernel/native`("csvtext", args)
end proc:

readcsv := proc(name::{string, symbol}, separator::{string, symbol})
  description "readcsv(name), readcsv(name, separator), readcsv(name, separator, text): the rows of the file as parsecsv gives them";
  parsecsv(readtext(name), args[2..-1])
end proc:

writecsv := proc(name::{string, symbol}, rows::{list(list), rtable}, separator::{string, symbol})
  description "writecsv(name, rows), writecsv(name, rows, separator): writes a list of rows, or a matrix, into the file; the count of bytes";
  local table;
  table := `if`(type(rows, rtable), matrixrows(rows), rows);
  writetext(name, csvtext(table, args[3..-1]))
end proc:

readcolumns := proc(name::{string, symbol})
  description "readcolumns(name): the list of the columns of a file of fields with blanks between them";
  columns(remove(row -> evalb(row = []), readcsv(name, " ")))
end proc:

writecolumns := proc(name::{string, symbol}, table::list(list))
  description "writecolumns(name, columns): writes the lists side by side as columns into the file; the count of bytes";
  writecsv(name, columns(table), " ")
end proc:

readmatrix := proc(name::{string, symbol}, separator::{string, symbol})
  description "readmatrix(name), readmatrix(name, separator): the matrix of the numbers in the file, by default with blanks between them";
  local rows, row;
  rows := remove(row -> evalb(row = []), readcsv(name, `if`(nargs > 1, separator, " ")));
  if rows = [] then error "there are no numbers in %1", name end if;
  for row in rows do
    if nops(row) <> nops(rows[1]) then error "rows of one length expected, but received lengths %1 and %2", nops(rows[1]), nops(row) end if
  end do;
  rtable(1..nops(rows), 1..nops(rows[1]), rows, 'subtype' = 'Matrix')
end proc:

writematrix := proc(name::{string, symbol}, matrix::rtable, separator::{string, symbol})
  description "writematrix(name, matrix), writematrix(name, matrix, separator): writes the rows of the matrix into the file; the count of bytes";
  writecsv(name, matrix, `if`(nargs > 2, separator, " "))
end proc:

matrixrows := proc(matrix::rtable)
  description "matrixrows(matrix): the list of the rows of the matrix, or of the elements of a vector, each as a row";
  local i, j, bounds;
  bounds := map(n -> `if`(type(n, integer), 1..n, n), [op(`if`(type(matrix, 'Array'), 2, 1), matrix)]);
  if nops(bounds) = 1 then return [seq([matrix[i]], i = bounds[1])] end if;
  if nops(bounds) <> 2 then error "two dimensions expected, but received %1", nops(bounds) end if;
  [seq([seq(matrix[i, j], j = bounds[2])], i = bounds[1])]
end proc:
