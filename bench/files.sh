#!/bin/sh
# Rows on formats and files:   bench/files.sh BUILD
# Both programs measure the processor time of the operation alone and print it in seconds; the fastest of three counts.
korel=$(cd "$1" && pwd)/bin/korelTTY || exit 2
python=$(for p in /usr/bin/python3 python3; do command -v $p && break; done) || exit 0
work=$(mktemp -d) || exit 2
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 2

# fastest PROGRAM STATEMENTS: the statements go to its standard input; the last line of its errors is the time
fastest() {
  for _ in 1 2 3; do printf '%s\n' "$2" | $1 2>&1 >/dev/null | tail -1; done | sort -g | head -1
}
# print_row NAME SECONDS SECONDS REFERENCE
print_row() {
  awk -v name="$1" -v ours="$2" -v theirs="$3" -v what="$4" 'BEGIN {
    ratio = theirs > 0 ? ours / theirs : 0
    printf "%-44s %11.3f ms %11.3f ms %8.2f  %s\n", name, ours * 1000, theirs * 1000, ratio, what }'
}
# row NAME, then statements to prepare and to measure for Korel, then for Python
row() {
  ours=$(fastest "$korel -q" "$2
gc(): st := time():
$3
writeline(\"/dev/stderr\", sprintf(\"%a\", evalf(time() - st))): fflush(\"/dev/stderr\"):")
  theirs=$(fastest "$python -S -" "from time import process_time
import gc, sys, csv, array
$4
gc.collect(); st = process_time()
$5
print(process_time() - st, file=sys.stderr)")
  print_row "$1" "$ours" "$theirs" "python3, the same operation"
}

row 'printf of 10^6 integers' '' 'for k to 1000000 do printf("%d\n", k) end do:' \
    '' 'for k in range(1, 1000001): print("%d" % k)'
row 'printf of 10^6 integers, one array' 'a := rtable(1..1000000, k -> k, datatype = integer[4]):' 'printf("%{e}d", a):' \
    'a = array.array("i", range(1, 1000001))' 'for k in a: print("%d" % k)'
row 'printf of 10^6 floats' '' 'for k to 1000000 do printf("%.6f\n", k/7.) end do:' \
    '' 'for k in range(1, 1000001): print("%.6f" % (k/7))'
row 'sscanf of 10^6 integers, one by one' '' 'for k to 1000000 do sscanf("123456", "%d") end do:' \
    '' 'for k in range(1000000): int("123456")'
row 'sscanf of 10^6 integers into a list' 's := jointext([seq(cat("", k), k = 1..1000000)], " "): f := repeattext("%d", 1000000):' \
    'sscanf(s, f):' 's = " ".join(str(k) for k in range(1, 1000001))' '[int(t) for t in s.split()]'
row 'sscanf of 10^6 floats into an array' 's := jointext([seq(sprintf("%.6f", evalf(k/7)), k = 1..1000000)], "\n"):' \
    'sscanf(s, "%{1000000}f"):' 's = "\n".join("%.6f" % (k/7) for k in range(1, 1000001))' \
    'array.array("d", map(float, s.split()))'
"$python" -c 'import random
random.seed(1)
with open("lines", "w") as f:
    for k in range(2000000): f.write("%050d\n" % random.randrange(10**50))
with open("fields", "w") as f:
    for k in range(100000): f.write(",".join("%.4f" % random.random() for _ in range(10)) + "\n")'
row 'lines of a 100 MB file, one by one' '' 'l := readline("lines"): while l <> 0 do l := readline("lines") end do:' \
    '' 'f = open("lines")
while f.readline(): pass'
row 'lines of a 100 MB file, a list' '' 'l := readlines("lines"):' '' 'l = open("lines").read().splitlines()'
row '2*10^6 lines written' 'l := readlines("lines"):' 'writelines("copy", l):' \
    'l = open("lines").read().splitlines()' 'with open("copy", "w") as f: f.write("\n".join(l) + "\n")'
row '100 MB of bytes into an array' 'a := rtable(1..102000000, datatype = integer[1]):' 'readbytes("lines", a):' \
    'a = bytearray(102000000)' 'open("lines", "rb").readinto(a)'
start=$(date +%s%N); dd if=lines of=/dev/null bs=1M 2>/dev/null; end=$(date +%s%N)
ours=$(fastest "$korel -q" 'a := rtable(1..102000000, datatype = integer[1]): gc(): st := time():
readbytes("lines", a): writeline("/dev/stderr", sprintf("%a", evalf(time() - st))): fflush("/dev/stderr"):')
print_row '100 MB of bytes into an array' "$ours" "$(awk -v n=$((end - start)) 'BEGIN { print n / 1e9 }')" 'dd to /dev/null, elapsed'
row 'CSV of 10^6 numbers' '' 'l := readcsv("fields"):' '' \
    'l = [[float(x) for x in row] for row in csv.reader(open("fields"))]'
row 'CSV of 10^6 numbers written' 'l := readcsv("fields"):' 'writecsv("copy", l):' \
    'l = [[float(x) for x in row] for row in csv.reader(open("fields"))]' \
    'with open("copy", "w") as f: csv.writer(f).writerows(l)'
