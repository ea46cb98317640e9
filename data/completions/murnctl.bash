# Completion of murnctl for bash: commands, options, files, and the tags entered last.

# Offers the lines of the input that begin with the present word, quoted where they need it.
_murnctl_offer() {
    local line
    while IFS= read -r line; do
        [[ $line == "$cur"* ]] && COMPREPLY+=("$(printf '%q' "$line")")
    done
}

_murnctl_options() {
    case $1 in
        tags) printf '%s\n' --json --print0 --recent --all --count --tree --help ;;
        tag) printf '%s\n' --add --remove --set --clear --force --suggest --help ;;
        tag-rename) printf '%s\n' --dry-run --yes --spellings --only --waiting --drop-waiting --print0 --help ;;
        tag-delete) printf '%s\n' --dry-run --yes --branch --print0 --help ;;
        rate) printf '%s\n' --help ;;
        comment) printf '%s\n' --write --json --print0 --help ;;
        find) printf '%s\n' --contents --metadata --names-only --tag --not-tag --tagged --untagged \
            --managed --type --group-of-types --not-type --date --rating --in --not-in --list-folder --deep --state \
            --sort --group --explain --print-state --count --limit --live --json --print0 --help ;;
        bookmarks) printf '%s\n' --state --yes --sort --group --count --limit --live --json --print0 --help ;;
        query) printf '%s\n' --in --count --limit --live --json --print0 --help ;;
        file) printf '%s\n' --to --copy --pending --yes --dry-run --json --print0 --help ;;
        paste) printf '%s\n' --to --type --name --json --print0 --help ;;
        manage) printf '%s\n' --if-unmarked --dry-run --json --print0 --help ;;
        unmanage) printf '%s\n' --dry-run --json --print0 --help ;;
        backup) printf '%s\n' --to --json --help ;;
        restore) printf '%s\n' --from --dry-run --json --help ;;
        healed) printf '%s\n' --undo --accept --json --help ;;
        mirror) printf '%s\n' --dry-run --json --help ;;
        export) printf '%s\n' --to --state --json --help ;;
        import-archive) printf '%s\n' --to --dry-run --yes --json --help ;;
        duplicates) printf '%s\n' --in --state --json --print0 --help ;;
        capture) printf '%s\n' --to --pages --no-backgrounds --width --json --print0 --help ;;
        import) printf '%s\n' --json --help ;;
        thumbnail) printf '%s\n' -o --page --size --help ;;
        scan) printf '%s\n' --list --device --source --mode --resolution --paper --duplex --pages \
            --clean-up --upright --skip-blank --separate --text --profile --save-profile --tag --rating --to --file \
            --resume --discard --json --print0 --help ;;
        ocr) printf '%s\n' --language --redo --force --help ;;
        combine) printf '%s\n' -o --help ;;
        open) printf '%s\n' --with --help ;;
        reveal) printf '%s\n' --help ;;
        index) printf '%s\n' --no-content --json --print0 --help ;;
        defaults) printf '%s\n' --json --print0 --help ;;
        info) printf '%s\n' --json --help ;;
        types) printf '%s\n' --extension --tree --all --groups --json --help ;;
        *) printf '%s\n' --help --version ;;
    esac
}

_murnctl() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
    COMPREPLY=()
    if [[ $COMP_CWORD == 1 ]]; then
        if [[ $cur == -* ]]; then
            _murnctl_offer < <(_murnctl_options)
        else
            _murnctl_offer <<<$'tags\ntag\ntag-rename\ntag-delete\nrate\ncomment\nfind\nbookmarks\ninfo\ntypes\nquery\nfile\nmanage\nunmanage\npaste\nbackup\nrestore\nhealed\nmirror\nexport\nimport-archive\nduplicates\ncapture\nimport\nthumbnail\nscan\nocr\ncombine\nopen\nreveal\nindex\ndefaults'
        fi
        return
    fi
    case $prev in
        --add | --remove | --set | --tag | --not-tag)
            _murnctl_offer < <("${COMP_WORDS[0]}" tags --recent 2>/dev/null)
            return
            ;;
        --in | --not-in | --list-folder)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -d -- "$cur")
            return
            ;;
        --to | --from | --state)
            compopt -o filenames
            mapfile -t COMPREPLY < <(compgen -f -- "$cur")
            return
            ;;
        --undo | --accept)
            _murnctl_offer < <(
                "${COMP_WORDS[0]}" healed 2>/dev/null | cut -f1
                echo all
            )
            return
            ;;
        --date)
            _murnctl_offer < <(printf '%s\n' today yesterday last7Days last30Days last365Days \
                thisYear lastYear yearBeforeLastYear olderThanYearBeforeLastYear anyDate)
            return
            ;;
        --sort | --group)
            _murnctl_offer < <(printf '%s\n' {,-}{name,type,size,modified,created,added,rating,tags,folder})
            return
            ;;
        --group-of-types)
            _murnctl_offer < <("${COMP_WORDS[0]}" types --groups 2>/dev/null | cut -f2)
            return
            ;;
        --rating | --limit | --extension | --type | --not-type) return ;;
    esac
    if [[ $cur == -* ]]; then
        _murnctl_offer < <(_murnctl_options "$command")
    elif [[ $command == rate && $COMP_CWORD == 2 ]]; then
        _murnctl_offer <<<$'0\n1\n2\n3\n4\n5'
    elif [[ $command == index && $COMP_CWORD == 2 ]]; then
        _murnctl_offer < <(printf '%s\n' status sync verify rebuild pause resume roots add remove exclude include)
    elif [[ $command == bookmarks && $COMP_CWORD == 2 ]]; then
        _murnctl_offer <<<$'list\nrun\nadd\nremove'
    elif [[ $command == bookmarks && ${COMP_WORDS[2]} != add ]]; then
        _murnctl_offer < <("${COMP_WORDS[0]}" bookmarks 2>/dev/null | cut -f1)
    elif [[ $command == defaults && $COMP_CWORD == 2 ]]; then
        _murnctl_offer <<<$'read\nwrite\ndelete'
    elif [[ $command == defaults && $COMP_CWORD == 3 ]]; then
        _murnctl_offer < <("${COMP_WORDS[0]}" defaults read 2>/dev/null | cut -f1)
    elif [[ $command == index && ${COMP_WORDS[2]} == remove ]]; then
        _murnctl_offer < <("${COMP_WORDS[0]}" index roots 2>/dev/null)
    elif [[ $command == index ]]; then
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -d -- "$cur")
    elif [[ $command == tag* || $command == rate || $command == comment || $command == export || $command == import-archive || $command == info || $command == types ]]; then
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$cur")
    fi
}

complete -F _murnctl murnctl
