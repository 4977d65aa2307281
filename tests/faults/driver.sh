# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# For the campaigns that run the driver of the window: start with
#
#   . driver.sh; prepare_driver "$@"      given [--quick] BUILD SCRATCH
#   drive places "$place/folder"          the driver, as an ordinary user
#
# Then $quick is true or false, $place is a folder that belongs to that user and $build that of the build.
# The administrator's campaigns run as somebody else, since permissions do not bind the administrator; not
# if AS_SELF is set.

set -euo pipefail

# shellcheck disable=SC2034  # the campaigns use it
quick=false
place=
as_user=()

remove_place()
{
    chmod -R u+rwX "$place" 2>/dev/null || true
    rm -rf "$place"
}

prepare_driver()
{
    if [[ ${1:-} == --quick ]]; then
        # shellcheck disable=SC2034
        quick=true
        shift
    fi
    [[ $# == 2 ]] || { echo "usage: $0 [--quick] BUILD SCRATCH" >&2 && exit 2; }
    build=$1
    [[ $(id -u) != 0 || -n ${AS_SELF:-} ]] || as_user=(setpriv --reuid 65534 --regid 65534 --clear-groups)
    mkdir -p "$2"
    # The way to the scratch folder may be closed for others.
    place=$2
    "${as_user[@]}" test -x "$place" || place=${TMPDIR:-/tmp}
    place=$(mktemp -d "$place/faults.XXXXXX")
    trap remove_place EXIT
    trap 'exit 1' INT TERM HUP
    cp "$build/tests/faults/faultdriver" "$build/tests/faults/libzoravel_faults.so" "$place"
    mkdir -p "$place/home/runtime"
    chmod 700 "$place/home/runtime"
    # The project's folder may be closed for the user.
    if [[ -n ${LSAN_OPTIONS:-} ]]; then
        cp "$(dirname "${BASH_SOURCE[0]}")/../support/leaks.supp" "$place"
        export LSAN_OPTIONS=suppressions=$place/leaks.supp:print_suppressions=0
    fi
    [[ ${#as_user[@]} == 0 ]] || chown -R 65534:65534 "$place"
    export LD_LIBRARY_PATH=$place HOME=$place/home XDG_CONFIG_HOME=$place/home/config
    export XDG_CACHE_HOME=$place/home/cache XDG_RUNTIME_DIR=$place/home/runtime
    export QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8
    unset TMPDIR
    cd "$place"
}

drive()
{
    "${as_user[@]}" "$place/faultdriver" "$@"
}
