#!/bin/sh
# Each check of the tree finds the fault that it is for, and nothing in a tree without faults:
#
#     tests/house/faults.sh HOUSE
set -u
house=$1
top=$(mktemp -d) || exit 2
trap 'rm -rf "$top"' EXIT
status=0

# A tree of two rooms, in order.
reset_tree() {
  rm -rf "${top:?}"/*
  mkdir -p "$top/src/store" "$top/src/eval" "$top/docs"
  echo 'A page; see store/heap.h.' > "$top/README.md"
  printf '## Doors\n\n| Door | Offers | To |\n|---|---|---|\n| `eval/value.h` | values | store |\n' > "$top/docs/architecture.md"
  printf '#pragma once\n#include <cstdint>\n' > "$top/src/store/heap.h"
  printf '#pragma once\n#include "store/heap.h"\n' > "$top/src/eval/value.h"
  printf '#include "store/heap.h"\n\n#include <cstdio>\n\n#include "eval/value.h"\n' > "$top/src/store/heap.cpp"
  printf '#include "store/heap.h"\n\n#include <cstdio>\n' > "$top/src/store/heap_size.cpp"
}

# Runs a check, which must say the text; without a text it must be content.
expect() {
  said=$("$house" -C "$top" "$1") && verdict=content || verdict=fault
  case $verdict-$2 in
    content-) return ;;
    fault-?*) case $said in *"$2"*) return ;; esac ;;
  esac
  echo "$1: expected '${2:-nothing}', got '$said'"
  status=1
}

reset_tree
for check in includes floors doors sizes paths; do expect $check ''; done

printf '#include "eval/value.h"\n#include "store/heap.h"\n#include <cstdio>\n' > "$top/src/store/heap.cpp"
expect includes 'src/store/heap.cpp:1: includes are out of order'
"$house" -C "$top" sort src/store/heap.cpp
expect includes ''
printf '#include <cstdio>\n' > "$top/src/store/heap.cpp"
expect includes 'does not include its own header'

reset_tree
printf '#pragma once\n#include "eval/value.h"\n' > "$top/src/store/heap.h"
expect floors 'src/store/heap.h:2: a header includes a room above its own'
expect floors 'reaches itself'
mkdir "$top/src/attic"; touch "$top/src/attic/chest.h"
expect floors 'no floor is known'

reset_tree
printf '#include "eval/value.h"\n' > "$top/src/store/heap_size.cpp"
expect doors ''
sed -i 's/| store |/| text |/' "$top/docs/architecture.md"
expect doors 'src/store/heap_size.cpp:1: calls up through eval/value.h'
expect doors 'nothing in text calls up through eval/value.h'

reset_tree
{ echo 'int f() {'; seq -f '  g(%g);' 78; echo '}'; } > "$top/src/eval/value.cpp"
expect sizes ''
{ echo 'int f() {'; seq -f '  g(%g);' 79; echo '}'; } > "$top/src/eval/value.cpp"
expect sizes 'src/eval/value.cpp:1: function of 81 lines'
{ echo 'struct S {'; echo '  int f() {'; seq -f '    g(%g);' 79; echo '  }'; echo '};'; } > "$top/src/eval/value.cpp"
expect sizes 'src/eval/value.cpp:2: function of 81 lines'
seq -f 'int a%g;' 701 > "$top/src/eval/value.cpp"
expect sizes 'file of 701 lines'

reset_tree
echo '// as in store/heap.h, unlike store/pile.h' > "$top/src/eval/value.cpp"
expect paths 'names store/pile.h, which does not exist'

exit $status
