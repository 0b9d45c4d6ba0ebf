# SPDX-License-Identifier: BSD-3-Clause
# Sourced by run.sh, test.sh and the scripts: installs what packages.txt lists and this machine lacks, and builds.

# Where there is a ccache, builds go through it: the long checks build much of the same again and again.
if command -v ccache >/dev/null; then
    export CMAKE_C_COMPILER_LAUNCHER=${CMAKE_C_COMPILER_LAUNCHER-ccache}
    export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
fi

# install_packages SECTION...: the packages of these sections of packages.txt
install_packages() {
    local missing=() section package
    while read -r section package; do
        case " $* " in *" $section "*) ;; *) continue ;; esac
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep 'ok installed' >/dev/null || missing+=("$package")
    done < <(grep -v '^#' packages.txt)
    [ ${#missing[@]} -gt 0 ] || return 0

    local root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Missing packages: ${missing[*]}" >&2
            echo "Installing them needs root or sudo. As root: apt-get install ${missing[*]}" >&2
            return 1
        fi
        root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    local log
    log=$(mktemp)
    if ! { "${root[@]}" apt-get update &&
        "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"; } \
        >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        echo "Could not install ${missing[*]}" >&2
        return 1
    fi
    rm -f "$log"
}

# build DIRECTORY [CMAKE OPTION...]: configures and builds, all or the targets in BLA_TARGETS; quiet unless it fails
build() {
    local directory=$1 log=$1/build.log
    shift
    mkdir -p "$directory"
    if ! { cmake -S . -B "$directory" -G Ninja -DCMAKE_BUILD_TYPE=Release "$@" &&
        cmake --build "$directory" ${BLA_TARGETS:+--target $BLA_TARGETS}; } >"$log" 2>&1; then
        tail -n 40 "$log" >&2
        echo "The build failed; its whole output is in $log" >&2
        return 1
    fi
}
