# Sourced by ./run, ./test and ./bench: what they share. Installs what a bare Debian 12 lacks, then builds.

packages_build=(g++ cmake ninja-build libasio-dev libcli11-dev libeigen3-dev nlohmann-json3-dev libfmt-dev libspdlog-dev
    zlib1g-dev libminizip-dev libedit-dev libgtest-dev librapidcheck-dev)  # the last two because ./run and ./test share one build
packages_test=(clang binutils unzip p7zip-full python3 dpkg-dev file pkgconf)
packages_windows=(g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 libz-mingw-w64-dev wine wine64 bzip2 xz-utils)
packages_bench=(pkgconf libglib2.0-dev libssl-dev libinih-dev libsimpleini-dev zip)  # whom we are compared with

# need_packages NAME...: installs those that are missing, through apt.
need_packages() {
    local missing=() name
    for name in "$@"; do
        dpkg-query -W -f='${Status}\n' "$name" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$name")
    done
    ((${#missing[@]})) || return 0
    local as_root=()
    if ((EUID != 0)); then
        command -v sudo >/dev/null || {
            echo "These packages are missing, and only root can install them: ${missing[*]}" >&2
            echo "Run as root: apt-get install ${missing[*]}" >&2
            return 1
        }
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# build PRESET [TARGET...]: configures once, builds; quiet unless something fails.
build() {
    local preset=$1
    shift
    if [ ! -e "build/$preset/build.ninja" ]; then
        echo "Configuring build/$preset"
        cmake --preset "$preset" >"$(build_log "$preset")" 2>&1 || { cat "$(build_log "$preset")" >&2; return 1; }
    fi
    echo "Building build/$preset"
    local targets=()
    (($#)) && targets=(--target "$@")
    cmake --build "build/$preset" "${targets[@]}" >"$(build_log "$preset")" 2>&1 || {
        tail -n 60 "$(build_log "$preset")" >&2
        return 1
    }
}

build_log() {
    mkdir -p build
    echo "build/$1.log"
}
