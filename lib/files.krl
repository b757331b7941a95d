# Files and directories. A file is given by its name or by the number that `fopen` answers with; reading or writing by a
# name opens the file at first use, and it stays open until it is closed.

fopen := proc(name::{string, symbol}, mode::{string, symbol}, kind::{string, symbol})
  description "fopen(name, READ), fopen(name, WRITE), fopen(name, APPEND), fopen(name, mode, BINARY): the number of the file, which is open then";
  if nargs < 2 or cat("", mode) <> "APPEND" then return iolib(1, args) end if;
  iolib(1, name, 'WRITE', `if`(nargs > 2, kind, 'TEXT'), infinity)
end proc:

fclose := proc()
  description "fclose(file, ...): closes the files";
  iolib(7, args)
end proc:

fflush := proc()
  description "fflush(file): what has been written goes out";
  iolib(23, args)
end proc:

feof := proc()
  description "feof(file): true when the end of the file has been met in reading";
  `kernel/native`("feof", args)
end proc:

filepos := proc()
  description "filepos(file), filepos(file, n), filepos(file, infinity): the position in the file, after going there";
  `kernel/native`("filepos", args)
end proc:

filestatus := proc()
  description "filestatus(): the count of open files, the depth of read, the most files, and a list for each open file: number, name, kind, handle, mode, type";
  iolib(13, args)
end proc:

removefile := proc()
  description "removefile(name, ...): closes and removes the files";
  iolib(8, args)
end proc:

# ---- lines and bytes

readline := proc()
  description "readline(file), readline(): the next line of the file, or of the input; 0 at the end";
  `kernel/native`("readline", args)
end proc:

writeline := proc()
  description "writeline(file, s, ...): writes the strings, each as a line; the count of bytes";
  `kernel/native`("writeline", args)
end proc:

readbytes := proc()
  description "readbytes(file), readbytes(file, n), readbytes(file, n, TEXT), readbytes(file, array, n): the bytes as a list or string, 0 at the end; or how many have been read into the array";
  `kernel/native`("readbytes", args)
end proc:

writebytes := proc()
  description "writebytes(file, data): writes the bytes of a string, a list of numbers 0 to 255, or an array; their count";
  `kernel/native`("writebytes", args)
end proc:

# ---- whole files, which are closed again

readtext := proc(name::{string, symbol})
  description "readtext(name): the whole file as a string";
  local s;
  iolib(1, name, 'READ');
  try s := iolib(4, name, 'TEXT') finally iolib(7, name) end try;
  `if`(s = 0, "", s)
end proc:

readlines := proc(name::{string, symbol})
  description "readlines(name): the list of the lines of the file";
  local lines;
  iolib(1, name, 'READ');
  try lines := `kernel/native`("filelines", name) finally iolib(7, name) end try;
  lines
end proc:

writetext := proc(name::{string, symbol}, s::{string, symbol})
  description "writetext(name, s): makes s the content of the file; the count of bytes";
  local n;
  iolib(1, name, 'WRITE');
  try n := iolib(5, name, s) finally iolib(7, name) end try;
  n
end proc:

appendtext := proc(name::{string, symbol}, s::{string, symbol})
  description "appendtext(name, s): adds s to the end of the file; the count of bytes";
  local n;
  fopen(name, 'APPEND');
  try n := iolib(5, name, s) finally iolib(7, name) end try;
  n
end proc:

writelines := proc(name::{string, symbol}, lines::list({string, symbol}))
  description "writelines(name, [s, ...]): makes the strings the lines of the file; the count of bytes";
  local n;
  iolib(1, name, 'WRITE');
  try n := `kernel/native`("fileputlines", name, lines) finally iolib(7, name) end try;
  n
end proc:

fileexists := proc(name::{string, symbol})
  description "fileexists(name): true when there is a file or directory of that name";
  if iolib(13)[1] > 0 and member(cat("", name), map(`fileexists/name`, [iolib(13)])) then return true end if;
  try
    iolib(7, iolib(14, name, 'READ'))
  catch "file or directory does not exist": return false;
  catch "file name refers to a directory": return true;
  catch "permission denied": return true;
  end try;
  true
end proc:
`fileexists/name` := proc(entry)
  description "fileexists/name(entry): the name in a member of the status of files";
  `if`(type(entry, list), cat("", entry[2]), NULL)
end proc:

# ---- directories

mkdir := proc()
  description "mkdir(name): makes the directory";
  iolib(29, args)
end proc:

rmdir := proc()
  description "rmdir(name): removes the directory, which is empty";
  iolib(30, args)
end proc:

currentdir := proc()
  description "currentdir(), currentdir(name): the current directory; the one named takes its place";
  iolib(27, args)
end proc:

listdir := proc(name::{string, symbol})
  description "listdir(), listdir(name): the sorted list of the names in the directory";
  local f, s, directory;
  directory := `if`(nargs = 0, ".", cat("", name));
  currentdir(currentdir(directory)); # an error where there is none
  f := iolib(20, cat("ls -A ", shellquoted(directory)), 'READ');
  try s := iolib(4, f, 'TEXT') finally iolib(7, f) end try;
  if s = 0 then return [] end if;
  sort(splittext(s, "\n")[1..-2], lexorder)
end proc:

shellquoted := proc(s::{string, symbol})
  description "shellquoted(s): s as one word of a command of the shell";
  cat("'", replacetext(s, "'", "'\\''"), "'")
end proc:
