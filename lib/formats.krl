# Printing and scanning by formats. The conversions are those of src/text/format/print_format.h and scan_format.h.

printf := proc()
  description "printf(format, x, ...): prints the values as the format tells";
  `kernel/native`("printf", args)
end proc:

fprintf := proc()
  description "fprintf(file, format, x, ...): prints the values into the file as the format tells; the count of characters";
  `kernel/native`("fprintf", args)
end proc:

sprintf := proc()
  description "sprintf(format, x, ...): the string of the values as the format tells";
  `kernel/native`("sprintf", args)
end proc:

scanf := proc()
  description "scanf(format): the list of what is read from the input as the format tells, or 0 at its end";
  `kernel/native`("scanf", args)
end proc:

fscanf := proc()
  description "fscanf(file, format): the list of what is read from the file as the format tells, or 0 at its end";
  `kernel/native`("fscanf", args)
end proc:

sscanf := proc()
  description "sscanf(s, format): the list of what is read from the string as the format tells, or 0 when it is empty";
  `kernel/native`("sscanf", args)
end proc:
