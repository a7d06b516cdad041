#!/usr/bin/env bash
# x11.sh PROGRAM DRIVER FOLDER: operates the program on a virtual X screen with mouse and key
# events and compares its display with the driver's after the same steps. If a step fails, a picture
# of the screen is left in FOLDER.
set -euo pipefail

program_path=$(realpath "$1")
driver=$(realpath "$2")
failures=$(realpath -m "$3")
packaging=$(realpath "$(dirname "$0")/../../packaging")
# shellcheck source=packaging/virtual-screen.sh
source "$packaging/virtual-screen.sh"

step() { echo "- $*"; }
fail() {
    mkdir -p "$failures"
    picture "$failures/failed.png"
    [ ! -f "$scratch/expected" ] || diff "$scratch/expected" "$scratch/shown" | head -20 || true
    cat "$scratch/output"
    echo "FAILED: $*; see $failures/failed.png"
    exit 1
}
expect() { wait_until 30 "$@" || fail "$*"; }

# Gets the display's text by Select All and Copy.
copy_display() {
    click display
    xdotool key ctrl+a ctrl+c
    xclip -selection clipboard -o | tr -d '\r' > "$scratch/shown"
}
last_line() {
    click display
    xdotool key ctrl+End Up Home shift+End ctrl+c
    xclip -selection clipboard -o
}
shows_expected() { copy_display && cmp -s "$scratch/expected" "$scratch/shown"; }
# expect_display COMMAND...: expects the display that the driver shows after these commands.
expect_display() {
    printf '%s\n' "file $samples/sample.img" 'menu Open' "$@" 'show display' |
        "$driver" | tr -d '\r' > "$scratch/expected"
    [ -s "$scratch/expected" ] || fail "the driver shows nothing after: $*"
    expect shows_expected
    rm "$scratch/expected"
}

open_image() {
    choose_menu Down || fail "the File menu"
    wait_window '^Open FAT Raw File File$' > "$scratch/dialog" || fail "the dialog of Open"
    type_line "$1"
    expect title_is "FAT File System $1"
}

# A FAT16 volume of 2 GB, nearly empty on the host, with one file that fills it.
make_big_image() {
    truncate -s 2145386496 "$1"
    PATH=$PATH:/usr/sbin:/sbin mkfs.fat -F 16 -s 64 "$1" > /dev/null
    printf x > "$scratch/x"
    mcopy -i "$1" "$scratch/x" ::/BIG.BIN
    # The chain goes from its first cluster, 2, to 65000; the size is that of all of them.
    perl -e '
        open my $image, "+<", $ARGV[0] or die;
        read $image, my $boot, 24;
        my ($reserved, $fats, $sectors) = unpack "x14 v C x5 v", $boot;
        seek $image, $reserved * 512 + 4, 0;
        print $image pack "v*", 3 .. 65000, 0xFFFF;
        seek $image, ($reserved + $fats * $sectors) * 512 + 28, 0;
        print $image pack "V", 64999 * 32768;
        close $image or die' "$1"
}

samples=$scratch/samples
"$packaging/make-sample" "$samples"
make_big_image "$samples/big.img"
start_screen 1280x800

step "Command lines other than one image are refused"
for wrong in '--offset' "$samples/sample.img $samples/big.img"; do
    # shellcheck disable=SC2086
    if "$program_path" $wrong 2> "$scratch/usage"; then fail "$wrong is accepted"; fi
    grep -q '^Usage: ' "$scratch/usage" || fail "no usage after $wrong"
done
env -u DISPLAY "$program_path" --version | grep -qx 'Tessel [0-9.]*' || fail "--version"

step "An image that the desktop passes is opened"
start_program "$samples" "$program_path" sample.img
take_main "^FAT File System $samples/sample.img\$"
choose_menu Up
expect eval '! kill -0 "$program"'
start_program "$samples" "$program_path"
take_main

step "Open through the dialog, by a typed path"
open_image "$samples/sample.img"
click boot-sector
expect_display 'press Boot Sector'

step "Double-click into a folder"
double_click second-line
click directory
expect_display 'double 1' 'press Directory'

step "A dump of 2 GB reaches its last line"
open_image "$samples/big.img"
click dump
click list
xdotool key Home Down
last_is() { [[ $(last_line) == "$1"* ]]; }
expect last_is 'FDE8-00007FF0 (65000-0032752) 00'

step "STOP ends it early"
# The keys and the click are queued before the dump begins.
# shellcheck disable=SC2046
click list && xdotool key Home && xdotool key Down $(point stop) click 1
stopped() {
    local line
    line=$(last_line)
    [[ $line =~ ^[0-9A-F]{4}-[0-9A-F]{8}\ \( ]] && [[ $line < FDE8 ]] || return 1
    sleep 1
    [ "$(last_line)" = "$line" ]
}
expect stopped

step "The close box while busy ends the program after the operation"
click list
xdotool key Home
xdotool key Down alt+F4
gone() { ! kill -0 "$program"; }
expect gone
wait "$program" || fail "the program ended with status $?"
if [ -s "$scratch/output" ]; then fail "the program printed something"; fi
