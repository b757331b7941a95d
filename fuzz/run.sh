#!/bin/sh
# Runs each fuzz target:   fuzz/run.sh BUILD [SECONDS]
# New inputs go to BUILD/corpus/<target>; those of the tree are its seeds. A crash leaves its input
# there and ends with a status other than 0.
build=$1
seconds=${2:-60}
here=$(cd "$(dirname "$0")" && pwd)
status=0
for target in "$build"/bin/*_fuzz; do
  name=$(basename "$target" _fuzz)
  mkdir -p "$build/corpus/$name"
  echo "fuzzing $name for $seconds s" >&2
  "$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=4096 -max_len=4096 -print_final_stats=1 \
    -artifact_prefix="$build/corpus/$name-" "$build/corpus/$name" "$here/corpus/$name" || status=1
done
exit $status
