# Completion of murnctl for fish: the commands and options are those that its help shows.

function __murnctl_commands
    murnctl --help 2>/dev/null | string replace -rf '^  ([a-z-]+) +(.+)$' '$1\t$2'
end

function __murnctl_options
    set -l words (commandline -opc)
    murnctl $words[2] --help 2>/dev/null |
        string replace -rf '^  (--?[a-z0-9-]+)( [A-Z]+)? +(.+)$' '$1\t$3'
end

function __murnctl_follows_tag
    set -l words (commandline -opc)
    contains -- $words[-1] --add --remove --set --tag --not-tag
end

complete -c murnctl -f -n '__fish_is_nth_token 1' -a '(__murnctl_commands)'
complete -c murnctl -n 'not __fish_is_nth_token 1; and string match -q -- "-*" (commandline -ct)' \
    -a '(__murnctl_options)'
complete -c murnctl -f -n __murnctl_follows_tag -a '(murnctl tags --recent 2>/dev/null)'
