#!/usr/bin/env bash
# Formats a manual page as man shows it and fails on any warning groff
# gives (unknown macros, bad escapes, lines it can't break).
#   check-man-page.sh PAGE
set -euo pipefail
warnings=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings=w -E UTF-8 -l "$1" 2>&1 >/dev/null)
if [ -n "$warnings" ]; then
  echo "$warnings" >&2
  exit 1
fi
LC_ALL=C.UTF-8 MANWIDTH=80 man -E UTF-8 -l "$1" | grep -q -- '--show-panel'
