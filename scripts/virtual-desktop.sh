#!/usr/bin/env bash
# Runs a command on a new virtual desktop: an Xvfb server with a window
# manager, openbox unless TARNWICK_WM names another one that the tests know
# (openbox, icewm). The desktop is stopped when the command ends, and the
# command's exit status is returned.
#   [TARNWICK_WM=icewm] scripts/virtual-desktop.sh [--keep-open] COMMAND [ARGS...]
set -euo pipefail

keep_open=0
wm=${TARNWICK_WM:-openbox}
case "$wm" in
  openbox) wm_command=(openbox --sm-disable) ;;
  # With an empty folder of its own for preferences (below): the same
  # desktop whoever runs it.
  icewm) wm_command=(icewm --client-id=) ;;
  *) echo "virtual-desktop: unknown window manager \"$wm\" (openbox, icewm)" >&2; exit 2 ;;
esac
if [ "${1:-}" = "--keep-open" ]; then keep_open=1; shift; fi

workdir=$(mktemp -d /tmp/tarnwick-desktop.XXXXXX)
cleanup() {
  [ -n "${wm_pid:-}" ] && kill "$wm_pid" 2>/dev/null || true
  [ -n "${xvfb_pid:-}" ] && kill "$xvfb_pid" 2>/dev/null || true
  wait 2>/dev/null || true
  rm -rf "$workdir"
}
trap cleanup EXIT INT TERM

Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$workdir/display" >"$workdir/xvfb.log" 2>&1 &
xvfb_pid=$!
for _ in $(seq 1 100); do
  [ -s "$workdir/display" ] && break
  sleep 0.05
done
[ -s "$workdir/display" ] || { echo "virtual-desktop: Xvfb did not start" >&2; cat "$workdir/xvfb.log" >&2; exit 1; }
export DISPLAY=":$(tr -d '\n' < "$workdir/display")"

# The tests need the window manager (it is also what grants the program its
# permission): wait until it has announced itself, starting it again if it
# ended, however long a loaded machine makes that take.
wm_pid=
wm_runs() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }
for _ in $(seq 1 600); do
  wm_runs && break
  if [ -z "$wm_pid" ] || ! kill -0 "$wm_pid" 2>/dev/null; then
    ICEWM_PRIVCFG="$workdir/icewm" "${wm_command[@]}" >>"$workdir/wm.log" 2>&1 &
    wm_pid=$!
  fi
  sleep 0.05
done
wm_runs || { echo "virtual-desktop: $wm did not start" >&2; cat "$workdir/wm.log" >&2; exit 1; }

status=0
"$@" || status=$?
if [ "$keep_open" -eq 1 ]; then wait "$xvfb_pid" || true; fi
exit "$status"
