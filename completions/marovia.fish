# What can follow is asked of the program's own --help, so that it is always that of the program in
# use.

function __marovia_commands
    marovia --help 2>/dev/null | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\)  */\1\t/p'
end

function __marovia_command
    set -l words (commandline -opc)
    test (count $words) -gt 1; and echo $words[2]
end

function __marovia_options
    marovia (__marovia_command) --help 2>/dev/null |
        string replace -fr '^  (?:-[a-zA-Z],)?(--[a-z0-9-]+)(?: [^ ]+)?  +(.*)' '$1\t$2'
end

function __marovia_values
    set -l option (commandline -opc)[-1]
    if test "$option" = --format
        string split ' ' 'awb awa awd awf awg pgm bmp'
    else if string match -q -- '--*' $option
        marovia (__marovia_command) --help 2>/dev/null |
            string replace -fr "^  (?:-[a-zA-Z],)?$option ([^ ]+\|[^ ]+)(?: .*)?\$" '$1' | string split '|'
    end
end

complete -c marovia -n 'test -z (__marovia_command)' -f -a '(__marovia_commands)'
complete -c marovia -n 'test -z (__marovia_command)' -l help -d 'Print the options'
complete -c marovia -n 'test -z (__marovia_command)' -l version -d 'Print the version'
complete -c marovia -n 'test -n (__marovia_command); and string match -q -- "-*" (commandline -ct)' \
    -a '(__marovia_options)'
complete -c marovia -n 'test -n (__marovia_command)' -a '(__marovia_values)'

complete -c marovia-window -l pad -x -a 'auto never' -d 'Pad the sides'
complete -c marovia-window -l help -d 'Print the options'
complete -c marovia-window -l help-all -d 'Print all options'
complete -c marovia-window -l version -d 'Print the version'
