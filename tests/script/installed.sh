#!/bin/sh
# usage: installed.sh BUILD_DIR SOURCE_DIR
# Installs the build below a folder of its own, once as it was configured and once under a prefix that is chosen only then,
# and builds and runs programs with nothing but what was installed: by pkg-config, and by CMake's find_package.
set -eu

build=$1
source=$2
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

# logged COMMAND...: what it says is shown only when it fails.
logged() {
    "$@" >"$dir/log" 2>&1 || {
        cat "$dir/log"
        exit 1
    }
}

# installed FOLDER: the library below this folder serves.
installed() {
    pc=$(find "$1" -name ztdecode.pc)
    libdir=$(dirname "$(dirname "$pc")")
    PKG_CONFIG_LIBDIR=$(dirname "$pc")
    export PKG_CONFIG_LIBDIR

    version=$(pkg-config --modversion ztdecode)
    if [ "$(basename "$(readlink -f "$libdir/libztdecode.so")")" != "libztdecode.so.$version" ]; then
        echo "libztdecode.so does not lead to libztdecode.so.$version:"
        ls -l "$libdir"
        exit 1
    fi

    # The flags are words.
    # shellcheck disable=SC2046
    cc -std=c99 -Wall -Wextra -Wpedantic -Werror "$source/tests/script/installed.c" -o "$dir/program" \
        $(pkg-config --cflags --libs ztdecode)
    LD_LIBRARY_PATH=$libdir "$dir/program"
    for compiler in c++ clang++; do
        command -v "$compiler" >/dev/null || {
            echo "no $compiler: ztdecode.hpp is not tried with it"
            continue
        }
        # shellcheck disable=SC2046
        "$compiler" -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror \
            "$source/tests/script/installed.cpp" -o "$dir/program" $(pkg-config --cflags --libs ztdecode)
        LD_LIBRARY_PATH=$libdir "$dir/program"
    done

    command=$(find "$1" -type f -path '*/bin/ztdecode')
    "$command" --version
    for file in man1/ztdecode.1 man3/ztdecode.3 man5/ztdecode-trace.5 man5/ztdecode-record.5 completions/ztdecode \
        _ztdecode vendor_completions.d/ztdecode.fish ztdecode/_library.py ztdecode/py.typed; do
        [ -n "$(find "$1" -path "*/$file")" ] || {
            echo "$file is not installed"
            exit 1
        }
    done

    # The examples of ztdecode(3), which say the same.
    for number in 1 2 3; do
        awk -v wanted="$number" '
            /^# EXAMPLES/ { there = 1 }
            there && /^```/ { on = !on; block += on; next }
            on && block == wanted { gsub(/\\\\/, "\\"); print }' "$source/docs/man/ztdecode.3.scd" >"$dir/example$number"
    done
    # shellcheck disable=SC2046
    cc -std=c99 -Wall -Wextra -Wpedantic -Werror -x c "$dir/example1" -o "$dir/program" $(pkg-config --cflags --libs ztdecode)
    LD_LIBRARY_PATH=$libdir "$dir/program" >"$dir/said1"
    # shellcheck disable=SC2046
    c++ -std=c++20 -Wall -Wextra -Wpedantic -Werror -x c++ "$dir/example2" -o "$dir/program" $(pkg-config --cflags --libs ztdecode)
    LD_LIBRARY_PATH=$libdir "$dir/program" >"$dir/said2"
    package=$(dirname "$(dirname "$(find "$1" -path '*/ztdecode/_library.py')")")
    PYTHONDONTWRITEBYTECODE=1 PYTHONPATH=$package python3 "$dir/example3" >"$dir/said3"
    printf '\t- green led 3 ON\nled = 3\n' >"$dir/expected"
    for number in 1 2 3; do diff -u "$dir/expected" "$dir/said$number"; done

    # Without a word on where the library is.
    words=$(PYTHONDONTWRITEBYTECODE=1 PYTHONPATH=$package python3 -c 'import ztdecode
print(ztdecode.version(), ztdecode.decode(bytes.fromhex("210403")).fields)')
    [ "$words" = "$version {'led': 3}" ] || {
        echo "the installed Python package says $words"
        exit 1
    }
}

logged env DESTDIR="$dir/root" cmake --install "$build"
installed "$dir/root"

# Moved once more: nothing that was installed may know the place.
logged cmake --install "$build" --prefix "$dir/first place"
mkdir "$dir/moved"
mv "$dir/first place" "$dir/moved/here"
installed "$dir/moved/here"

mkdir "$dir/project"
cp "$source/tests/script/installed.c" "$source/tests/script/installed.cpp" "$dir/project"
cat >"$dir/project/CMakeLists.txt" <<'WORDS'
cmake_minimum_required(VERSION 3.25)
project(host LANGUAGES C CXX)
find_package(ztdecode 5 REQUIRED)
foreach(language c cpp)
    add_executable(host_${language} installed.${language})
    target_link_libraries(host_${language} PRIVATE ztdecode::ztdecode)
    target_compile_features(host_${language} PRIVATE cxx_std_20)
endforeach()
WORDS
logged cmake -S "$dir/project" -B "$dir/project/build" -DCMAKE_PREFIX_PATH="$dir/moved/here"
logged cmake --build "$dir/project/build"
"$dir/project/build/host_c"
"$dir/project/build/host_cpp"
