# Completes the arguments of dunmora in fish.

complete -c dunmora -s h -l help -d 'Print the help and exit'
complete -c dunmora -l choose -d 'Choose a vCard file'
complete -c dunmora -l version -d 'Print the version and exit'
complete -c dunmora -n 'string match -q "eds*" -- (commandline -ct)' -a eds: -d 'All address books of the desktop'
