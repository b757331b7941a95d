# Printing and scanning by formats. The conversions are those of src/text/format/print_format.h and scan_format.h.

printf := proc()
  description "printf(format, x, ...): prints the values as the format tells";
  iolib(9, 'default', args);
  NULL
end proc:

fprintf := proc()
  description "fprintf(file, format, x, ...): prints the values into the file as the format tells; the count of characters";
  iolib(9, args)
end proc:

sprintf := proc()
  description "sprintf(format, x, ...): the string of the values as the format tells";
  iolib(10, args)
end proc:

scanf := proc()
  description "scanf(format): the list of what is read from the input as the format tells, or 0 at its end";
  iolib(11, 'default', args)
end proc:

fscanf := proc()
  description "fscanf(file, format): the list of what is read from the file as the format tells, or 0 at its end";
  iolib(11, args)
end proc:

sscanf := proc()
  description "sscanf(s, format): the list of what is read from the string as the format tells, or 0 when it is empty";
  iolib(12, args)
end proc:
