# Completes the arguments of dunmora-cli in bash.
# shellcheck shell=bash

# Splits the line before the cursor into `words`, as the shell will, but with quotes and backslashes left in. bash
# itself also splits at the colon of eds:UID and the equals sign of --option=value.
_dunmora_cli_split() {
    local line=${COMP_LINE:0:COMP_POINT} part i
    for ((i = 0; i <= COMP_CWORD; i++)); do
        part=${COMP_WORDS[i]}
        if ((i == 0)) || [[ $line == [[:space:]]* ]]; then
            line=${line#"${line%%[![:space:]]*}"}
            words+=("")
        fi
        # The cursor may be inside the last one.
        [[ $line == "$part"* ]] || part=$line
        words[-1]+=$part
        line=${line:${#part}}
    done
}

# Offers those of the words that begin as `word` does.
_dunmora_cli_offer() {
    local candidate
    # Where nothing fits, there is nothing; without this, bash would offer files.
    compopt +o bashdefault +o default
    for candidate; do
        [[ $candidate != "$word"* ]] || COMPREPLY+=("$candidate")
    done
}

# Offers further names for a list that is separated by commas.
_dunmora_cli_offer_fields() {
    local chosen='' field fields=()
    [[ $word != *,* ]] || chosen=${word%,*},
    for field in firstname lastname nickname home work mobile; do
        [[ ,$chosen == *,$field,* ]] || fields+=("$chosen$field")
    done
    # A comma may follow.
    compopt -o nospace
    _dunmora_cli_offer "${fields[@]}"
}

# Offers the desktop's address books if the word begins as their names do; otherwise bash offers files and folders.
_dunmora_cli_offer_book() {
    local books
    [[ $word == eds* ]] || return
    mapfile -t books < <(
        command dunmora-cli books --names --quiet --format json 2>/dev/null </dev/null |
            grep -oE '\{"uid":"[A-Za-z0-9._@+-]+"' | sed 's/.*:"/eds:/; s/"$//'
    )
    [[ $word == eds: ]] || books+=(eds:)
    _dunmora_cli_offer "${books[@]}"
    # The word may be the beginning of a file's name.
    ((${#COMPREPLY[@]} > 0)) || compopt -o bashdefault -o default
}

_dunmora_cli() {
    local commands='list delete restore show diff fields books help'
    local words=() typed word command option options='' formats='table json' reply i
    # How many arguments are before the address book, and before the word; options are not counted.
    local before_book='' before=0
    COMPREPLY=()
    _dunmora_cli_split
    typed=${words[-1]}
    word=$typed
    command=${words[1]}

    case $command in
        list)
            options='--match --format --fail-if-found --wide --quiet'
            formats='table json csv'
            before_book=0
            ;;
        delete)
            options='--match --format --wide --quiet --check --uncheck --check-from --uncheck-from --keep-one
                --dry-run --yes --backup --allow-last-copy --allow-blank-match'
            before_book=0
            ;;
        restore)
            options='--dry-run --yes --format --quiet'
            before_book=1
            ;;
        show | diff)
            options='--format --quiet'
            before_book=0
            ;;
        books) options='--names --format --wide --quiet' ;;
    esac

    for ((i = 2; i < ${#words[@]} - 1; i++)); do
        option=''
        case ${words[i]} in
            --match | --format | --check | --uncheck | --check-from | --uncheck-from | --backup)
                option=${words[i]}
                i=$((i + 1))
                ;;
            -?*) ;;
            *) before=$((before + 1)) ;;
        esac
    done
    # The option whose value the word is.
    ((i == ${#words[@]})) || option=''
    if [[ -z $option && $word == --*=* ]]; then
        option=${word%%=*}
        word=${word#*=}
    fi

    # shellcheck disable=SC2086 # words
    if ((${#words[@]} == 2)) && [[ $word != -* ]]; then
        _dunmora_cli_offer $commands
    elif [[ $option == --match ]]; then
        _dunmora_cli_offer_fields
    elif [[ $option == --format ]]; then
        _dunmora_cli_offer $formats
    elif [[ $option == --check-from || $option == --uncheck-from || $option == --backup ]]; then
        # bash offers files.
        return
    elif [[ -n $option ]]; then
        _dunmora_cli_offer
    elif [[ $word == -* ]]; then
        _dunmora_cli_offer $options -h --help --version
    elif [[ $before == "$before_book" ]]; then
        _dunmora_cli_offer_book
    elif [[ $command == restore && $before -eq 0 ]]; then
        return
    elif [[ $command == fields && $before -eq 0 ]]; then
        _dunmora_cli_offer_fields
    elif [[ $command == help && $before -eq 0 ]]; then
        _dunmora_cli_offer $commands
    else
        _dunmora_cli_offer
    fi

    # bash replaces only what follows the last character at which it splits.
    for i in "${!COMPREPLY[@]}"; do
        reply=${typed%"$word"}${COMPREPLY[i]}
        COMPREPLY[i]=${reply#"${typed%"$2"}"}
    done
}

complete -o bashdefault -o default -F _dunmora_cli dunmora-cli
