#!/usr/bin/env bats
# What bash, zsh and fish offer where a word of a command line is to be completed. ZTDECODE is the command.

setup() {
    [ -z "$SANITIZED" ] || skip "the shells are tried with the command as it is shipped"
    completions=$BATS_TEST_DIRNAME/../../completions
    mkdir "$BATS_TEST_TMPDIR/bin" "$BATS_TEST_TMPDIR/here"
    ln -s "$ZTDECODE" "$BATS_TEST_TMPDIR/bin/ztdecode"
    PATH=$BATS_TEST_TMPDIR/bin:$PATH
    cd "$BATS_TEST_TMPDIR/here"
    touch monday.spzt tuesday.spzt
    mkdir archive
    export HOME=$BATS_TEST_TMPDIR XDG_CONFIG_HOME=$BATS_TEST_TMPDIR
}

# offered SHELL LINE: the candidates for the last word of the line, sorted, blanks between them.
offered() {
    case $1 in
        bash) in_bash "$2" ;;
        zsh) timeout 60 zsh -f "$BATS_TEST_DIRNAME/complete.zsh" "$completions" "$2" ;;
        fish) fish --private -c 'source $argv[1]; complete -C $argv[2]' "$completions/ztdecode.fish" "$2" ;;
    esac | cut -f 1 | sed 's/ $//; s,/$,,' | LC_ALL=C sort | tr '\n' ' ' | sed 's/ $//'
}

# The words as readline has them: = is one of its own, and a blank at the end begins an empty one. Behind = what is
# offered is the value alone.
in_bash() {
    bash --norc -c '
        source "$1"
        read -ra COMP_WORDS <<<"${2//=/ = }"
        [[ $2 != *" " ]] || COMP_WORDS+=("")
        COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
        _ztdecode ztdecode
        printf "%s\n" "${COMPREPLY[@]}"' bash "$completions/ztdecode.bash" "$1"
}

is_offered() {
    for shell in bash zsh fish; do
        got=$(offered $shell "$1")
        expected=$2
        # bash replaces what stands behind =, the others the whole word.
        [[ $shell == bash && $1 == *=* ]] || expected=${3-$2}
        [ "$got" = "$expected" ] || {
            printf '%s, %s\nexpected: %s\n     got: %s\n' "$shell" "$1" "$expected" "$got"
            return 1
        }
    done
}

@test "options" {
    is_offered 'ztdecode --layo' '--layout'
    is_offered 'ztdecode --fo' '--follow --format'
    is_offered 'ztdecode --follow --no' '--no-input'
}

@test "values" {
    is_offered 'ztdecode --layout ' 'auto bin1 bin2 line lng2 spzt spzt-lng2 zt'
    is_offered 'ztdecode --layout sp' 'spzt spzt-lng2'
    is_offered 'ztdecode --layout=sp' 'spzt spzt-lng2' '--layout=spzt --layout=spzt-lng2'
    is_offered 'ztdecode --join=n' 'name' '--join=name'
    is_offered 'ztdecode --direction t' 'to'
}

@test "links and names of messages, several too" {
    is_offered 'ztdecode --link h' 'he hub'
    is_offered 'ztdecode --link ip,h' 'ip,he ip,hub'
    is_offered 'ztdecode --message start_r' 'start_record_rtp start_rtp'
    is_offered 'ztdecode --message=start_r' 'start_record_rtp start_rtp' '--message=start_record_rtp --message=start_rtp'
}

@test "files" {
    is_offered 'ztdecode --pad ' 'archive monday.spzt tuesday.spzt'
    is_offered 'ztdecode --pad mo' 'monday.spzt'
    is_offered 'ztdecode --join tu' 'tuesday.spzt'
    is_offered 'ztdecode --database mo' 'monday.spzt'
}

@test "nothing where anything may stand" {
    for option in --jobs --where --sql; do
        for shell in bash fish; do
            [ -z "$(offered $shell "ztdecode $option ")" ]
        done
    done
}

@test "every option of the help" {
    # Those of a letter alone show with one dash.
    "$ZTDECODE" --help | sed -n 's/^  \(-[^ ]*\( --[^ ]*\)\?\).*/\1/p' | grep -o -e '--[a-z-]*' | LC_ALL=C sort >expected
    [ "$(wc -l <expected)" -ge 30 ]
    for shell in bash zsh fish; do
        offered $shell 'ztdecode --' | tr ' ' '\n' | grep -v = >got
        diff -u --label help --label $shell expected got
    done
}

# What the command says that a value is none of, each shell offers.
@test "the values are those that the command takes" {
    compared=0
    for option in --layout --direction --columns --terminal --join --format --time --color --control --progress; do
        "$ZTDECODE" $option=? monday.spzt 2>refusal || true
        expected=$(sed -n '1s/.* is none of \([a-z0-9, -]*[a-z0-9]\).*/\1/p' refusal | tr -d ' ' | tr , '\n' | LC_ALL=C sort)
        [ -n "$expected" ]
        is_offered "ztdecode $option=" "$(echo $expected)" "$(echo $(printf '%s\n' $expected | sed "s/^/$option=/"))"
        compared=$((compared + 1))
    done
    [ $compared -eq 10 ]
}

@test "every subcommand that has a page stands among the first words" {
    for page in "$BATS_TEST_DIRNAME"/../../docs/man/ztdecode-*.1.scd; do
        [ -f "$page" ] || continue
        name=$(basename "$page" .1.scd)
        name=${name#ztdecode-}
        is_offered "ztdecode $name" "$name"
    done
}

@test "subcommands have options of their own" {
    rm "$BATS_TEST_TMPDIR/bin/ztdecode"
    cat >"$BATS_TEST_TMPDIR/bin/ztdecode" <<'WORDS'
#!/bin/sh
case $1 in
    count) printf '%s\n' 'Counts.' '' 'Options:' '  -k,--key KEY  by what' '  -o,--output FILE' '                      where to' ;;
    *) printf '%s\n' 'Does.' '' 'Options:' '  --else      other' '' 'Subcommands:' '  count       counts' '  cut         cuts' ;;
esac
WORDS
    chmod +x "$BATS_TEST_TMPDIR/bin/ztdecode"
    touch cold
    is_offered 'ztdecode c' 'cold count cut'
    is_offered 'ztdecode --' '--else'
    is_offered 'ztdecode count --' '--key --output'
    is_offered 'ztdecode count --output mo' 'monday.spzt'
    is_offered 'ztdecode count -o mo' 'monday.spzt'
    is_offered 'ztdecode count c' 'cold'
}

@test "bash completes as it is typed" {
    typed='source '$completions/ztdecode.bash'\nztdecode --layo\tauto --message=stop_li\t mon\t --colo\tne\t\nexit\n'
    rm "$BATS_TEST_TMPDIR/bin/ztdecode"
    printf '#!/bin/sh\ncase $1$2 in --help|--catalog--format) exec %s "$@" ;; esac\necho "$@" >>typed\n' "$ZTDECODE" \
        >"$BATS_TEST_TMPDIR/bin/ztdecode"
    chmod +x "$BATS_TEST_TMPDIR/bin/ztdecode"
    # shellcheck disable=SC2059
    { printf "$typed"; sleep 3; } | timeout 60 script -qec 'bash --norc --noprofile -i' /dev/null >screen || true
    [ "$(cat typed)" = '--layout auto --message=stop_listen_rtp monday.spzt --color never' ] || {
        cat screen typed
        return 1
    }
}
