#!/usr/bin/env bash
# x11.sh PROGRAM DRIVER FOLDER: works the real window in a virtual X screen with a real mouse and
# real keys, and compares what it shows with what the driver shows after the same steps. Where a
# step fails, a picture of the screen is left in FOLDER.
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

# What the display shows, by Select All and Copy.
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
# expect_display COMMAND...: the display shows what the driver's does after these commands.
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
    # The chain goes on from its first cluster, 2, to 65000; the size is that of all of them.
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
start_program "$samples" "$program_path"
take_main

step "Open through the dialog, by a typed path"
open_image "$samples/sample.img"
click boot-sector
expect_display 'press Boot Sector'
click fat0
expect_display 'press FAT0'
click root
expect_display 'press Root'

step "The modes, for a line chosen with the keys"
click list
xdotool key Home Down Down Down
expect_display 'select 3'
click text
expect_display 'choose Display' 'select 3'
click dump
expect_display 'choose Dump' 'select 3'
click info
expect_display 'select 3'

step "Double-click into a folder and back"
double_click second-line
click directory
expect_display 'double 1' 'press Directory'
click list
xdotool key End
click text
expect_display 'double 1' 'choose Display' 'select 3'
double_click second-line
click directory
expect_display 'double 1' 'double 1' 'press Directory'

step "The display follows the window's size"
# A place that only a larger window has, left of the scroll bar: the paper of the display.
paper() { import -silent -window "$main" -crop "1x1+$1+$2" -depth 8 txt:- | grep -qi '#FFFFFF'; }
xdotool windowsize "$main" 1200 700
expect paper 1150 650
xdotool windowsize "$main" 200 60
expect test "$(height_of "$main")" -lt 300
xdotool windowsize "$main" 806 $((369 + bar))
expect_display 'double 1' 'double 1' 'press Directory'

step "A dump of 2 GB reaches its last line"
open_image "$samples/big.img"
click dump
click list
xdotool key Home Down
last_is() { [[ $(last_line) == "$1"* ]]; }
expect last_is 'FDE8-00007FF0 (65000-0032752) 00'

step "STOP ends it on the way, by mouse and by key"
# Mouse and keys lie ready before the dump begins.
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
click list
xdotool key Home
xdotool key Down Escape
expect stopped

step "Close while busy closes behind it"
click list
xdotool key Home
# shellcheck disable=SC2046
xdotool key Down $(point file-menu) click 1 key --delay 50 Down Down Return
expect title_is 'FAT File System'
open_image "$samples/sample.img"
click directory
expect_display 'press Directory'

step "The window's close box while busy ends the program behind it"
open_image "$samples/big.img"
click dump
click list
xdotool key Home
xdotool key Down alt+F4
gone() { ! kill -0 "$program"; }
expect gone
wait "$program" || fail "the program ended with status $?"
if [ -s "$scratch/output" ]; then fail "the program had something to say"; fi
