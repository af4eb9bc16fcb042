# Completion of ztdecode for fish. Options are those of --help, links and names of messages those of --catalog.

# What a help says, an option or a subcommand a line: its names, what its value is called (or -), what it is for, with tabs
# between them.
function __ztdecode_help
    set -l command (commandline -opc)[1]
    type -q $command; or return
    $command $argv --help 2>/dev/null </dev/null | awk '
        function flush() {
            if (names != "") print names "\t" value "\t" words
            names = ""
        }
        /^[A-Z]/ { flush(); commands = /^(Subc|C)ommands:/ }
        /^  -/ || (commands && /^  [a-z]/) {
            flush()
            sub(/^  /, "")
            sub(/, --/, ",--")
            words = match($0, /  +/) ? substr($0, RSTART + RLENGTH) : ""
            names = match($0, /  +/) ? substr($0, 1, RSTART - 1) : $0
            sub(/\[=/, "= ", names)
            sub(/\]$/, "", names)
            value = names ~ / / ? substr(names, index(names, " ") + 1) : "-"
            sub(/ .*/, "", names)
            next
        }
        names != "" && /^    / { sub(/^ +/, ""); words = words (words == "" ? "" : " ") $0; next }
        { flush() }
        END { flush() }'
end

function __ztdecode_catalog
    if not set -q __ztdecode_cataloged
        set -l command (commandline -opc)[1]
        type -q $command; or return
        set -g __ztdecode_cataloged ($command --catalog --format ndjson 2>/dev/null </dev/null)
    end
    string replace -rf ".*\"$argv\":\"([^\"]*)\".*" '$1' -- $__ztdecode_cataloged | sort -u
end

function __ztdecode_values
    switch $argv
        case --layout
            string split ' ' 'auto line lng2 zt spzt spzt-lng2 bin1 bin2'
        case --direction
            string split ' ' 'from to'
        case --columns
            string split ' ' 'text number ms s'
        case --terminal
            string split ' ' 'none columns prefix'
        case --join
            string split ' ' 'order name'
        case --format
            string split ' ' 'text ndjson csv table'
        case --time
            string split ' ' 'none relative delta absolute'
        case --color
            string split ' ' 'auto always never'
        case --control
            string split ' ' 'auto raw escape'
        case --progress
            string split ' ' 'auto never'
        case --link
            __ztdecode_catalog link
        case --message
            __ztdecode_catalog message
    end
end

# All candidates for the word that is being written.
function __ztdecode_complete
    set -l words (commandline -opc)
    set -l current (commandline -ct)
    set -l help (__ztdecode_help)
    set -l commands (string match -r '^[a-z].*' -- $help)
    if set -q words[2]; and string match -q -- "$words[2]"\t\* $commands
        set help (__ztdecode_help $words[2])
        set commands
    end
    set -q words[2]; and set commands

    # Of an option before it, or of its own: "--layout=au".
    set -l option
    set -l before
    if string match -q -- '--*=*' $current
        set option (string split -m 1 = -- $current)[1]
        set before "$option="
        set current (string split -m 1 = -- $current)[2]
    else if string match -q -- '-*' $words[-1]; and test $words[-1] != --join
        set option $words[-1]
    end
    set -l values
    test -n "$option"; and set values (__ztdecode_values $option)
    if set -q values[1]
        if contains -- $option --link --message; and string match -q '*,*' -- $current
            set before "$before"(string replace -r '[^,]*$' '' -- $current)
        end
        printf '%s\n' "$before"$values
        return
    end
    for line in $help
        set -l parts (string split \t -- $line)
        for name in (string split , -- $parts[1])
            if test "$name" = "$option"; and test "$parts[2]" != -
                string match -qr '^(FILE|FOLDER)' -- $parts[2]; and __fish_complete_path $current
                return
            end
        end
    end

    if string match -q -- '-*' $current
        for line in (string match -r '^-.*' -- $help)
            set -l parts (string split \t -- $line)
            for name in (string split , -- $parts[1])
                # A value behind = need not be.
                string match -q '*=' -- $name; and printf '%s\t%s\n' (string trim -rc = -- $name) $parts[3]
                printf '%s\t%s\n' $name $parts[3]
            end
        end
        return
    end
    for line in $commands
        set -l parts (string split \t -- $line)
        printf '%s\t%s\n' $parts[1] $parts[3]
    end
    __fish_complete_path $current
end

complete -c ztdecode -f -a '(__ztdecode_complete)'
