# What can follow is asked of the program's own --help, so that it is always that of the program in
# use.

function __marovia_commands
    marovia --help 2>/dev/null | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\)  */\1\t/p'
end

function __marovia_command
    set -l words (commandline -opc)
    test (count $words) -gt 1; and echo $words[2]
end

function __marovia_help
    marovia (__marovia_command) --help 2>/dev/null
end

function __marovia_options
    __marovia_help |
        string replace -fr '^  (?:-[a-zA-Z],)?(--[a-z0-9-]+)(?: [^ ]+)?(?:  +(.*))?$' '$1\t$2'
end

# How many files the words name so far. With --output-dir all are inputs.
function __marovia_named
    set -l with_value (__marovia_help |
        string replace -fr '^  (?:(-[a-zA-Z]),)?(--[a-z0-9-]+) [^ ].*' '$1 $2' | string split ' ')
    set -l skip no
    set -l count 0
    for word in (commandline -opc)[3..-1]
        if test $skip = yes
            set skip no
        else if test "$word" = --output-dir
            set count 0
            break
        else if string match -q -- '-?*' $word
            contains -- $word $with_value; and set skip yes
        else
            set count (math $count + 1)
        end
    end
    echo $count
end

# Files with one of these extensions, in either case, and folders.
function __marovia_files
    set -l ending '\.(?:'(string join '|' $argv)')$'
    for file in (__fish_complete_path (commandline -ct) | string replace -r '\t.*' '')
        string match -qr -- '/$' $file; or string match -qir -- $ending $file; and echo $file
    end
end

function __marovia_next_file
    set -l images png tif tiff jpg jpeg pgm ppm pbm pnm pam bmp dib
    switch (__marovia_command),(__marovia_named)
        case compress,0 curve,0 'measure,*' difference,0 difference,1
            __marovia_files $images
        case 'compress,*' 'truncate,*' 'info,*' decompress,0 thumbnail,0
            __marovia_files 'aw.'
        case 'decompress,*' 'difference,*' 'thumbnail,*'
            __marovia_files pgm bmp png tiff tif
        case 'curve,*'
            __marovia_files svg tsv
        case 'help,*'
            __marovia_commands
    end
end

function __marovia_values
    set -l option (commandline -opc)[-1]
    switch "$option"
        case --output-dir --mirror --against
            __fish_complete_directories
        case --files0-from
            __fish_complete_path (commandline -ct)
        case '--*'
            set -l values (__marovia_help |
                string replace -fr "^  (?:-[a-zA-Z],)?$option ([^ ]+\|[^ ]+)(?: .*|\$)" '$1' |
                string split '|')
            if test (count $values) -gt 0
                printf '%s\n' $values
            else
                __marovia_next_file
            end
        case '*'
            __marovia_next_file
    end
end

complete -c marovia -f
complete -c marovia -n 'test -z (__marovia_command)' -a '(__marovia_commands)'
complete -c marovia -n 'test -z (__marovia_command)' -a help -d 'Tell what a command does'
complete -c marovia -n 'test -z (__marovia_command)' -l help -d 'Print the options'
complete -c marovia -n 'test -z (__marovia_command)' -l version -d 'Print the version'
complete -c marovia -n 'test -n (__marovia_command); and string match -q -- "-*" (commandline -ct)' \
    -a '(__marovia_options)'
complete -c marovia -n 'test -n (__marovia_command)' -a '(__marovia_values)'

complete -c marovia-window -f -a '(__marovia_files pgm bmp aw.)'
complete -c marovia-window -l pad -x -a 'auto never' -d 'Pad the sides'
complete -c marovia-window -l help -d 'Print the options'
complete -c marovia-window -l help-all -d 'Print all options'
complete -c marovia-window -l version -d 'Print the version'
