# What the groups of scripts/bench are written with. Sourced; expects runs, small, wants_cold and bin.
#
#   corpus NAME ARGUMENT…       makes (once) the tree NAME; its path is then in $corpus
#   row TITLE                   begins a comparison
#   ours LABEL COMMAND…         the command that all others are set in relation to
#   peer LABEL COMMAND…         another one; left out, with a word, when it is not installed
#   before=(COMMAND…)           run before each run of each command, and not counted
#   measure                     runs them all and prints the table
#   measure_cold                the same with the caches emptied before every run, when that is
#                               wanted (--cold); needs root
#
# Each round runs every command once, one after the other, so that what else the machine does meets
# all of them alike. The caches are emptied first, where that is allowed: what other trees left in them
# makes every look-up of a name slower. A first round that does not count warms them. What a command
# prints goes through a pipe, never to a file.

labels=()
commands=()
before=()

prepare_folder() {
  bench_dir=${BRISKO_BENCH_DIR:-${TMPDIR:-/tmp}/brisko-bench-$(id -u)}
  mkdir -p -m 700 "$bench_dir"
  [[ -O $bench_dir && ! -L $bench_dir ]] || { echo "bench: $bench_dir is not ours" >&2; exit 1; }
  work_dir=$(mktemp -d "$bench_dir/run.XXXXXX")
  trap 'rm -rf -- "$work_dir"' EXIT
}

# A tree is put in its place only when it is whole.
corpus() {
  local name=$1
  shift
  $small && name+=-small
  corpus=$bench_dir/$name
  [[ -d $corpus ]] && return
  echo "making $name …" >&2
  "$bin/brisko-corpus" "$work_dir/$name" "$@"
  mv -T "$work_dir/$name" "$corpus"
}

row() {
  title=$1
  labels=()
  commands=()
}

ours() {
  labels+=("$1")
  shift
  commands+=("$(printf '%q ' "$@")")
}

peer() {
  if command -v "$2" > /dev/null; then
    ours "$@"
  else
    echo "$1: not installed, left out" >&2
  fi
}

cold=false

# Whether the system lets us empty its caches.
can_empty_caches() {
  [[ -w /proc/sys/vm/drop_caches ]] && sync && echo 3 > /proc/sys/vm/drop_caches
}

measure_cold() {
  $wants_cold || return 0
  if ! can_empty_caches 2> /dev/null; then
    echo "$title, cold: left out, because the caches cannot be emptied" >&2
    return
  fi
  local all=$runs
  cold=true runs=$((runs < 3 ? runs : 3))
  measure
  cold=false runs=$all
}

# One run of command $1: seconds and KiB at the peak, appended to the figures of that command.
run_once() {
  $cold && can_empty_caches
  ((${#before[@]} == 0)) || "${before[@]}"
  local begin=$EPOCHREALTIME end
  if ! eval "/usr/bin/time -q -f %M -o '$work_dir/peak' ${commands[$1]}" < /dev/null \
      2> "$work_dir/errors" | cat > /dev/null; then
    echo "${labels[$1]} failed:" >&2
    head -3 "$work_dir/errors" >&2
  fi
  end=$EPOCHREALTIME
  echo "$(((${end/./} - ${begin/./}))) $(tail -n 1 "$work_dir/peak")" >> "$work_dir/figures.$1"
}

# The median of column $2 of the figures of command $1.
median() {
  awk -v column="$2" '{print $column}' "$work_dir/figures.$1" | sort -n |
    awk '{v[NR] = $1} END {print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2}'
}

measure() {
  local i round first=0
  rm -f "$work_dir"/figures.*
  can_empty_caches 2> /dev/null || true
  # An emptied cache needs no round to warm it.
  $cold && first=1
  for ((round = first; round <= runs; ++round)); do
    for i in "${!commands[@]}"; do run_once "$i"; done
    ((round > 0)) || rm -f "$work_dir"/figures.*
  done
  local state=warm
  $cold && state=cold
  printf '\n%s (median of %d, %s)\n' "$title" "$runs" "$state"
  printf '  %-22s %9s %9s %14s\n' "" seconds MiB "ours / it"
  local own
  own=$(median 0 1)
  for i in "${!commands[@]}"; do
    awk -v label="${labels[$i]}" -v time="$(median "$i" 1)" -v peak="$(median "$i" 2)" -v own="$own" \
      'BEGIN {printf "  %-22s %9.3f %9.1f %14.2f\n", label, time / 1e6, peak / 1024, own / time}'
  done
}
