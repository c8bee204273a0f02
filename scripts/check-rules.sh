#!/usr/bin/env bash
# Checks the rules of the code that a compiler doesn't:
#   layering    core code (all of src/ but the backends under src/platform/<name>/,
#               src/views and src/main) includes no toolkit and no window-system
#               header;
#   formatting  every C++ file is as clang-format writes it.
# scripts/check-rules.sh [layering|formatting]...   (both when none is named)
set -euo pipefail
cd "$(dirname "$0")/.."

checks=("$@")
[ ${#checks[@]} -gt 0 ] || checks=(layering formatting)

# Files under version control, and new ones not yet added, without deleted ones.
sources() {
  git ls-files --cached --others --exclude-standard -- "$@" |
    while read -r file; do [ -f "$file" ] && printf '%s\n' "$file"; done
}

core_sources() {
  sources 'src/*.h' 'src/*.cpp' 'src/*.inc' |
    grep -Ev '^src/(platform/[^/]+/|views/|main/)'
}

# Qt (<QWidget>, <QtCore/...>), xcb, Xlib, xkbcommon, the accessibility bus,
# GLib and D-Bus: what only a backend or a view may see.
forbidden='^[[:space:]]*#[[:space:]]*include[[:space:]]*[<"](Q[A-Za-z]|Qt[A-Za-z]*/|xcb/|X11/|xkbcommon/|atspi|glib|gio/|dbus/)'

check_layering() {
  local found
  found=$(core_sources | xargs -r grep -HnE "$forbidden" || true)
  if [ -n "$found" ]; then
    echo "check-rules: core code includes a toolkit or window-system header:" >&2
    echo "$found" >&2
    return 1
  fi
}

check_formatting() {
  local files
  mapfile -t files < <(sources 'src/*.h' 'src/*.cpp' 'tests/*.h' 'tests/*.cpp' \
    'bench/*.h' 'bench/*.cpp' 'fuzz/*.h' 'fuzz/*.cpp')
  local report status=0
  report=$(mktemp)
  if ! clang-format --dry-run -Werror "${files[@]}" 2>"$report"; then
    grep -E '^[^ ].*: (error|warning):' "$report" | cut -d: -f1 | sort -u |
      sed 's/^/check-rules: not formatted (clang-format -i): /' >&2
    status=1
  fi
  rm -f "$report"
  return $status
}

status=0
for check in "${checks[@]}"; do
  case "$check" in
    layering) check_layering || status=1 ;;
    formatting) check_formatting || status=1 ;;
    *) echo "check-rules: unknown check $check" >&2; exit 2 ;;
  esac
done
exit $status
