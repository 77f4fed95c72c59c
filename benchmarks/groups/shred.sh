# Erasing 1 GiB, one random pass and zeroes. Bar: no slower than shred, in memory and on a disk. Each
# run writes its file anew; the time of that is not counted.

shred_rows() {
  local place=$1 folder=$2 size=1024
  $small && size=64
  if [[ ! -d $folder || ! -w $folder ]]; then
    echo "$place: left out, because $folder cannot be written" >&2
    return
  fi
  local dir
  dir=$(mktemp -d "$folder/brisko-shred.XXXXXX")
  local file=$dir/file
  row "$size MiB $place, one random pass and zeroes"
  before=(make_victim "$file" "$size")
  ours brisko "$(dirname "$bin")/libexec/brisko/srm" -fsz "$file"
  peer shred shred -n1 -z -u "$file"
  # secure-delete's own: of its two passes the first is 0xff, not random. Without "-f" it waits for the
  # disk after each 32 KiB, which takes minutes.
  peer "srm -f" /usr/bin/srm -flz "$file"
  measure
  before=()
  rm -rf -- "$dir"
}

make_victim() {
  head -c "$2M" /dev/zero > "$1"
  sync "$1"
}

# A file system in memory of our own: what lies in /dev is protected from the eraser.
memory=$work_dir/memory
mkdir "$memory"
if mount -t tmpfs none "$memory" 2> /dev/null; then
  shred_rows "in memory" "$memory"
  umount "$memory"
else
  echo "in memory: left out, because only root can mount" >&2
fi
shred_rows "on a disk" "$work_dir"
