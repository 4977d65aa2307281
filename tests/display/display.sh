# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# Functions for tests that start the program on an X display of their own; sourced by bash scripts:
#
#   start_display 1400x1000 192     DISPLAY: this many pixels, this many dots per inch (96 by default)
#   start_program entry-edit a.json the program, in the background; its process in $program
#   window=$(wait_for_window Title) || exit 1
#                                   the id of the window whose title contains this text
#   screenshot "$window" a.png      the window's contents, once they no longer change
#   stop_program, stop_display      both are done when the script ends, too
#
# Each ends the script (or the subshell that it runs in) with a message when it cannot do its work. Needs
# Xvfb, openbox, xprop, xdotool and ImageMagick. The settings of the user are neither read nor changed:
# the program's go to the private folder $display_folder, where scripts can put their own files, too.

set -u

patience=60 # seconds: with the sanitizers, on a busy machine, a start can take ten
display_folder=$(mktemp -d)
display_server=''
window_manager=''
program=''
trap 'stop_program; stop_display; rm -rf "$display_folder"' EXIT
trap 'exit 1' INT TERM HUP

fail()
{
    echo "FAIL: $*" >&2
    exit 1
}

# wait_until <what> <command>...: tries the command until it succeeds.
wait_until()
{
    local what=$1 end=$((SECONDS + patience))
    shift
    until "$@" >/dev/null 2>&1; do
        ((SECONDS < end)) || fail "waited $patience s in vain for $what"
        sleep 0.1
    done
}

# stop_process <pid>: ends a process that this script started, and waits for its end.
stop_process()
{
    [[ -n $1 ]] || return 0
    kill "$1" 2>/dev/null
    local end=$((SECONDS + 10))
    while kill -0 "$1" 2>/dev/null && ((SECONDS < end)); do
        sleep 0.05
    done
    kill -KILL "$1" 2>/dev/null
    wait "$1" 2>/dev/null
    return 0
}

start_display()
{
    local tool number=$display_folder/number
    for tool in Xvfb openbox xprop xdotool convert import; do
        command -v "$tool" >/dev/null || fail "$tool is not installed"
    done
    export XDG_CONFIG_HOME=$display_folder/config XDG_CACHE_HOME=$display_folder/cache
    export XDG_RUNTIME_DIR=$display_folder/runtime
    mkdir -p "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$XDG_RUNTIME_DIR"
    chmod 700 "$XDG_RUNTIME_DIR"

    # The server finds a free number itself. It must not start afresh when its last client goes, which
    # would forget the resolution below.
    rm -f "$number"
    Xvfb -displayfd 3 -noreset -nolisten tcp -screen 0 "${1}x24" \
        3>"$number" >"$display_folder/server.log" 2>&1 &
    display_server=$!
    wait_until "the display" grep -q '[0-9]' "$number"
    DISPLAY=:$(<"$number")
    export DISPLAY
    # The desktop of the person who runs the test must not have a say.
    unset WAYLAND_DISPLAY SESSION_MANAGER DESKTOP_STARTUP_ID XDG_CURRENT_DESKTOP KDE_FULL_SESSION \
        QT_QPA_PLATFORMTHEME QT_STYLE_OVERRIDE QT_FONT_DPI QT_USE_PHYSICAL_DPI QT_SCALE_FACTOR \
        QT_SCREEN_SCALE_FACTORS QT_ENABLE_HIGHDPI_SCALING QT_SCALE_FACTOR_ROUNDING_POLICY

    # Desktops publish the resolution that their user has chosen in this way.
    xprop -root -format RESOURCE_MANAGER 8s \
        -set RESOURCE_MANAGER "Xft.dpi:"$'\t'"${2:-96}"$'\n' || fail "cannot set the resolution"
    openbox >"$display_folder/manager.log" 2>&1 &
    window_manager=$!
    wait_until "the window manager" \
        bash -c 'xprop -root _NET_SUPPORTING_WM_CHECK | grep -q "window id"'
    # The first key makes the server change the map of the keyboard, upon which the window manager claims its
    # own keys anew: one that comes meanwhile, such as Alt+F4, would be lost.
    xdotool key Shift_L || fail "cannot press a key"
    sleep 0.3
}

stop_display()
{
    stop_process "$window_manager"
    stop_process "$display_server"
    window_manager=
    display_server=
}

start_program()
{
    QT_QPA_PLATFORM=xcb "$@" >"$display_folder/program.log" 2>&1 &
    program=$!
}

stop_program()
{
    stop_process "$program"
    program=
}

# The newest visible window whose title contains the text, as it stands.
find_window()
{
    local title
    # The text is a pattern for xdotool.
    # shellcheck disable=SC2016,SC2001
    title=$(sed 's/[][\.*^$()+?{|]/\\&/g' <<<"$1")
    xdotool search --onlyvisible --name "$title" 2>/dev/null | tail -n 1 | grep .
}

wait_for_window()
{
    local end=$((SECONDS + patience))
    until find_window "$1"; do
        kill -0 "$program" 2>/dev/null \
            || fail "the program ended: $(<"$display_folder/program.log")"
        ((SECONDS < end)) || fail "waited $patience s in vain for the window \"$1\""
        sleep 0.1
    done
}

# Takes pictures until two in a row are the same: a window is first painted in several steps.
screenshot()
{
    local previous='' current end=$((SECONDS + patience))
    while ((SECONDS < end)); do
        # What is not packed takes a third of the time.
        import -silent -window "$1" "$2.mpc" || fail "cannot take a picture of the window $1"
        current=$(cksum <"$2.cache")
        if [[ $current == "$previous" ]]; then
            convert "$2.mpc" "$2"
            rm "$2.mpc" "$2.cache"
            return 0
        fi
        previous=$current
        sleep 0.3
    done
    fail "the window does not come to rest"
}
