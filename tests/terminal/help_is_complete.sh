#!/bin/sh
# help_is_complete.sh PAGES MARCH LIBRARY BUILTINS FILE...: there is a page of help, in the FILEs, for every built-in in the
# table of BUILTINS, and for every procedure in the archive of the LIBRARY that a person calls. Exempt are names with
# a slash, which the kernel or other procedures call (`diff/sin`, `type/Matrix`, `print/rtable`).
pages=$1 march=$2 library=$3 builtins=$4
shift 4
scratch=$(mktemp -d) || exit 2
trap 'rm -rf "$scratch"' EXIT
{
  "$march" list "$library" | sed -nE 's/^.* ([^ /]+)\.m$/\1/p'
  sed -nE 's/^    \{"([^"\/]+)", *(simplified|unevaluated|members).*/\1/p' "$builtins"
} | sort -u > "$scratch/names"
"$pages" names "$@" | sort -u > "$scratch/pages"
count=$(wc -l < "$scratch/names")
[ "$count" -gt 350 ] || { echo "only $count names found"; exit 1; }
missing=$(comm -23 "$scratch/names" "$scratch/pages")
[ -z "$missing" ] || { echo "without a page:" $missing; exit 1; }
