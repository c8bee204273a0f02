#!/usr/bin/env bash
# Shows Tarnwick at work on the current (virtual) display: opens a few file
# manager windows and a terminal, starts Tarnwick, presses the chord with the
# pointer in the middle of the screen, saves a screenshot of the panel, and
# keeps everything running until interrupted.
#   scripts/demo-desktop.sh TARNWICK_BINARY [TARNWICK_ARGS...]
# The screenshot goes to $TARNWICK_DEMO_SCREENSHOT, by default
# build/artifacts/demo-panel.png.
set -euo pipefail
cd "$(dirname "$0")/.."
binary=$1
shift
screenshot=${TARNWICK_DEMO_SCREENSHOT:-$PWD/build/artifacts/demo-panel.png}

folders=$(mktemp -d /tmp/tarnwick-demo.XXXXXX)
pids=()
cleanup() {
  for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
  wait 2>/dev/null || true
  rm -rf "$folders"
}
trap cleanup EXIT
trap 'exit 0' INT TERM

# Polls a command for up to ten seconds.
wait_for() {
  for _ in $(seq 1 200); do
    "$@" >/dev/null 2>&1 && return 0
    sleep 0.05
  done
  return 1
}

windows_of() { xdotool search --onlyvisible --pid "$1" --name '.' | wc -l; }
has_windows() { [ "$(windows_of "$1")" -ge "$2" ]; }

# The file manager's first start stays as its one process; the later ones
# hand their folder over to it.
count=0
for name in Documents Pictures Projects; do
  mkdir -p "$folders/$name"
  pcmanfm --new-win "$folders/$name" >/dev/null 2>&1 &
  [ "$count" -eq 0 ] && file_manager=$! && pids+=("$file_manager")
  count=$((count + 1))
  wait_for has_windows "$file_manager" "$count" || echo "demo: the file manager did not open $name" >&2
done
xterm -T "Terminal" >/dev/null 2>&1 &
pids+=($!)
wait_for has_windows "$!" 1 || echo "demo: the terminal did not open" >&2

"$binary" "$@" &
tarnwick=$!
pids+=("$tarnwick")

# Tarnwick handles SIGTERM once it is ready for the chord.
handles_term() {
  local mask
  mask=$(awk '/^SigCgt:/ { print $2 }' "/proc/$tarnwick/status")
  (((0x$mask >> 14) & 1))
}
if ! wait_for handles_term; then
  echo "demo: Tarnwick did not start" >&2
  exit 1
fi

panel=""
find_panel() { panel=$(xdotool search --onlyvisible --pid "$tarnwick" --name '^Tarnwick$' | head -1) && [ -n "$panel" ]; }
# A first start tells the chord in a window of its own, which comes to the
# front and whose OK takes Return; a later start shows the panel at once,
# which never takes the focus.
is_active() { [ "$(xdotool getactivewindow 2>/dev/null)" = "$panel" ]; }
if wait_for find_panel; then
  for _ in $(seq 1 40); do
    if is_active; then xdotool key Return; sleep 0.3; break; fi
    sleep 0.05
  done
fi

xdotool mousemove 640 400
xdotool keydown ctrl keydown alt keydown shift keyup shift keyup alt keyup ctrl
if wait_for find_panel; then
  # The panel with a margin of the desktop around it.
  read -r x y width height < <(xwininfo -id "$panel" | awk '
    /Absolute upper-left X/ { x = $NF } /Absolute upper-left Y/ { y = $NF }
    /Width:/ { w = $NF } /Height:/ { h = $NF }
    END { m = 40; x -= m; y -= m; if (x < 0) x = 0; if (y < 0) y = 0;
          print x, y, w + 2 * m, h + 2 * m }')
  mkdir -p "$(dirname "$screenshot")"
  import -window root -crop "${width}x${height}+${x}+${y}" +repage "$screenshot"
  echo "The panel at the pointer is saved in $screenshot"
else
  echo "demo: the panel did not show after the chord" >&2
fi

echo "Tarnwick runs on display $DISPLAY; press Control+C to stop."
wait "$tarnwick"
