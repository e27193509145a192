# Completion of the command kvarta16 for bash.

# What may stand behind a command, or behind a command and its own one, joined by "/".
_kvarta16_words() {
    case $1 in
        '') echo seed rates db slownie dzien swieta pesel nip staz find registry print printers ftp \
            doctor call catalogue rpc --help --version ;;
        db) echo new check exec show clean widen --help ;;
        registry) echo get set delete export import --help ;;
        ftp) echo ls get put rm mkdir rmdir mv --help ;;
        seed) echo --db --tables --dialect --ask --help ;;
        rates) echo --db --on --lang --help ;;
        dzien | swieta | pesel | nip | doctor) echo --lang --help ;;
        staz) echo --szkola --wiek --lang --help ;;
        print) echo --printer --app --help ;;
        catalogue) echo --json --help ;;
        db/new) echo --silent --help ;;
        db/show) echo --table --help ;;
        db/clean) echo --plan --backup --table --drop-paste-errors --ignore-errors --help ;;
        db/widen) echo --plan --backup --table --owner --help ;;
        registry/export) echo --utf16 --help ;;
        ftp/*) echo --active --help ;;
        *) echo --help ;;
    esac
}

# The values of an option; nothing where any text will do.
_kvarta16_values() {
    case $1 in
        --lang) echo pl en ;;
        --dialect) echo odbc jet ;;
        --tables) echo payroll mileage interest ;;
        --printer) kvarta16 printers 2>/dev/null | cut -d ' ' -f 1 ;;
    esac
}

# What a call may name: CLASS.MEMBER; with an argument the classes alone.
_kvarta16_members() {
    kvarta16 catalogue 2>/dev/null | awk -v "classes=${1-}" '
        /^[^ ]/ { class = $1; if (classes) print class }
        /^    / && !/^    (class|interface) / && !classes {
            sub(/[=(:].*/, "", $1)
            print class "." $1
        }'
}

_kvarta16_files() {
    local file
    while IFS= read -r file; do
        COMPREPLY+=("$file")
    done < <(compgen -f -- "$1")
}

_kvarta16() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command='' i
    COMPREPLY=()
    for ((i = 1; i < COMP_CWORD; i++)); do
        case $command/${COMP_WORDS[i]} in
            */-*) ;;
            /*) command=${COMP_WORDS[i]} ;;
            db/* | registry/* | ftp/*) command+=/${COMP_WORDS[i]} ;;
        esac
    done

    # bash takes "sqlite:FILE" for three words: the file is the last of them.
    if [[ ($before == : || $word == :) && ${COMP_WORDS[*]} == *sqlite\ :* ]]; then
        _kvarta16_files "${word#:}"
        return
    fi
    case $before in
        --db)
            mapfile -t COMPREPLY < <(compgen -W 'sqlite: odbc:' -- "$word")
            compopt -o nospace 2>/dev/null
            return
            ;;
        --lang | --dialect | --tables | --printer)
            mapfile -t COMPREPLY < <(compgen -W "$(_kvarta16_values "$before")" -- "$word")
            return
            ;;
    esac

    mapfile -t COMPREPLY < <(compgen -W "$(_kvarta16_words "$command")" -- "$word")
    case $command in
        db/* | print | registry/import | ftp/get | ftp/put) _kvarta16_files "$word" ;;
        call)
            ((COMP_CWORD == 2)) || return 0
            mapfile -t COMPREPLY < <(compgen -W "$(_kvarta16_members)" -- "$word")
            ;;
        catalogue)
            mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(
                compgen -W "$(_kvarta16_members classes)" -- "$word")
            ;;
    esac
}

complete -o filenames -F _kvarta16 kvarta16
