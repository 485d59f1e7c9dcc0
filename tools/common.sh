# Sourced by ./run, ./test and the scripts beside it.
# shellcheck shell=bash

set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '==> %s\n' "$*" >&2; }

die() {
    printf '%s\n' "$*" >&2
    exit 2
}

# What building and running needs: the compiler and its tools, Qt, and the bench's libraries.
build_packages=(
    cmake ninja-build g++ pkg-config
    qtbase5-dev qtdeclarative5-dev qttools5-dev-tools
    qml-module-qtquick2 qml-module-qtquick-window2 qml-module-qtquick-templates2
    fonts-roboto-unhinted libedit-dev nlohmann-json3-dev libudev-dev
    libmosquitto-dev libssl-dev
)

# What the tests need besides: nm, a reader of ELF files, a checker of JSON, readers of VCD files and of JUnit reports by
# other people, a display that nobody sees, what minimises, maximises and closes windows there, and keys and a mouse for
# it, qmllint, what makes manual pages of Markdown and shows them, shells whose completion is tried, and a broker with
# clients by other people, and what makes certificates for it.
test_packages=(
    binutils python3 python3-pyelftools python3-jsonschema gtkwave python3-junitparser libxml2-utils
    xvfb xauth openbox xdotool
    qml-module-qttest qtdeclarative5-dev-tools lowdown man-db bash-completion zsh
    mosquitto mosquitto-clients python3-paho-mqtt openssl
)

# What builds the kernel of the kernel tests, the GPIO tools that these are compared with, and the udev that runs there.
kernel_packages=(linux-source make gcc bc bison flex xz-utils gpiod udev)

# What builds for 64-bit ARM: the compiler, and the libraries of that architecture.
arm64_packages=(
    crossbuild-essential-arm64 pkg-config:arm64 qtbase5-dev:arm64 qtdeclarative5-dev:arm64 libedit-dev:arm64
    libudev-dev:arm64 libmosquitto-dev:arm64 libssl-dev:arm64
)

# What runs the programs of that architecture on this one, and what these load.
arm64_test_packages=(
    qemu-user-static qml-module-qtquick2:arm64 qml-module-qtquick-window2:arm64 qml-module-qtquick-templates2:arm64
)

# What the benchmarks need: the library that times them and the program that times processes, a plugin of Qt and a tool of
# the kernel's lines to compare with, the counters of instructions and of system calls, and what draws the picture and
# that of a dashboard, with the templates of its announcements.
benchmark_packages=(
    libbenchmark-dev hyperfine libqt5serialbus5-plugins gpiod valgrind strace python3 python3-matplotlib python3-jinja2
)

# The compiler of the fuzzers, the run time of its sanitizers, and what gives their reports names and lines.
fuzz_packages=(clang libclang-rt-dev llvm)

lint_packages=(clang-format clang-tidy clazy)

# valgrind, and the names of the C library's functions, without which it misjudges these.
memcheck_packages=(valgrind libc6-dbg)

# What makes Debian packages and checks them, their desktop file and metadata, too.
packaging_packages=(debhelper lintian appstream desktop-file-utils)

# What makes the empty root in which the packages are tried.
package_test_packages=(mmdebstrap)

coverage_packages=(gcovr)

mutation_packages=(python3)

# Names those of the named packages that are missing: for this machine, or for the architecture after a colon.
missing_packages() {
    comm -23 <(printf '%s\n' "$@" | sort -u) <(
        dpkg-query -W -f='${db:Status-Status} ${Package} ${Architecture}\n' |
            awk -v native="$(dpkg --print-architecture)" '
                $1 != "installed" { next }
                { print $2 ":" $3 }
                $3 == native || $3 == "all" { print $2 }' | sort
    )
}

# Installs those of the named packages that are missing.
require_packages() {
    local missing
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || die "These packages are missing and must be installed by root: ${missing[*]}"
        as_root=(sudo)
    fi
    say "Installing packages: ${missing[*]}"
    case " ${missing[*]} " in *:arm64\ *) "${as_root[@]}" dpkg --add-architecture arm64 ;; esac
    local log
    log=$(mktemp)
    if ! { "${as_root[@]}" apt-get update &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends \
            "${missing[@]}"; } >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        die "These packages could not be installed: ${missing[*]}"
    fi
    rm -f "$log"
}

# Configures a preset and builds it, whole or the named targets; says so when there is something to do.
build() {
    local preset=$1
    shift
    cd "$root"
    if [ ! -f "build/$preset/build.ninja" ]; then
        say "Configuring the preset $preset"
        local log
        log=$(mktemp)
        cmake --preset "$preset" >"$log" 2>&1 || {
            cat "$log" >&2
            die "The preset $preset could not be configured."
        }
        rm -f "$log"
    fi
    case $(ninja -C "build/$preset" -n "$@") in
    *"no work to do"*) return 0 ;;
    esac
    say "Building the preset $preset; the first time takes some minutes"
    ninja -C "build/$preset" --quiet "$@" >&2
}

# Runs ctest with a preset and further arguments. The tests mostly wait, for lines, processes and windows: two for each
# processor take little longer than one.
run_ctest() {
    local preset=$1
    shift
    ctest --preset "$preset" --parallel "$((2 * $(nproc)))" "$@"
}

# Builds the benchmarks, in the preset release.
build_benchmarks() {
    cmake --preset release -S "$root" -DBENCHMARKS=ON >/dev/null
    build release benchmarks
}
