# Completion of veltra4-backup's command line, for bash.

_veltra4_backup_options() {
    local always='--help --version --json'
    case $1 in
    verify) echo "$always --controller --newer-than --model --tracking --firmware" ;;
    list) echo "$always --controller" ;;
    diff) echo "$always --controller --ignore" ;;
    extract) echo "$always --force" ;;
    *) echo "$always" ;;
    esac
}

# The first word that is no option.
_veltra4_backup_command() {
    local word
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case $word in
        verify | list | show | diff | extract) echo "$word" && return ;;
        esac
    done
}

_veltra4_backup() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command
    command=$(_veltra4_backup_command)
    COMPREPLY=()
    case $previous in
    --newer-than)
        mapfile -t COMPREPLY < <(compgen -W '12h 1d 2d 1w' -- "$word")
        return
        ;;
    --ignore)
        mapfile -t COMPREPLY < <(compgen -W 'name serial ptVersion ctVersion systemModel creationDate
            net domain nameServer ntpServer slaves activeConfig configData' -- "$word")
        return
        ;;
    --controller | --model | --tracking | --firmware) return ;; # nobody knows
    esac
    if [[ $word = -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(_veltra4_backup_options "$command")" -- "$word")
    elif [ -z "$command" ]; then
        mapfile -t COMPREPLY < <(compgen -W 'verify list show diff extract' -- "$word")
    else
        compopt -o filenames 2> /dev/null
        mapfile -t COMPREPLY < <(
            compgen -d -- "$word"
            compgen -f -X '!*.[xX][mM][lL]' -- "$word"
            [ "$command" = extract ] && compgen -f -X '!*.dat' -- "$word"
        )
    fi
}

complete -F _veltra4_backup veltra4-backup
