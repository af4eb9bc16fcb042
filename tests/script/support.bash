# What several of these files of tests ask for.

is() {
    [ "$1" = "$2" ] || {
        printf 'expected: %s\n     got: %s\n' "$2" "$1"
        return 1
    }
}

has() { case $1 in *"$2"*) ;; *) printf 'no "%s" in: %s\n' "$2" "$1"; return 1 ;; esac; }
