# What the scripts share; sourced by them, in POSIX sh because two of them must start without bash.
# Before sourcing, a script sets "here" to its own folder.

repository=$(cd "$here/.." && pwd -P)
cache=${TVUT22_CACHE:-/var/cache/tvut22}
started=$(date +%s)

# Wine's own 32-bit world, built by scripts/setup where the packages for this machine do not resolve.
isolated_root=$cache/root
host_wine=/usr/lib/wine/wine
export NINJA_STATUS="[%es %f/%t] "

# A checkout that belongs to somebody else is ours to read all the same.
export GIT_CONFIG_COUNT=1 GIT_CONFIG_KEY_0=safe.directory GIT_CONFIG_VALUE_0="$repository"

say() {
    printf '[%4ds] %s\n' "$(($(date +%s) - started))" "$*"
}

die() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# Prints the comment at the head of the script: that is its help page.
usage() {
    sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"
}

# Tells which Wine there is: sets wine_root, empty when Wine is installed on the machine itself, and
# wine_template, the prefix that runs are cloned from. Fails when there is none.
find_wine() {
    if [ -e "$host_wine" ]; then
        wine_root=
        wine_template=$cache/prefix-host
    elif [ -e "$isolated_root$host_wine" ]; then
        wine_root=$isolated_root
        wine_template=$cache/prefix-root
    else
        return 1
    fi
}

# Puts the library where the examples find it, as any other project would.
install_for_examples() {
    mkdir -p build/examples
    rm -rf build/win32-release/install
    cmake --install build/win32-release >build/examples/install.log
}

build_example() {
    local folder=build/examples/$1 flags="-Wall -Wextra -Wpedantic -Werror -msse2 -mfpmath=sse"
    CFLAGS=$flags CXXFLAGS=$flags cmake -S "examples/$1" -B "$folder" -G Ninja --toolchain "$repository/cmake/mingw32.cmake" \
        -DCMAKE_PREFIX_PATH="$repository/build/win32-release/install" \
        -DCMAKE_FIND_ROOT_PATH="$repository/build/win32-release/install" \
        >"$folder.log" 2>&1 || { cat "$folder.log" >&2; return 1; }
    cmake --build "$folder"
}
