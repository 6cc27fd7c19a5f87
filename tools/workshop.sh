# shellcheck shell=bash
# What ./run, ./test and ./bench share; they source it. Exit statuses: 1 a test or check failed, 2 wrong use,
# 3 something is not installed and cannot be, 4 configuring or building failed.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
program=$(basename "$0")
installed= # set when this run installed packages

say() {
    printf '%s: %s\n' "$program" "$*"
}

die() { # die STATUS TEXT
    printf '%s: %s\n' "$program" "$2" >&2
    exit "$1"
}

# usage SCRIPT: prints the comment that the script begins with.
usage() {
    sed -n '2,/^$/s/^# \{0,1\}//p' "$1"
}

# stage STATUS NAME COMMAND...: runs COMMAND and says how long it took; or names the stage that failed, and ends.
stage() {
    local status=$1 name=$2 started=$SECONDS result=0
    shift 2
    say "$name ..."
    "$@" || result=$?
    if [ "$result" -ne 0 ]; then
        die "$status" "FAILED stage \"$name\" after $((SECONDS - started)) s (status $result)"
    fi
    say "$name: $((SECONDS - started)) s"
}

# packages GROUP...: the names in these groups of cmake/packages.txt.
packages() {
    awk -v groups=" $* " '
        /^\[/ { wanted = index(groups, " " substr($0, 2, length($0) - 2) " "); next }
        wanted && NF && !/^#/ { print $1 }' "$root/cmake/packages.txt"
}

# missing NAME...: those that are not installed, from a single query of the package database.
missing() {
    # The query fails when a name is unknown to it; what it prints about the others is complete all the same.
    { dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true; } |
        awk -v names="$*" '
            $1 == "installed" { have[$2] }
            END { n = split(names, name, " "); for (i = 1; i <= n; i++) if (!(name[i] in have)) print name[i] }'
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif { : </dev/tty; } 2>/dev/null; then
        sudo "$@"
    else
        sudo -n "$@" # nobody is there to type a password: a refusal beats waiting for one
    fi
}

apt_get() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300 "$@" </dev/null
}

apt_install() {
    # One source that does not answer need not be the one that the packages come from.
    apt_get update || say "apt-get could not renew all package lists; trying with those that are here"
    apt_get install -y --no-install-recommends "$@"
}

# ensure_packages GROUP...: installs what these groups lack.
ensure_packages() {
    local names lacking
    if ! command -v dpkg-query >/dev/null; then
        say "no Debian system: nothing is checked or installed; cmake/packages.txt says what is needed"
        return
    fi
    mapfile -t names < <(packages "$@")
    mapfile -t lacking < <(missing "${names[@]}")
    if [ "${#lacking[@]}" -eq 0 ]; then
        return
    fi
    if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
        die 3 "not installed, and no sudo here to install it. As root: apt-get install --no-install-recommends ${lacking[*]}"
    fi
    say "not installed yet: ${lacking[*]}"
    stage 3 "install packages with apt-get" apt_install "${lacking[@]}"
    installed=yes
}

# JavaScript. A folder with a lock file has what that names in node_modules beside it; a copy of the lock file in
# there tells what is installed.
workflow_linter=tools/workflow-lint
bridge_client=bridge-client
review_page=Workbench/ReviewPage
own_node=tools/node

# has_npm_packages FOLDER: whether what the folder's lock file names is what is installed.
has_npm_packages() {
    cmp -s "$root/$1"/package-lock.json "$root/$1/node_modules/.package-lock.installed"
}

# Our packages need no script of theirs to be run, so none is.
install_npm_packages() { # install_npm_packages FOLDER
    npm --prefix "$root/$1" ci --ignore-scripts --no-audit --no-fund --loglevel=error --fetch-retries=1 --fetch-timeout=60000 </dev/null &&
        cp "$root/$1"/{package-lock.json,node_modules/.package-lock.installed}
}

# ensure_npm_packages FOLDER: installs them where they are missing. What needs them fails without them and says so,
# which is no reason to run nothing else.
ensure_npm_packages() {
    if has_npm_packages "$1"; then
        return
    fi
    # Debian's npm and another's exclude each other, so one that answers is as good.
    if ! npm --version >/dev/null 2>&1; then
        (ensure_packages npm) || return 0
    fi
    (stage 3 "install $1 with npm" install_npm_packages "$1") || return 0
}

# new_enough VERSION: whether a node of this version runs the test runner and the bundler of the JavaScript here.
new_enough() {
    local major minor
    IFS=. read -r major minor _ <<<"${1#v}"
    ((major == 20 && minor >= 19 || major == 22 && minor >= 12 || major >= 24))
}

has_node() {
    new_enough "$(node --version 2>/dev/null || echo v0.0)"
}

# use_node: makes a node that is new enough the one that is called; fails where there is none. Debian 12's is too old.
use_node() {
    local modules=$root/$own_node/node_modules
    has_node || PATH=$(printf '%s:' "$modules"/node-linux-*/bin)$modules/.bin:$PATH
    has_node
}

# ensure_node: the system's where it is new enough, else the one that tools/node pins.
ensure_node() {
    has_node || ensure_npm_packages "$own_node"
}

# test_npm_package FOLDER [VITEST-OPTION...]: checks its types and runs its tests.
test_npm_package() {
    local folder=$1
    shift
    use_node || die 3 "there is no node that is new enough (20.19, 22.12 or 24): ./test installs $own_node with npm"
    has_npm_packages "$folder" || die 3 "the tools of $folder are not installed: ./test installs them with npm"
    cd "$root/$folder" || die 3 "there is no $folder"
    # The test runner looks at the types in its type tests alone.
    node node_modules/typescript/bin/tsc || die 1 "$folder does not compile"
    exec node node_modules/vitest/vitest.mjs run "$@"
}

ensure_workflow_linter() {
    ensure_npm_packages "$workflow_linter"
}

# On too old a node, npm leaves out the compiled parts of packages that want a newer one, and succeeds.
ensure_bridge_client() {
    ensure_node
    (use_node && ensure_npm_packages "$bridge_client") || return 0
}

# ensure_review_page: what builds the page. Without it a small page is served, which is no reason to build nothing else.
ensure_review_page() {
    ensure_node
    (use_node && ensure_npm_packages "$review_page") || true
    [ "$(review_page)" = ON ] || say "the review page is not built, and a small one is served instead: its tools need npm"
}

# review_page: ON where the review page can be built, else OFF.
review_page() {
    if has_npm_packages "$review_page" && (use_node); then echo ON; else echo OFF; fi
}

# is_configured PRESET OPTION: whether build/PRESET was made from these presets, with this -DNAME=VALUE.
is_configured() {
    local folder=$root/build/$1 option=${2#-D}
    [ "$folder/build.ninja" -nt "$root/CMakePresets.json" ] &&
        grep -qx "${option%%=*}:[A-Z]*=${option#*=}" "$folder/CMakeCache.txt"
}

# configure PRESET: makes or renews build/PRESET. Ninja sees to a changed CMakeLists.txt by itself, so there is
# something to do only when the presets changed, or what is installed, or whether the page can be built.
configure() {
    local preset=$1 options=() page
    local log=$root/build/$preset.configure.log
    page=-DWORKBENCH_PAGE=$(review_page)
    if [ -z "$installed" ] && is_configured "$preset" "$page"; then
        return
    fi
    if [ -n "$installed" ]; then
        options+=(--fresh) # the cache also remembers what was not found
    fi
    options+=("$page")
    if command -v ccache >/dev/null; then
        options+=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    fi
    mkdir -p "$root/build"
    # Warnings and errors go to standard error and thus to the screen; what was found on the way, to the log.
    if ! (cd "$root" && cmake --preset "$preset" "${options[@]}" >"$log" </dev/null); then
        say "what CMake found until then: $log" >&2
        return 1
    fi
}

# compile PRESET [TARGET...]
compile() {
    local preset=$1 options=()
    shift
    [ $# -eq 0 ] || options+=(--target "$@")
    [ -t 1 ] || options+=(-- --quiet) # a line for each file is for a screen that overwrites it
    # The sloppiness lets ccache reuse what was compiled with a precompiled header.
    (cd "$root" && CCACHE_SLOPPINESS=pch_defines,time_macros cmake --build --preset "$preset" "${options[@]}" </dev/null)
}

# build PRESET [TARGET...]: all of build/PRESET, or these targets of it.
build() {
    stage 4 "configure build/$1" configure "$1"
    stage 4 "build build/$1" compile "$@"
}

# cxx_files: our C++ sources and headers, each followed by a zero byte.
cxx_files() {
    (cd "$root" && find FcpExtension Ports Platform Workbench packaging tests benches tools -name node_modules -prune -o \
        -type f \( -name '*.h' -o -name '*.cpp' -o -name '*.mm' \) -printf "$root/%p\0" | sort -z)
}
