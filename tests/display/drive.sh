# shellcheck shell=bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Functions for tests that use the program as a person does, with keys and the mouse; sourced by bash
# scripts, which are given the program as first argument:
#
#   open_display 1600x1000              a display of this size, with a window manager
#   open_program a.json                 the program on the display; its main window in $window
#   wait_for_title "ZORAVEL ... *"      until the main window has exactly this title
#   press ctrl+s; write "text"          keys for the window that has the keyboard
#   click_field Points                  a field of either form, by the name that find_fields.py gives it
#   click_tool next                     a button of the tool bar
#   wait_for_dialog "Create database"   until this window has the keyboard; then it is in $dialog
#   wait_for_question                   the same for the question whether to save
#   wait_for_end_of_dialog              until that window is closed
#   wait_for_main_window                until the main window has the keyboard again
#   expect_reading "$dialog" "text"     the text can be read in this window
#   expect_json a.json '.Mass == 1'     a condition on a file; wait_for_json waits for it
#   expect_same_json a.json b.json 'del(.Species.Name)'  both have the same, but for what the filter drops
#   save a.json                         Ctrl+S, until this file has been written
#   expect_end 0                        the program has ended by itself, with this exit status
#   keep_picture name                   a picture of the screen, if SCREENSHOTS names a folder for it
#
# Each ends the script with a message when it cannot do its work or finds something else. Needs the
# packages of display.sh, xclip, xset, jq, python3 and tesseract-ocr.

display_scripts=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# shellcheck disable=SC2034  # the scripts start from copies of them
examples=$(cd "$display_scripts/../../examples" && pwd)
# shellcheck source=display.sh
. "$display_scripts/display.sh"

[[ $# -ge 1 && -x $1 ]] || fail "usage: $0 <program>"
program_file=$(realpath "$1")
test_name=$(basename "$0")
for tool in xclip xset jq python3 tesseract; do
    command -v "$tool" >/dev/null || fail "$tool is not installed"
done
window= # the program's main window
dialog= # the window that took the keyboard last

fail()
{
    keep_picture failure
    echo "FAIL: $*" >&2
    local log=$display_folder/program.log
    [[ ! -s $log || $* == *"$(<"$log")"* ]] || sed 's/^/program: /' "$log" >&2
    exit 1
}

# Without its window import would wait for a click forever.
import()
{
    timeout "$patience" import "$@"
}

keep_picture()
{
    [[ -n ${SCREENSHOTS:-} && -n $display_server ]] || return 0
    mkdir -p "$SCREENSHOTS"
    import -silent -window root "$SCREENSHOTS/$test_name-$1.png"
}

# --- the program ---

open_display()
{
    # The desktop on which the test is started has a say in sizes, in dialogs and in what keys do.
    unset QT_SCALE_FACTOR QT_SCREEN_SCALE_FACTORS QT_FONT_DPI QT_STYLE_OVERRIDE QT_QPA_PLATFORMTHEME \
        XDG_CURRENT_DESKTOP DESKTOP_SESSION KDE_FULL_SESSION GNOME_DESKTOP_SESSION_ID \
        QT_IM_MODULE XMODIFIERS DBUS_SESSION_BUS_ADDRESS
    start_display "$1"
    # On a busy machine the server would take a late release of a key for a key held down.
    xset r off || fail "cannot switch the repetition of keys off"
}

# open_program [<file>]: in a folder of its own for relative names.
open_program()
{
    local title="ZORAVEL Entry Edit"
    [[ $# == 0 ]] || title+=" - $(basename "$1")"
    start_program "$program_file" "$@"
    window=$(wait_for_window "$title") || exit 1
    wait_for_main_window
    wait_for_title "$title"
}

expect_end()
{
    local status=0
    wait_until "the end of the program" program_has_ended
    wait "$program" || status=$?
    program=
    [[ $status == "$1" ]] || fail "the program ended with $status instead of $1"
}

program_has_ended()
{
    ! kill -0 "$program"
}

# --- windows ---

title()
{
    xdotool getwindowname "$window"
}

title_is()
{
    [[ $(title) == "$1" ]]
}

wait_for_title()
{
    wait_until "the title \"$1\"" title_is "$1"
}

expect_title()
{
    title_is "$1" || fail "the title is \"$(title)\" instead of \"$1\""
}

has_keyboard()
{
    [[ $(xdotool getwindowfocus) == "$1" && $(xdotool getactivewindow) == "$1" ]]
}

wait_for_main_window()
{
    wait_until "the main window to have the keyboard" has_keyboard "$window"
}

dialog_has_keyboard()
{
    dialog=$(xdotool getwindowfocus) && [[ $dialog != "$window" ]] && has_keyboard "$dialog" \
        && [[ $(xdotool getwindowpid "$dialog") == "$program" ]] \
        && [[ $(xdotool getwindowname "$dialog") == "$1" ]]
}

wait_for_dialog()
{
    wait_until "the window \"$1\"" dialog_has_keyboard "$1"
}

# The question whether to save has no title of its own; the program's file name stands there.
wait_for_question()
{
    wait_for_dialog "$(basename "$program_file")"
}

window_is_gone()
{
    ! xdotool search --onlyvisible --pid "$program" | grep -qx "$1"
}

wait_for_end_of_dialog()
{
    wait_until "the window \"$(xdotool getwindowname "$dialog" 2>/dev/null)\" to close" window_is_gone "$dialog"
}

# The window manager does not know of menus.
menu_is_open()
{
    local id
    for id in $(xdotool search --onlyvisible --pid "$program"); do
        ! xwininfo -id "$id" | grep -q 'Override Redirect State: yes' || return 0
    done
    return 1
}

# The letters of a text that a reader of pictures tells from each other.
plain_letters()
{
    tr -d '[:space:]' | tr '[:upper:]' '[:lower:]' | sed 'y/i1|0/lllo/'
}

expect_reading()
{
    local picture=$display_folder/reading.png read wanted
    wanted=$(plain_letters <<<"$2")
    screenshot "$1" "$picture"
    for segmentation in 6 11 4; do
        read=$(convert "$picture" -colorspace Gray -resize 400% png:- \
            | OMP_THREAD_LIMIT=1 tesseract - - --psm "$segmentation" --dpi 300 -l eng 2>/dev/null \
            | plain_letters)
        [[ $read != *"$wanted"* ]] || return 0
    done
    fail "cannot read \"$2\" in the window \"$(xdotool getwindowname "$1")\", only \"$read\""
}

# --- keys and the mouse ---

press()
{
    xdotool key --delay 20 "$@" || fail "cannot press $*"
}

# Lines are parted with Return.
write()
{
    local line first=true
    while IFS= read -r line; do
        $first || press Return
        first=false
        [[ -z $line ]] || xdotool type --delay 20 -- "$line" || fail "cannot type $line"
    done <<<"$1"
}

# Where the parts of the main window are, for its size and document: looking for them takes a second or two.
declare -A places=()

# find_place <part>: "x y" in $place, its middle in pixels of the main window.
find_place()
{
    local picture=$display_folder/place.png layout found name x y
    layout=$(xdotool getwindowgeometry "$window" | tail -n 1) || fail "the main window has no size"
    layout+=$(title) || fail "the main window has no title"
    layout=${layout% \*}
    if [[ -z ${places[$layout $1]:-} ]]; then
        screenshot "$window" "$picture"
        found=$(python3 "$display_scripts/find_fields.py" "$picture") || fail "cannot find the fields"
        while read -r name x y; do
            places[$layout $name]="$x $y"
        done <<<"$found"
        [[ -n ${places[$layout $1]:-} ]] ||
            fail "there is no $1 in the main window, only ${found//$'\n'/, }"
    fi
    place=${places[$layout $1]}
}

# click_field <part> [<button of the mouse>]
click_field()
{
    local place
    find_place "$1"
    # shellcheck disable=SC2086  # two numbers
    xdotool mousemove --window "$window" $place click "${2:-1}" || fail "cannot click on $1"
}

# The tool bar does not move.
declare -A tool_places=()
click_tool()
{
    local place=${tool_places[$1]:-}
    [[ -n $place ]] || find_place "tool-$1"
    tool_places[$1]=$place
    # shellcheck disable=SC2086  # two numbers
    xdotool mousemove --window "$window" $place click 1 || fail "cannot click on $1"
}

# --- files and the clipboard ---

json_is()
{
    jq -e "${@:2}" "$1"
}

# wait_for_json <file> <argument of jq>...
wait_for_json()
{
    wait_until "$(basename "$1") to have ${*:2}" json_is "$@"
}

expect_json()
{
    json_is "$@" >/dev/null || fail "$(basename "$1") does not have ${*:2}"
}

# comparable <species file> <filter of jq>: with the pixels of the image in place of its file, which may
# say more, such as the resolution of the screen.
comparable()
{
    local image
    image=$(jq -r '.Species.StructuralFormula' "$1" | base64 -d | convert png:- -format '%wx%h %#' info:) \
        || fail "$1 has no image"
    jq -S --arg image "$image" "(.Species.StructuralFormula |= \$image) | $2" "$1" \
        || fail "$1 cannot be compared"
}

# expect_same_json <species file> <species file> [<filter of jq>]
expect_same_json()
{
    local one other
    one=$(comparable "$1" "${3:-.}") && other=$(comparable "$2" "${3:-.}") || exit 1
    diff <(echo "$one") <(echo "$other") >"$display_folder/difference" \
        || fail "$1 and $2 differ: $(head -n 20 "$display_folder/difference" | cut -c 1-300)"
}

expect_same_file()
{
    cmp -s "$1" "$2" || fail "$2 was changed"
}

# A file is replaced as a whole when it is written.
identity_of()
{
    stat -c '%i %y' "$1"
}

is_replaced()
{
    [[ $(identity_of "$1") != "$2" ]]
}

save()
{
    local before
    before=$(identity_of "$1")
    press ctrl+s
    wait_until "$(basename "$1") to be saved" is_replaced "$1" "$before"
}

# The clipboard's text as another program gets it.
clipboard_text()
{
    xclip -o -selection clipboard -t UTF8_STRING 2>/dev/null
}

# fill_clipboard <type> <file>: another program puts this on the clipboard, and stays until it is replaced.
fill_clipboard()
{
    xclip -i -selection clipboard -t "$1" "$2" >/dev/null 2>&1 || fail "cannot fill the clipboard"
    wait_until "the clipboard" clipboard_holds "$1" "$2"
}

clipboard_holds()
{
    xclip -o -selection clipboard -t "$1" | cmp - "$2"
}
