#!/usr/bin/env bash
# Counts the system calls of the program and of its guard over some seconds, 60 if not told, in which nobody does anything
# and the window is not on the screen. Needs strace, Xvfb, openbox and xdotool. usage: bench/idle.sh [BUILD-FOLDER [SECONDS]]
set -euo pipefail
build=$(readlink -f "${1:-build}")
seconds=${2:-60}
folder=$(mktemp -d)
children=()
finish() {
  kill "${children[@]}" 2>/dev/null || true
  rm -rf "$folder"
}
trap finish EXIT

exec 3<>"$folder/display"
Xvfb -displayfd 3 -screen 0 1280x800x24 -noreset >/dev/null 2>&1 &
children+=($!)
until [[ -s $folder/display ]]; do sleep 0.1; done
DISPLAY=:$(head -n 1 "$folder/display")
export DISPLAY HOME=$folder XDG_CONFIG_HOME=$folder XDG_RUNTIME_DIR=$folder
openbox >/dev/null 2>&1 &
children+=($!)
"$build/Strokemind" 2>/dev/null &
program=$!
children+=("$program")
xdotool search --sync --onlyvisible --name '^Strokemind$' >/dev/null
sleep 3
xdotool search --name '^Strokemind$' windowunmap
sleep 2
guard=$(pgrep -n strokemind-guar)

for pid in "$program" "$guard"; do
  timeout "$seconds" strace -f -q -e 'trace=!restart_syscall' -p "$pid" -o "$folder/$pid" 2>/dev/null &
done
sleep $((seconds + 1))
# The call in which a thread has slept all the time is told when it is let go.
calls() { grep -vc '<detached' "$folder/$1" || true; }
printf 'program: %d system calls in %d s, %d kB resident\n' "$(calls "$program")" "$seconds" \
  "$(awk '/VmRSS/ {print $2}' "/proc/$program/status")"
printf 'guard: %d system calls in %d s, %d kB resident\n' "$(calls "$guard")" "$seconds" \
  "$(awk '/VmRSS/ {print $2}' "/proc/$guard/status")"
