# The junk scan of a home with 200,000 files in its cache folder: once in the folders of programs, once
# all as entries of their own, each with a line, an icon and an identity. Beside it what only sums.

home_with() {
  local name=$1 caches
  shift
  $small && name+=-small
  root=$bench_dir/$name
  caches=$root/Users/bench/Library/Caches
  [[ -d $caches ]] && return
  echo "making $name …" >&2
  mkdir -p "$(dirname "$caches")"
  "$bin/brisko-corpus" "$work_dir/caches" "$@"
  mv -T "$work_dir/caches" "$caches"
}

junk_row() {
  row "$1"
  ours "brisko junk" env USER=bench HOME="$root/Users/bench" "$bin/brisko" junk --root "$root" --json
  peer "du" du -s --apparent-size "$root/Users/bench/Library/Caches"
  peer "gdu" gdu -n -p "$root/Users/bench/Library/Caches"
  measure
}

files=200000 folders=10000
$small && files=2000 folders=100
home_with junk-home --files $files --folders $folders --fan 40
junk_row "junk: $files files in $folders folders"
home_with junk-wide --files $files --folders 0
junk_row "junk: $files entries"
