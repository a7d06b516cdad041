#!/usr/bin/env bash
# accessibility.sh PROGRAM: works the program through the accessibility tree alone, as a screen
# reader does, in a virtual X screen with a message bus of its own.
set -euo pipefail

if [ -z "${TESSEL_OWN_BUS:-}" ]; then
    TESSEL_OWN_BUS=yes exec dbus-run-session -- "$0" "$@"
fi
program_path=$(realpath "$1")
here=$(dirname "$(realpath "$0")")
# shellcheck source=packaging/virtual-screen.sh
source "$here/../../packaging/virtual-screen.sh"

"$here/../../packaging/make-sample" "$scratch/samples"
"$here/../../packaging/make-odd-samples" "$scratch/samples"
start_screen 1100x800
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
/usr/libexec/at-spi-bus-launcher --launch-immediately > "$scratch/accessibility.log" 2>&1 &
started+=($!)
bus_is_there() {
    dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus org.a11y.Bus.GetAddress
}
wait_until 20 bus_is_there
start_program "$scratch/samples" "$program_path"
wait_window '^Tessel$' > /dev/null
/usr/bin/python3 "$here/accessibility.py" "$scratch/samples" || {
    cat "$scratch/output"
    exit 1
}
