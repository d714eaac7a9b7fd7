# Completes the arguments of dunmora in bash.
# shellcheck shell=bash

_dunmora() {
    COMPREPLY=()
    # The rest are files and folders, which bash offers.
    case $2 in
        -*) mapfile -t COMPREPLY < <(compgen -W '--choose -h --help --version' -- "$2") ;;
        eds) COMPREPLY=(eds:) ;;
    esac
}

complete -o bashdefault -o default -F _dunmora dunmora
