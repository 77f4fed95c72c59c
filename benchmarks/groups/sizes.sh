# The size of a tree. Bars on two cores: at most 0.6 of du's time on the tree of a million files, level
# with it on the wide folder and on /usr, under 20 MiB.

sizes_row() {
  row "$1"
  ours brisko "$bin/brisko-size" "$2"
  peer du du -s "$2"
  peer gdu gdu -n -p "$2"
  peer ncdu ncdu -0 -o - "$2"
  peer duc duc index -q -d "$work_dir/duc.db" "$2"
  measure
}

if $small; then
  corpus tree --folders 500 --files 10000
  sizes_row "10,000 files in 500 folders" "$corpus"
  corpus wide --folders 0 --files 3000
  sizes_row "one folder of 3,000 files" "$corpus"
else
  corpus tree --folders 50000 --files 1000000
  sizes_row "1,000,000 files in 50,000 folders" "$corpus"
  corpus wide --folders 0 --files 300000
  sizes_row "one folder of 300,000 files" "$corpus"
fi
sizes_row "/usr" /usr
