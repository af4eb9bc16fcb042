#!/usr/bin/env zsh
# usage: zsh -f complete.zsh FOLDER LINE
# What zsh offers behind LINE, with the completions in FOLDER, a candidate a line.
zmodload zsh/zpty
zpty shell zsh -f -i
setup=$(mktemp)
cat >$setup <<'WORDS'
PROMPT=
fpath=(FOLDER $fpath)
autoload -Uz compinit
compinit -D -u
bindkey '^I' complete-word
bindkey '^M' undefined
bindkey '^J' undefined
zstyle ':completion:*' insert-tab false
mark() { print -r -- $'\1' }
compprefuncs=(mark)
comppostfuncs=(mark exit)
# What is added as a candidate is printed; what is but asked for goes its way.
compadd() {
    if [[ ${@[1,(i)(-|--)]} == *-(O|A|D)\ * ]]; then
        builtin compadd "$@"
        return
    fi
    local -a found
    local -A prefix suffix
    local one
    builtin compadd -A found "$@"
    zparseopts -E P:=prefix S:=suffix
    for one in $found; do print -r -- "$IPREFIX${prefix[-P]}$one${suffix[-S]}"; done
    builtin compadd "$@"
}
print ready
WORDS
sed -i "s|FOLDER|$1|" $setup
zpty -w shell source $setup
while zpty -r shell line; do [[ $line == ready* ]] && break; done
rm -f $setup
zpty -w -n shell "$2"$'\t'
while zpty -r shell line; do print -rn -- $line; done | tr -d '\r' | awk '/\001/ { ++marks; next } marks == 1' | sort -u
