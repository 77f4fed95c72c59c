# The tree of what fills a folder, complete and with every level in order. Bars on two cores: within 1.5
# of the bare walk (brisko-size) and ahead of every peer; at most 200 bytes an entry above its name.

large_row() {
  row "$1"
  ours "tree, every level sorted" "$bin/brisko-large" "$2"
  ours "brisko large --top 20" "$bin/brisko" large --top 20 "$2"
  ours "bare walk" "$bin/brisko-size" "$2"
  peer gdu gdu -n -p "$2"
  peer ncdu ncdu -0 -o - "$2"
  peer duc duc index -q -d "$work_dir/duc.db" "$2"
  peer "du | sort" sh -c 'du -a --apparent-size -B 1 "$0" | sort -rn' "$2"
  measure
  "$bin/brisko-large" "$2"
}

if $small; then
  corpus tree --folders 500 --files 10000
  large_row "10,000 files in 500 folders" "$corpus"
  corpus wide --folders 0 --files 3000
  large_row "one folder of 3,000 files" "$corpus"
else
  corpus tree --folders 50000 --files 1000000
  large_row "1,000,000 files in 50,000 folders" "$corpus"
  corpus wide --folders 0 --files 300000
  large_row "one folder of 300,000 files" "$corpus"
fi
large_row "/usr" /usr
