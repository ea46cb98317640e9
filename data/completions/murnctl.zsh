#compdef murnctl
# Completion of murnctl for zsh: the commands and options are those that its help shows.

_murnctl() {
    local -a offers
    local line
    if ((CURRENT == 2)); then
        for line in ${(f)"$(${words[1]} --help 2>/dev/null)"}; do
            [[ $line =~ '^  ([a-z-]+) +(.+)$' ]] && offers+=("$match[1]:$match[2]")
        done
        _describe -t commands command offers
        return
    fi
    case ${words[CURRENT - 1]} in
        --add | --remove | --set | --tag | --not-tag)
            offers=(${(f)"$(${words[1]} tags --recent 2>/dev/null)"})
            compadd -a offers
            return
            ;;
        --in | --not-in | --list-folder)
            _files -/
            return
            ;;
    esac
    if [[ $PREFIX == -* ]]; then
        for line in ${(f)"$(${words[1]} ${words[2]} --help 2>/dev/null)"}; do
            [[ $line =~ '^  (--?[a-z0-9-]+)( [A-Z]+)? +(.+)$' ]] && offers+=("$match[1]:$match[3]")
        done
        _describe -t options option offers
        return
    fi
    _files
}

_murnctl "$@"
