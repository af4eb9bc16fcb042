# Completion of ztdecode for bash. Options are those of --help, links and names of messages those of --catalog.

# What a help says, an option or a subcommand a line: its names, and what its value is called.
_ztdecode_help() {
    "$1" ${2:+"$2"} --help 2>/dev/null </dev/null | awk '
        /^[A-Z]/ { commands = /^(Subc|C)ommands:/ }
        /^  -/ || (commands && /^  [a-z]/) {
            sub(/^  /, "")
            sub(/  .*/, "")
            gsub(/,/, " ")
            if (match($0, /[^ ]+\[=/)) $0 = substr($0, RSTART, RLENGTH - 2) " " substr($0, RSTART, RLENGTH - 2) "= [" substr($0, RSTART + RLENGTH)
            print
        }'
}

# The words for "link" or "message" of the catalogue, which is asked once.
_ztdecode_catalog() {
    [[ -n ${_ztdecode_cataloged-} ]] ||
        _ztdecode_cataloged=$("$1" --catalog --format ndjson 2>/dev/null </dev/null)
    sed -n "s/.*\"$2\":\"\([^\"]*\)\".*/\1/p" <<<"$_ztdecode_cataloged" | sort -u
}

_ztdecode_values() {
    case $2 in
        --layout) echo auto line lng2 zt spzt spzt-lng2 bin1 bin2 ;;
        --direction) echo from to ;;
        --columns) echo text number ms s ;;
        --terminal) echo none columns prefix ;;
        --join) echo order name ;;
        --format) echo text ndjson csv table ;;
        --time) echo none relative delta absolute ;;
        --color) echo auto always never ;;
        --control) echo auto raw escape ;;
        --progress) echo auto never ;;
        --link) _ztdecode_catalog "$1" link ;;
        --message) _ztdecode_catalog "$1" message ;;
        *) return 1 ;;
    esac
}

_ztdecode_files() {
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

_ztdecode() {
    local command=$1 current=${COMP_WORDS[COMP_CWORD]} option='' value='' subcommand='' help values before
    COMPREPLY=()

    # "--layout=au" comes as three words.
    if [[ $current == = ]]; then
        option=${COMP_WORDS[COMP_CWORD - 1]} current=''
    elif ((COMP_CWORD > 2)) && [[ ${COMP_WORDS[COMP_CWORD - 1]} == = ]]; then
        option=${COMP_WORDS[COMP_CWORD - 2]}
    elif ((COMP_CWORD > 1)) && [[ ${COMP_WORDS[COMP_CWORD - 1]} == -* ]]; then
        option=${COMP_WORDS[COMP_CWORD - 1]}
        # Its value may stand behind = alone.
        [[ $option != --join ]] || option=''
    fi

    help=$(_ztdecode_help "$command")
    if ((COMP_CWORD > 1)) && grep -qxF -e "${COMP_WORDS[1]}" <<<"$(grep '^[a-z]' <<<"$help")"; then
        subcommand=${COMP_WORDS[1]}
        help=$(_ztdecode_help "$command" "$subcommand")
    fi

    if [[ $option == -* ]]; then
        # The last word of an option's line is what its value is called.
        value=$(awk -v option="$option" '
            { for (n = 1; n <= NF; ++n) if ($n == option || $n == option "=") print $NF }' <<<"$help" | grep -v '^-')
        if values=$(_ztdecode_values "$command" "$option"); then
            before=''
            case $option in --link | --message) [[ $current == *,* ]] && before=${current%,*}, ;; esac
            mapfile -t COMPREPLY < <(compgen -P "$before" -W "$values" -- "${current#"$before"}")
            return
        elif [[ $value == FILE* || $value == FOLDER* ]]; then
            _ztdecode_files "$current"
            return
        elif [[ -n $value ]]; then
            return
        fi
    fi

    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$(tr ' ' '\n' <<<"$help" | grep '^-')" -- "$current")
        [[ ${#COMPREPLY[@]} -ne 1 || ${COMPREPLY[0]} != *= ]] || compopt -o nospace 2>/dev/null
        return
    fi
    _ztdecode_files "$current"
    if ((COMP_CWORD == 1)); then
        mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W "$(grep '^[a-z]' <<<"$help" | cut -d ' ' -f 1)" -- "$current")
    fi
}

complete -F _ztdecode ztdecode
