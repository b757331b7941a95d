#!/bin/sh
# Rows on arrays, matrices and vectors:   bench/rtables.sh BUILD
# Both programs measure the processor time of the operation alone and print it in seconds; the fastest of three
# counts. The reference is plain Python, NumPy or PARI, as the row says; rows whose reference is missing are left out.
korel=$1/bin/korelTTY
python=$(for p in /usr/bin/python3 python3; do command -v $p && break; done) || exit 0
numpy=$("$python" -c 'import numpy; print(1)' 2>/dev/null)

# fastest PROGRAM STATEMENTS: the statements go to its standard input
fastest() {
  for _ in 1 2 3; do echo "$2" | $1 2>/dev/null | tail -1; done | sort -g | head -1
}
print_row() {
  awk -v name="$1" -v ours="$2" -v theirs="$3" -v what="$4" 'BEGIN {
    ratio = theirs > 0 ? ours / theirs : 0
    printf "%-44s %11.3f ms %11.3f ms %8.2f  %s\n", name, ours * 1000, theirs * 1000, ratio, what }'
}
korel_time() {
  fastest "$korel -q -s" "$1
gc(): st := time():
to $3 do $2 od:
lprint(evalf((time() - st)/$3)):"
}
python_time() {
  fastest "$python -" "from time import process_time
import gc
$1
gc.collect(); st = process_time()
for _ in range($3):
    $2
print((process_time() - st)/$3)"
}
# row NAME REPEATS, then statements to prepare and to measure for Korel, then for Python, then its name
row() {
  [ "$7" = numpy ] && [ -z "$numpy" ] && return
  print_row "$1" "$(korel_time "$3" "$4" "$2")" "$(python_time "$5" "$6" "$2")" "$7"
}

row '10^6 element stores' 1 'A := Array(1..1000000):' 'for k to 1000000 do A[k] := k od' \
    'a = [0]*1000001' 'for k in range(1, 1000001): a[k] = k' 'python3, list'
row '10^6 element reads' 1 'A := Array(1..1000000, i -> i):' 'for k to 1000000 do A[k] od' \
    'a = list(range(1000001))' 'for k in range(1, 1000001): a[k]' 'python3, list'
row '1000 by 1000 floats by a procedure' 1 ':' 'Array(1..1000, 1..1000, (i, j) -> i + j, datatype = float[8])' \
    'import numpy as np' 'np.array([[float(i + j) for j in range(1, 1001)] for i in range(1, 1001)])' numpy
row '1000 by 1000 floats by lists' 1 'l := [seq([seq(i*j, j = 1..1000)], i = 1..1000)]:' 'Array(l, datatype = float[8])' \
    'import numpy as np
l = [[float(i*j) for j in range(1, 1001)] for i in range(1, 1001)]' 'np.array(l)' numpy
row '1000 by 1000 floats, filled' 20 ':' 'Array(1..1000, 1..1000, 7.5, datatype = float[8])' \
    'import numpy as np' 'np.full((1000, 1000), 7.5)' numpy
floats='F := Array(1..1000000, frandom(-1..1), datatype = float[8]):'
floats_py='import numpy as np
a = np.random.random(1000000)*2 - 1'
row 'sum of 10^6 floats' 50 "$floats" 'rtable_scanblock(F, [], Sum)' "$floats_py" 'a.sum()' numpy
row 'maximum of 10^6 floats' 50 "$floats" 'rtable_scanblock(F, [], Maximum)' "$floats_py" 'a.max()' numpy
row 'sort of 10^6 floats' 5 "$floats" 'sort(F)' "$floats_py" 'np.sort(a)' numpy
row 'sort of 10^6 bytes' 5 'F := Array(1..1000000, random(-128..127), datatype = integer[1]):' 'sort(F)' \
    'import numpy as np
a = np.random.randint(-128, 128, 1000000).astype(np.int8)' 'np.sort(a)' numpy
row 'sort of 10^6 integers' 5 'F := Array(1..1000000, random(), datatype = integer[4]):' 'sort(F)' \
    'import numpy as np
a = np.random.randint(0, 2**31, 1000000).astype(np.int32)' 'np.sort(a)' numpy
row 'product of 200 by 200 floats' 5 'M := Matrix(200, 200, frandom(-1..1), datatype = float[8]):' 'M . M' \
    'import numpy as np
a = np.random.random((200, 200))' 'a @ a' numpy
row 'transposed 1000 by 1000 floats' 20 'M := Matrix(1000, 1000, 7.5, datatype = float[8]):' 'Transpose(M)' \
    'import numpy as np
a = np.full((1000, 1000), 7.5)' 'np.ascontiguousarray(a.T)' numpy
for formats in 'float[8] integer[4] float64 int32' 'integer[2] float[8] int16 float64' 'float[8] complex[8] float64 complex128'; do
  set -- $formats
  row "10^6 elements of $1 as $2" 20 "A := Array(1..1000000, 5, datatype = $1):" "Array(A, datatype = $2)" \
      "import numpy as np
a = np.full(1000000, 5).astype(np.$3)" "a.astype(np.$4)" numpy
done
row 'copy of 10^6 floats' 20 "$floats" 'rtable(F)' "$floats_py" 'a.copy()' numpy
# Beside the C library's own copy of a block, into memory that has been touched.
if command -v cc >/dev/null; then
  scratch=$(mktemp -d)
  cat > "$scratch/copy.c" <<'END'
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>
int main(void) {
  enum { bytes = 8000000, rounds = 200 };
  char *from = malloc(bytes), *to = malloc(bytes);
  memset(from, 1, bytes), memset(to, 1, bytes);
  clock_t start = clock();
  for (int k = 0; k < rounds; ++k) from[k] = (char)k, memcpy(to, from, bytes), from[k] = to[bytes - 1 - k];
  printf("%g\n", (double)(clock() - start) / CLOCKS_PER_SEC / rounds);
  return to[7] == 99;
}
END
  cc -O2 -o "$scratch/copy" "$scratch/copy.c" &&
    print_row 'copy of 10^6 floats' "$(korel_time "$floats" 'rtable(F)' 50)" "$(fastest "$scratch/copy" '')" memcpy
  rm -rf "$scratch"
fi

# Exact matrices, beside PARI.
if command -v gp >/dev/null; then
  pari_time() { fastest 'gp -q -s 100000000' "$1
gettime(); for(i = 1, $3, $2); print(gettime()/1000./$3)"; }
  exact='M := Matrix(100, 100, random(-99..99)):'
  exact_gp='M = matrix(100, 100, i, j, random(199) - 99);'
  print_row 'product of exact 100 by 100' "$(korel_time "$exact" 'M . M' 3)" "$(pari_time "$exact_gp" 'M*M' 20)" PARI
  exact='M := Matrix(30, 30, random(-99..99)):'
  exact_gp='M = matrix(30, 30, i, j, random(199) - 99);'
  print_row 'determinant of exact 30 by 30' "$(korel_time "$exact" 'Determinant(M)' 3)" \
      "$(pari_time "$exact_gp" 'matdet(M)' 20)" PARI
  print_row 'inverse of exact 30 by 30' "$(korel_time "$exact" 'Inverse(M)' 1)" "$(pari_time "$exact_gp" 'M^-1' 20)" PARI
  exact='M := Matrix(100, 100, random(-99..99)): V := Vector(100, i -> i):'
  exact_gp='M = matrix(100, 100, i, j, random(199) - 99); V = vector(100, i, i)~;'
  print_row 'determinant of exact 100 by 100' "$(korel_time "$exact" 'Determinant(M)' 10)" \
      "$(pari_time "$exact_gp" 'matdet(M)' 10)" PARI
  print_row 'solution of exact 100 by 100' "$(korel_time "$exact" 'LinearSolve(M, V)' 10)" \
      "$(pari_time "$exact_gp" 'matsolve(M, V)' 10)" PARI
  print_row 'inverse of exact 100 by 100' "$(korel_time "$exact" 'Inverse(M)' 3)" "$(pari_time "$exact_gp" 'M^-1' 3)" PARI
fi

# What an element holds, by format.
echo
echo 'Bytes an element of 10^6'
printf '%s\n' 'for t in [anything, complex(sfloat), integer[1], integer[2], integer[4], integer[8], float[8], complex[8]] do' \
  'gc(): before := kernelopts(bytesused): A := Array(1..1000000, datatype = t, fill = 0):' \
  'lprint(t, evalf((kernelopts(bytesused) - before)/1000000, 4)):' 'od:' | "$korel" -q -s 2>/dev/null
