# To be sourced: a virtual X screen with a window manager, and functions for input and screenshots.
# Everything that is started here is ended with the shell, by its process id. Temporary files and the
# programs' settings go to $scratch.
# shellcheck shell=bash

scratch=$(mktemp -d)
started=()

end_screen() {
    local i
    for ((i = ${#started[@]} - 1; i >= 0; i--)); do
        kill "${started[i]}" 2> /dev/null || true
        wait "${started[i]}" 2> /dev/null || true
    done
    started=()
    rm -rf "$scratch"
}
trap end_screen EXIT

# wait_until SECONDS COMMAND...: repeats the command until it succeeds; false after that time.
wait_until() {
    local end=$((SECONDS + $1))
    shift
    until "$@" > /dev/null 2>&1; do
        [ "$SECONDS" -le "$end" ] || return 1
        sleep 0.05
    done
}

# start_screen WIDTHxHEIGHT
start_screen() {
    export XDG_CONFIG_HOME=$scratch/config XDG_CACHE_HOME=$scratch/cache
    export XDG_RUNTIME_DIR=$scratch/runtime XDG_DATA_HOME=$scratch/data
    mkdir -m 700 "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$XDG_RUNTIME_DIR" "$XDG_DATA_HOME"
    unset WAYLAND_DISPLAY QT_QPA_PLATFORMTHEME XDG_CURRENT_DESKTOP DESKTOP_SESSION
    export QT_QPA_PLATFORM=xcb QT_SCALE_FACTOR=${QT_SCALE_FACTOR:-1} LC_ALL=C.UTF-8

    # The server takes the first free display number and reports it.
    Xvfb -displayfd 3 -screen 0 "$1x24" -dpi 96 -nolisten tcp -noreset \
        3> "$scratch/display" 2> "$scratch/xvfb.log" &
    started+=($!)
    if ! wait_until 20 test -s "$scratch/display"; then
        cat "$scratch/xvfb.log" >&2
        echo "The virtual screen failed to start" >&2
        return 1
    fi
    DISPLAY=:$(tr -d '[:space:]' < "$scratch/display")
    export DISPLAY
    openbox --sm-disable > "$scratch/openbox.log" 2>&1 &
    started+=($!)
    wait_until 20 window_manager_runs || { echo "The window manager failed to start" >&2; return 1; }
}

window_manager_runs() { xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'; }

# start_program FOLDER PROGRAM [ARGUMENT...]: starts it there and sets $program to its process id.
start_program() {
    (cd "$1" && shift && exec "$@") > "$scratch/output" 2>&1 &
    program=$!
    started+=("$program")
}

# wait_window REGEX [SECONDS]: waits for an active window whose title matches, and prints its id.
wait_window() {
    if ! wait_until "${2:-60}" active_is "$1"; then
        echo "No window with the title $1 appeared" >&2
        return 1
    fi
    xdotool getactivewindow
}
active_is() { [[ $(xdotool getactivewindow getwindowname) =~ $1 ]]; }
no_window() { ! xdotool search --onlyvisible --name "$1"; }
title_is() { [ "$(xdotool getwindowname "$main" 2> /dev/null)" = "$1" ]; }

# take_main [TITLE]: waits for the program's window and sets $main to its id and $bar to the height of
# its menu bar in pixels. Positions of controls are relative to the area below that.
take_main() {
    main=$(wait_window "${1:-^Tessel$}")
    bar=$(($(height_of "$main") - 369))
}

height_of() { xdotool getwindowgeometry --shell "$1" | sed -n 's/^HEIGHT=//p'; }

# Positions of the controls, in pixels.
at() {
    case "$1" in
        file-menu) echo 14 $((-bar / 2)) ;;
        info) echo 24 22 ;;
        text) echo 24 38 ;;
        dump) echo 24 54 ;;
        stop) echo 268 20 ;;
        directory) echo 388 20 ;;
        boot-sector) echo 464 20 ;;
        fat0) echo 540 20 ;;
        root) echo 604 20 ;;
        list) echo 60 111 ;;
        second-line) echo 60 124 ;;
        display) echo 400 200 ;;
    esac
}

# point CONTROL: prints the xdotool arguments that move the mouse there.
point() {
    local x y
    read -r x y <<< "$(at "$1")"
    echo mousemove --window "$main" "$x" $((y + bar))
}

# shellcheck disable=SC2046
click() { xdotool $(point "$1") click 1; }
# shellcheck disable=SC2046
double_click() { xdotool $(point "$1") click --repeat 2 --delay 60 1; }

# choose_menu KEY...: opens the File menu, goes to an entry with these keys and activates it.
choose_menu() {
    click file-menu
    wait_until 10 menu_is_open || { echo "The menu does not open" >&2; return 1; }
    xdotool key --delay 20 "$@" Return
}
# An open menu is a second visible window of the program.
menu_is_open() { [ "$(xdotool search --onlyvisible --class tessel | wc -l)" -gt 1 ]; }

# type_line TEXT: types it and Return.
type_line() {
    xdotool type --delay 5 -- "$1"
    xdotool key Return
}

# picture FILE [WINDOW]: takes a screenshot, or one of a window with its frame, once it stops changing.
picture() {
    local cut=() last='' now x y width height left right top bottom
    if [ $# -gt 1 ]; then
        read -r x y width height <<< "$(xwininfo -id "$2" |
            awk '/Absolute|Width:|Height:/ { printf "%s ", $NF }')"
        IFS=', ' read -r left right top bottom \
            <<< "$(xprop -id "$2" -notype _NET_FRAME_EXTENTS | sed 's/.*= //')"
        cut=(-crop "$((width + left + right))x$((height + top + bottom))+$((x - left))+$((y - top))")
    fi
    for _ in $(seq 1 40); do
        import -silent -window root "${cut[@]}" +repage "$1"
        now=$(md5sum < "$1")
        [ "$now" != "$last" ] || return 0
        last=$now
        sleep 0.1
    done
}
