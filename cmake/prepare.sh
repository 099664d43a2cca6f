# Sourced by run, test and other scripts. Installs missing packages, configures and builds. Prints to standard error
# only, so that standard output belongs to the caller.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '%s\n' "$*" >&2; }

die() {
    say "$*"
    exit 1
}

# install_missing PACKAGE...: installs the Debian packages that are not installed yet.
install_missing() {
    local package missing=() admin=()
    for package in "$@"; do
        if ! dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed'; then
            missing+=("$package")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || die "Please install these packages, or run this as root: ${missing[*]}"
        admin=(sudo)
    fi
    say "Installing ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    if ! { "${admin[@]}" apt-get update -qq &&
        "${admin[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >&2; then
        die "These packages could not be installed; please install them and start again: ${missing[*]}"
    fi
}

# The files in packaging/ that list the packages to install. The script test adds one.
package_lists=(build-packages.txt)

check_packages() {
    local tool
    if command -v dpkg-query >/dev/null && command -v apt-get >/dev/null; then
        # shellcheck disable=SC2046
        install_missing $(cd "$root/packaging" && grep -hv '^#' "${package_lists[@]}")
        return
    fi
    for tool in cmake ninja c++; do
        command -v "$tool" >/dev/null || die "$tool is missing. Install what packaging/build-packages.txt lists" \
            "under the names of your system."
    done
}

# follow_build LOG: copies the build's output from standard input to the log, and shows the progress: on a terminal in
# one line that is rewritten in place, else in one line for every 10 %.
follow_build() {
    local line finished total tenth=0
    # Ctrl+C ends the build alone; its last output is still read.
    trap '' INT
    while IFS= read -r line; do
        printf '%s\n' "$line"
        if ! [[ $line =~ ^\[([0-9]+)/([0-9]+)\]\  ]] || [ "${BASH_REMATCH[1]}" -eq 0 ]; then
            continue
        fi
        finished=${BASH_REMATCH[1]}
        total=${BASH_REMATCH[2]}
        if [ -t 2 ]; then
            printf '\rBuilding [%d/%d]\e[K' "$finished" "$total" >&2
        elif [ $((finished * 10 / total)) -gt "$tenth" ]; then
            tenth=$((finished * 10 / total))
            say "Building: ${tenth}0 %"
        fi
    done >"$1"
    if [ -t 2 ] && [ -n "${finished:-}" ]; then
        say
    fi
}

# build PRESET [TARGET...]: configures and builds. The output goes to build/PRESET/build.log; if the build fails, the
# last lines are shown.
build() {
    local preset=$1 log="$root/build/$1/build.log" targets=()
    shift
    [ $# -gt 0 ] && targets=(--target "$@")
    check_packages
    mkdir -p "$root/build/$preset"
    [ -e "$root/build/$preset/build.ninja" ] || say "Building for the first time; this takes a few minutes."
    trap 'trap - INT; kill -INT $$' INT
    if ! { cd "$root" && cmake --preset "$preset" && cmake --build --preset "$preset" "${targets[@]}"; } 2>&1 |
        follow_build "$log"; then
        tail -n 60 "$log" >&2
        die "The build failed; all of its output is in build/$preset/build.log"
    fi
    trap - INT
}

has_display() { [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; }

# Qt warns if the session has no private runtime folder.
provide_runtime_folder() {
    if [ -z "${XDG_RUNTIME_DIR:-}" ]; then
        export XDG_RUNTIME_DIR="$root/build/runtime"
        mkdir -p "$XDG_RUNTIME_DIR"
        chmod 700 "$XDG_RUNTIME_DIR"
    fi
}

# Whether the leak sanitizer works here. It does not where processes may not be traced, as in some containers.
leaks_can_be_found() {
    local probe="$root/build/leak-probe"
    check_packages
    mkdir -p "$root/build"
    echo 'int main() {}' | c++ -fsanitize=address -x c++ - -o "$probe" 2>/dev/null &&
        ASAN_OPTIONS=detect_leaks=1 "$probe" >/dev/null 2>&1
}
