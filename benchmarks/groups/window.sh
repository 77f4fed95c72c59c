# The window up to its first frame, from the start of the process. Bar: 0.25 s and under 90 MiB, warm.

export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$work_dir}
row "first frame, ten pages"
ours "brisko" "$bin/brisko-window"
peer "empty window" "$bin/brisko-window" --empty
measure
