# Completes the arguments of dunmora-cli in fish.

# Whether one of these commands was given; without any, whether none was.
function __dunmora_cli_command
    set -l words (commandline -opc)
    if not set -q argv[1]
        test (count $words) -eq 1
    else
        test (count $words) -gt 1; and contains -- $words[2] $argv
    end
end

# Whether the word is this argument of one of these commands: __dunmora_cli_argument NUMBER COMMAND...
# The command is not counted, and neither are options.
function __dunmora_cli_argument
    __dunmora_cli_command $argv[2..-1]; or return
    set -l words (commandline -opc)
    set -l number 1
    set -e words[1..2]
    while set -q words[1]
        if contains -- $words[1] --match --format --check --uncheck --check-from --uncheck-from --backup
            set -e words[1]
        else if not string match -qr '^-.' -- $words[1]
            set number (math $number + 1)
        end
        set -e words[1]
    end
    test $number -eq $argv[1]
end

# The lists to which one field is added.
function __dunmora_cli_fields
    set -l word (commandline -ct)
    set -l chosen (string match -r '^(?:--match=)?(.*,)' -- "$word")[2]
    for field in firstname lastname nickname home work mobile
        contains -- $field (string split , -- "$chosen"); or echo "$chosen$field"
    end
end

# The desktop's address books, if the word begins as their names do.
function __dunmora_cli_books
    string match -q 'eds*' -- (commandline -ct); or return
    printf 'eds:\tAll address books of the desktop\n'
    command dunmora-cli books --names --quiet --format json 2>/dev/null </dev/null |
        string match -ra '\{"uid":"[A-Za-z0-9._@+-]+","name":"(?:[^"\\\\]|\\\\.)*"' |
        string replace -r '^\{"uid":"(.*?)","name":"(.*)"$' 'eds:$1\t$2' | string replace -ra '\\\\(["\\\\])' '$1'
end

complete -c dunmora-cli -f
complete -c dunmora-cli -s h -l help -d 'Print the help and exit'
complete -c dunmora-cli -l version -d 'Print the version and exit'

complete -c dunmora-cli -n __dunmora_cli_command -a list -d 'Show the duplicates and what would be deleted'
complete -c dunmora-cli -n __dunmora_cli_command -a delete -d 'Delete the checked duplicates'
complete -c dunmora-cli -n __dunmora_cli_command -a restore -d 'Put the people of a backup back'
complete -c dunmora-cli -n __dunmora_cli_command -a show -d 'Show the whole cards of people'
complete -c dunmora-cli -n __dunmora_cli_command -a diff -d 'Show what differs between two people'
complete -c dunmora-cli -n __dunmora_cli_command -a fields -d 'Show or store the match fields of the preferences'
complete -c dunmora-cli -n __dunmora_cli_command -a books -d 'List the address books of the desktop'
complete -c dunmora-cli -n __dunmora_cli_command -a help -d 'Show the help of a command'

# Address books
complete -c dunmora-cli -n '__dunmora_cli_argument 1 list delete restore show diff' -F
complete -c dunmora-cli -n '__dunmora_cli_argument 2 restore' -F
complete -c dunmora-cli -n '__dunmora_cli_argument 1 list delete show diff' -a '(__dunmora_cli_books)'
complete -c dunmora-cli -n '__dunmora_cli_argument 2 restore' -a '(__dunmora_cli_books)'

# Other arguments
complete -c dunmora-cli -n '__dunmora_cli_argument 1 fields' -a '(__dunmora_cli_fields)'
complete -c dunmora-cli -n '__dunmora_cli_argument 1 help' -a 'list delete restore show diff fields books help'

# Options
complete -c dunmora-cli -n '__dunmora_cli_command list delete' -l match -x -a '(__dunmora_cli_fields)' -d 'Compare these fields'
complete -c dunmora-cli -n '__dunmora_cli_command list' -l format -x -a 'table json csv' -d 'Print the result in this format'
complete -c dunmora-cli -n '__dunmora_cli_command delete restore show diff books' -l format -x -a 'table json' -d 'Print the result in this format'
complete -c dunmora-cli -n '__dunmora_cli_command list delete books' -l wide -d 'Show the whole table, however wide'
complete -c dunmora-cli -n '__dunmora_cli_command list delete restore show diff books' -l quiet -d 'Show errors only'
complete -c dunmora-cli -n '__dunmora_cli_command delete restore' -l dry-run -d 'Show what would be done and write nothing'
complete -c dunmora-cli -n '__dunmora_cli_command delete restore' -l yes -d 'Do not ask'
complete -c dunmora-cli -n '__dunmora_cli_command list' -l fail-if-found -d 'Exit with status 3 when there are duplicates'
complete -c dunmora-cli -n '__dunmora_cli_command delete' -l check -x -d 'Check this person for deletion'
complete -c dunmora-cli -n '__dunmora_cli_command delete' -l uncheck -x -d 'Uncheck this person'
complete -c dunmora-cli -n '__dunmora_cli_command delete' -l check-from -r -F -d 'Check the people whose UIDs are in this file'
complete -c dunmora-cli -n '__dunmora_cli_command delete' -l uncheck-from -r -F -d 'Uncheck the people whose UIDs are in this file'
complete -c dunmora-cli -n '__dunmora_cli_command delete' -l keep-one -d 'Keep one person of every group'
complete -c dunmora-cli -n '__dunmora_cli_command delete' -l backup -r -F -d 'First write the cards to be deleted to this new file'
complete -c dunmora-cli -n '__dunmora_cli_command delete' -l allow-last-copy -d 'Delete people of whom no copy would be left'
complete -c dunmora-cli -n '__dunmora_cli_command delete' -l allow-blank-match -d 'Delete people who share only empty fields'
complete -c dunmora-cli -n '__dunmora_cli_command books' -l names -d 'Read none of the books, which is quick'
