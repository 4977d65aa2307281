# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# For tests of what is installed; sourced by bash scripts, which are given the folder of a finished build:
#
#   install_tree              everything that is installed, as under /usr, in the folder $tree
#   desktop_id                the name by which desktops know the editor: from its desktop entry's file
#   needs tool...             ends the script unless these can be called
#
# What they make is in the folder $scratch, which is deleted when the script ends.

set -euo pipefail

build=$(realpath "${1:?usage: $0 <folder of a build>}")
# shellcheck disable=SC2034  # for the scripts
source_folder=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
tree=$scratch/tree

fail()
{
    echo "FAIL: $*" >&2
    exit 1
}

needs()
{
    local tool
    for tool in "$@"; do
        command -v "$tool" >/dev/null || fail "$tool is not installed"
    done
}

install_tree()
{
    cmake --install "$build" --prefix "$tree" >"$scratch/install.log" 2>&1 \
        || fail "cannot install: $(<"$scratch/install.log")"
}

desktop_id()
{
    basename "$tree"/share/applications/*.desktop .desktop
}
