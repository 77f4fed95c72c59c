# The duplicate search. Bars on two cores, warm: 2.5 times as fast as the fastest peer on the small
# files, the files of one size and the large ones, ahead on the others; cold: twice as fast on the
# small files, level on the large; peak memory at most that of jdupes.
#
# rmlint writes to standard output only: given a device as its output it would replace the device.

copies_corpus() {
  local name=copies-$1
  $small && name+=-small
  corpus=$bench_dir/$name
  [[ -d $corpus ]] && return
  echo "making $name …" >&2
  "$bin/brisko-copies" "$work_dir/$name" "$@"
  mv -T "$work_dir/$name" "$corpus"
}

duplicates_row() {
  row "$1"
  ours brisko "$bin/brisko" duplicates "$2"
  ours "brisko, engine alone" "$bin/brisko-duplicates" "$2"
  peer "jdupes -rQ" jdupes -rQ "$2"
  peer "jdupes -r" jdupes -r "$2"
  peer fdupes fdupes -rq "$2"
  peer rmlint rmlint --types=duplicates --hidden --output=fdupes:stdout "$2"
}

for kind in small one-size large wide; do
  if $small; then
    copies_corpus $kind --files $([[ $kind == large ]] && echo 4 || echo 2000)
  else
    copies_corpus $kind
  fi
  duplicates_row "duplicates: $kind" "$corpus"
  measure
  case $kind in small | large) measure_cold ;; esac
done
duplicates_row "duplicates: /usr" /usr
measure
