# What the scripts share; sourced by them, in POSIX sh because two of them must start without bash.
# Before sourcing, a script sets "here" to its own folder.

repository=$(cd "$here/.." && pwd -P)
cache=${TVUT22_CACHE:-/var/cache/tvut22}
started=$(date +%s)

# Wine's own 32-bit world, built by scripts/setup where the packages for this machine do not resolve.
isolated_root=$cache/root
host_wine=/usr/lib/wine/wine
pascal=$cache/pascal # by scripts/make-pascal
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

# Finds which Wine there is: sets wine_root, empty when Wine is installed on the machine itself, and
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

# Packs what was built and unpacks it elsewhere: the examples have nothing but what people download.
unpack_package() {
    local log=build/examples/package.log
    mkdir -p build/examples
    rm -rf build/package build/examples/package
    cmake --build --preset package >"$log" 2>&1 || { cat "$log" >&2; return 1; }
    mkdir build/examples/package
    (cd build/examples/package && cmake -E tar xf ../../package/tvUT22-*-win32.zip && mv tvUT22-*/* .)
}

build_example() {
    local folder=build/examples/$1 package=$repository/build/examples/package
    local flags="-Wall -Wextra -Wpedantic -Werror -msse2 -mfpmath=sse"
    CFLAGS=$flags CXXFLAGS=$flags cmake --fresh -S "$package/examples/$1" -B "$folder" -G Ninja \
        --toolchain "$repository/cmake/mingw32.cmake" -DCMAKE_PREFIX_PATH="$package" -DCMAKE_FIND_ROOT_PATH="$package" \
        >"$folder.log" 2>&1 || { cat "$folder.log" >&2; return 1; }
    cmake --build "$folder"
}
