# Completion for pavonix and pavonix-shop. Commands and options are read from the
# output of --help.
_pavonix()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} commands=() help word
    help=$("$1" --help 2>/dev/null) || return
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        if [[ $word != -* ]] && _pavonix_commands "$help" | grep -qxF -- "$word"; then
            commands+=("$word")
            help=$("$1" "${commands[@]}" --help 2>/dev/null)
        fi
    done
    case $previous in
        --url | --host | --to) return ;;
        --fault) mapfile -t COMPREPLY < <(compgen -W "$("$1" faults | awk '{ print $1 }')" -- "$current") ;;
        *)
            if [[ $current == -* ]]; then
                mapfile -t COMPREPLY < <(compgen -W "$(grep -oE -- '^  [-a-z,]*--[a-z-]+' <<<"$help" |
                    grep -oE -- '--[a-z-]+')" -- "$current")
            elif [[ $previous != -* ]]; then
                mapfile -t COMPREPLY < <(compgen -W "$(_pavonix_commands "$help")" -- "$current")
            fi
            ;;
    esac
}

_pavonix_commands() # HELP
{
    sed -n '/^Subcommands:/,/^$/s/^  \([a-z-]*\) .*/\1/p' <<<"$1"
}

complete -o default -F _pavonix pavonix pavonix-shop
