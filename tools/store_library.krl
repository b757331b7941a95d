# Stores the library: what each source file defines goes into the archive of the library directory.
#
# `sources` is the list of files and `target` the directory, which is the first one of `libname`.

store := proc(file)
  local before, added, name, command;
  before := {anames()};
  read file;
  added := {anames()} minus before;
  command := "save ";
  for name in added do command := cat(command, "`", name, "`, ") end do;
  if added = {} then error "%1 defines nothing", file end if;
  parse(cat(command, "target:"), statement);
end proc:
for file in sources do store(file) end do:
iolib(31, "reindex", target):
