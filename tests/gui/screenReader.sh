#!/usr/bin/env bash
# screenReader.sh PROGRAM LOG: operates the program by keys on a virtual X screen while the screen
# reader Orca runs, and checks what Orca speaks. Writes that to LOG. Speech is replaced by Orca's
# debug output. Exits with 77, which counts as skipped, where Orca is not installed or does not start.
set -euo pipefail

if ! command -v orca > /dev/null; then
    echo "SKIPPED: the screen reader Orca is not installed"
    exit 77
fi
if [ -z "${TESSEL_OWN_BUS:-}" ]; then
    TESSEL_OWN_BUS=yes exec dbus-run-session -- "$0" "$@"
fi
program_path=$(realpath "$1")
spoken_log=$(realpath -m "$2")
packaging=$(realpath "$(dirname "$0")/../../packaging")
# shellcheck source=packaging/virtual-screen.sh
source "$packaging/virtual-screen.sh"

debug_log=$scratch/orca.log
# spoken: prints what Orca has spoken since the last step.
spoken() { tail -n "+$mark" "$debug_log" | sed -n "s/.*SPEECH OUTPUT: '\([^']*\).*/\1/p"; }
step() {
    wait_until 30 idle  # what is still to come belongs to the step before
    spoken | sed 's/^/    /' >> "$spoken_log"
    echo "- $*" | tee -a "$spoken_log"
    mark=$(($(wc -l < "$debug_log") + 1))
}
says() { spoken | grep -qF -- "$1"; }
# hears TEXT: waits until Orca has spoken TEXT since the last step.
hears() {
    wait_until 30 says "$1" && return
    step "FAILED: Orca does not speak: $1"
    tail -20 "$spoken_log"
    cat "$scratch/output"
    exit 1
}
# once TEXT: requires that Orca has spoken TEXT once, after at most one change of the focus.
once() {
    hears "$1"
    sleep 0.3
    [ "$(spoken | grep -cF -- "$1")" -eq 1 ] || { spoken; echo "FAILED: $1 is not spoken once"; exit 1; }
    local changes
    changes=$(tail -n "+$mark" "$debug_log" |
        grep -c 'EVENT MANAGER: object:state-changed:focused for .*(1,' || true)
    [ "$changes" -le 1 ] || { echo "FAILED: $changes changes of the focus"; exit 1; }
}
# press KEY: presses it once Orca is idle, as a user who listens does.
press() {
    wait_until 30 idle
    xdotool key --clearmodifiers "$@"
}
idle() {
    local lines
    lines=$(wc -l < "$debug_log")
    sleep 0.3
    [ "$(wc -l < "$debug_log")" -eq "$lines" ]
}

"$packaging/make-sample" "$scratch/samples"
"$packaging/make-odd-samples" "$scratch/samples"
start_screen 1100x800
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
/usr/libexec/at-spi-bus-launcher --launch-immediately > "$scratch/bus.log" 2>&1 &
started+=($!)
bus_is_there() {
    dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress
}
wait_until 20 bus_is_there
mkdir "$scratch/silent"
cat > "$scratch/silent/speechd.py" << 'END'
from orca import debug
debug.debugFile.reconfigure(line_buffering=True)
raise ImportError("Speech is replaced by the debug output")
END
: > "$spoken_log"
: > "$debug_log"
mark=1
PYTHONPATH=$scratch/silent orca -u "$scratch/orca" -d braille \
    -d braille-monitor --debug-file "$debug_log" > "$scratch/orca.out" 2>&1 &
orca=$!
trap 'kill -KILL "$orca"; end_screen' EXIT
if ! wait_until 60 says ' on.'; then
    echo "SKIPPED: the screen reader Orca does not start here"
    exit 77
fi

start_program "$scratch/samples" "$program_path" sample.img
take_main '^FAT File System'
hears 'Directory list'
for mode in info text dump; do
    step "The list, mode $mode"
    click "$mode"
    click list
    press End
    hears ' BYTES   .BIN '
    press Home
    hears '[.  '
    step "Down, to a directory"
    press Down
    once '[DOCS    .   ]'
    step "Down, to a directory with a long name"
    press Down
    once '[AFOLDE~1.   ]'
    hears 'A folder with a long name, directory'
    step "Down, to a file"
    press Down
    once ' README  .TXT '
    hears 'file, 3.1 KB'
done

press End
hears ' BYTES   .BIN '
step "Tab, into its dump"
press Tab
hears 'Display text'
hears '000C-00000000 '
for line in $(seq 1 34); do
    step "Down, to line $line"
    press Down
    hears "$(printf '000C-%08X (' $((line % 32 * 16)) | sed "s/^000C/000$([ "$line" -lt 32 ] && echo C || echo D)/")"
done
step "Page Down"
press Next
hears '000D-'
step "Find without a match"
press ctrl+f
hears 'Find'
xdotool type zzzz
press Return
hears 'No match'
press Escape
hears 'Display text'
step "Shift+Tab, back into the list"
press shift+Tab
hears ' BYTES   .BIN '

step "A message box"
choose_menu Down
wait_window '^Open FAT Raw File File$' > /dev/null
type_line "$(realpath "$0")"
hears 'No Boot Signature'
press Return

step "The volumes of a hard disk"
choose_menu Down
wait_window '^Open FAT Raw File File$' > /dev/null
type_line "$scratch/samples/hard-disk.img"
wait_window 'hard-disk.img$' > /dev/null
choose_menu Down Down
wait_window '^FAT File System$' > /dev/null
press alt+o
press o
wait_window '^Partition Offset$' > /dev/null
step "Down, to a volume"
press Down
hears '1048576'
step end
