# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# Completion of zoravel in bash. The program's own help says which commands and options there are, and
# "zoravel explain" which checks, so that this file knows none of them.

# _zoravel_words HELP: the words that the help's lists begin with: commands or long options.
_zoravel_words()
{
    sed -n -e '/^Examples:/q' -e 's/^  \([a-z][a-z-]*\) .*/\1/p' \
        -e 's/^  \(-., \|    \)\(--[a-z][a-z-]*\).*/\2/p' <<<"$1"
}

# _zoravel_value HELP OPTION: what the help calls the value of the option; nothing if it has none.
_zoravel_value()
{
    sed -n -e '/^Examples:/q' -e "s/^  \(${2}, --[a-z-]*\|-., ${2}\|    ${2}\) \([^ ]*\)\( .*\|\$\)/\2/p" <<<"$1"
}

# _zoravel_spectra WORD...: the numbers of the spectra in those of the words that are files.
_zoravel_spectra()
{
    local word count
    for word in "$@"; do
        word=${word//[\\\'\"]/}
        [ -f "$word" ] || continue
        grep -aoE '"Dataset[0-9]+"[[:space:]]*:' -- "$word" | tr -cd '0-9\n'
        count=$(grep -aicE '^##(XYDATA|XYPOINTS|PEAK *TABLE) *=' -- "$word")
        [ "$count" -eq 0 ] || seq "$count"
    done | sort -un
}

# _zoravel_among WORD CHOICES: completes the last of the words that WORD separates by commas.
_zoravel_among()
{
    mapfile -t COMPREPLY < <(compgen -P "${1%"${1##*,}"}" -W "$2" -- "${1##*,}")
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
        _zoravel_among "$current" "$(_zoravel_words "$help")"
        return
    fi
    help=$("$program" "${COMP_WORDS[1]}" --help 2>/dev/null) || return
    if [[ $previous == -* ]]; then
        value=$(_zoravel_value "$help" "$previous")
        if [[ $value == ID,* ]]; then
            _zoravel_among "$current" "$("$program" explain | sed 's/ .*//')"
            return
        elif [[ $value == N* && ($previous == --spectrum || $previous == -s) ]]; then
            value=${value#N}
            _zoravel_among "$current" "$(_zoravel_spectra "${COMP_WORDS[@]:2}") ${value#|}"
            return
        elif [[ $value == *'|'* ]]; then
            _zoravel_among "$current" "${value//|/ }"
            return
        fi
    fi
    if [[ $current == -* ]]; then
        _zoravel_among "$current" "$(_zoravel_words "$help")"
    elif [[ ${help%%$'\n'*} == *'[ID...]' ]]; then
        _zoravel_among "$current" "$("$program" explain | sed 's/ .*//')"
    elif [[ ${help%%$'\n'*} == *'[COMMAND]' ]]; then
        _zoravel_among "$current" "$(_zoravel_words "$("$program" --help)" | grep -v '^-')"
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}
complete -F _zoravel zoravel
