# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Shared by the scripts that build: the compiler cache, and stages whose time is written down.

# What was compiled before is taken from ccache, where that is installed.
use_ccache() {
  command -v ccache >/dev/null || return 0
  export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
  # Precompiled headers need these: their sources are compared by content, not by time.
  export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
}

# Configures a preset and builds it, or only the targets named in $targets: build PRESET [OPTION...].
# Says nothing unless it fails.
build() {
  local preset=$1 log=$stage_folder/configure-$1
  shift
  cmake --preset "$preset" "$@" >"$log" 2>&1 || { cat "$log"; return 1; }
  # shellcheck disable=SC2086  # a list of words
  cmake --build --preset "$preset" --parallel "$(nproc)" ${targets:+--target $targets} -- --quiet
}

# The folder with what the stages leave: begin_stages FOLDER. Their table is printed at the end,
# whatever the end is.
begin_stages() {
  stage_folder=$1
  rm -rf "$stage_folder"
  mkdir -p "$stage_folder"
  trap print_stages EXIT
}

# Runs a command as a stage and notes how long it took: stage NAME COMMAND [ARGUMENT...]. The order
# of the stages is that of their beginnings.
stage() {
  local name=$1 TIMEFORMAT='%0R %0U %0S' result=passed started note
  shift
  started=$(find "$stage_folder" -name '*.stage' | wc -l)
  note=$(printf '%s/%02d.stage' "$stage_folder" "$started")
  echo "0 0 0 unfinished $name" >"$note"
  printf '\n=== %s\n' "$name"
  { time "$@" 2>&4; } 4>&2 2>"$note.time" || result=FAILED
  echo "$(cat "$note.time") $result $name" >"$note"
  [ "$result" = passed ]
}

# The same beside what follows; its output comes when finish_side_stage is called, which answers
# whether it passed. There is one at a time.
side_stage() {
  side_log=$stage_folder/side.log
  rm -f "$side_log"
  stage "$@" >"$side_log" 2>&1 &
  side_process=$!
  while [ ! -s "$side_log" ]; do sleep 0.05; done  # it has its place in the order
}

finish_side_stage() {
  local result=0
  [ -n "${side_process-}" ] || return 0
  wait "$side_process" || result=1
  side_process=
  cat "$side_log"
  return "$result"
}

print_stages() {
  local code=$? wall user system result name
  finish_side_stage || code=1
  printf '\n%8s %10s  %-10s  %s\n' seconds processor result stage
  for note in "$stage_folder"/*.stage; do
    read -r wall user system result name <"$note"
    printf '%8d %10d  %-10s  %s\n' "$wall" "$((user + system))" "$result" "$name"
  done
  printf '%8d %10s  %-10s  %s\n' "$SECONDS" "" "$([ "$code" = 0 ] && echo passed || echo FAILED)" \
    "the whole"
  exit "$code"
}
