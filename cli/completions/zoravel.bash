# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# Completion of zoravel in bash. The program's own help says which commands and options there are, so that
# this file knows none of them.

# _zoravel_words HELP: the words that the help's lists begin with: commands or long options.
_zoravel_words()
{
    sed -n -e 's/^  \([a-z][a-z-]*\) .*/\1/p' -e 's/^  .*\(--[a-z][a-z-]*\).*/\1/p' <<<"$1"
}

# _zoravel_value HELP OPTION: what the help calls the value of the option; nothing if it has none.
_zoravel_value()
{
    sed -n -e "s/^  \(${2}, --[a-z-]*\|.*${2}\) \([^ ]*\)\( .*\|\$\)/\2/p" <<<"$1"
}

_zoravel()
{
    local program=${COMP_WORDS[0]} current=${COMP_WORDS[COMP_CWORD]}
    local previous=${COMP_WORDS[COMP_CWORD - 1]} help value
    COMPREPLY=()
    # Bash takes "--option=value" for three words.
    if [[ $current == '=' ]]; then
        current=
    elif [[ $previous == '=' ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi

    if [ "$COMP_CWORD" -eq 1 ]; then
        help=$("$program" --help 2>/dev/null) || return
        mapfile -t COMPREPLY < <(compgen -W "$(_zoravel_words "$help")" -- "$current")
        return
    fi
    help=$("$program" "${COMP_WORDS[1]}" --help 2>/dev/null) || return
    if [[ $previous == -* ]]; then
        value=$(_zoravel_value "$help" "$previous")
        if [[ $value == *'|'* ]]; then
            mapfile -t COMPREPLY < <(compgen -W "${value//|/ }" -- "$current")
            return
        fi
    fi
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(_zoravel_words "$help")" -- "$current")
        return
    fi
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
}
complete -F _zoravel zoravel
