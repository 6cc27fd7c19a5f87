# shellcheck shell=bash
# A copy of the scripts in a folder whose path holds a space, and stand-ins for what they call, which write each
# call into a journal. A test script sources this, defines functions named like sentences, and ends with `run_cases`.

# Bodies of stand-ins are expanded when they run; some variables are for the test scripts alone.
# shellcheck disable=SC2016,SC2034

source_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
real_path=$PATH
failures=0

make_sandbox() {
    sandbox=$(mktemp -d)
    top="$sandbox/a folder"
    journal=$sandbox/journal
    mkdir -p "$top/cmake" "$top/tests" "$top/.ci" "$sandbox/bin"
    tar -C "$source_root" --exclude=node_modules -c run test bench tools CMakePresets.json \
        {bridge-client,Workbench/ReviewPage}/package{,-lock}.json | tar -C "$top" -x
    cp "$source_root/cmake/packages.txt" "$top/cmake"
    cp "$source_root/.ci/run" "$top/.ci"
    touch "$journal"
    npm_packages_installed tools/workflow-lint
    npm_packages_installed bridge-client
    npm_packages_installed Workbench/ReviewPage
    for tool in awk basename bash cat chmod cmp cp cut date dirname env find grep ls mkdir rm sed setsid sort timeout touch tr wc; do
        ln -s "$(command -v "$tool")" "$sandbox/bin/$tool"
    done
    stand_in id 'echo 0'
    stand_in dpkg-query 'shift 3; for name in "$@"; do echo "installed $name"; done'
    stand_in apt-get ''
    stand_in node 'echo v20.19.0'
    stand_in ctest 'echo "100% tests passed"'
    stand_in cmake 'if [[ $1 == --preset ]]; then
        mkdir -p "build/$2/bin"
        touch "build/$2/build.ninja"
        printf "%s\n" "$@" | sed -n "s/^-D\(WORKBENCH_PAGE\)=/\1:BOOL=/p" >"build/$2/CMakeCache.txt"
    fi'
}

# npm_packages_installed FOLDER: what ./test leaves when it has installed what the folder's lock file names.
npm_packages_installed() {
    mkdir -p "$top/$1/node_modules"
    cp "$top/$1"/{package-lock.json,node_modules/.package-lock.installed}
}

# stand_in NAME BODY: a program of this name, first on the path, that notes its call and runs BODY.
stand_in() {
    write_program "$sandbox/bin/$1" "$1" "$2"
}

# write_program FILE NAME BODY
write_program() {
    mkdir -p "$(dirname "$1")"
    rm -f "$1"
    printf '#!/usr/bin/env bash\n{ printf "%%s" %q; [ $# -eq 0 ] || printf " [%%s]" "$@"; echo; } >>%q\n%s\n' \
        "$2" "$journal" "$3" >"$1"
    chmod +x "$1"
}

# missing_packages NAME...: the package database knows these names no more.
missing_packages() {
    stand_in dpkg-query "shift 3; for name in \"\$@\"; do [[ \" $* \" == *\" \$name \"* ]] || echo \"installed \$name\"; done; exit 1"
}

# call COMMAND...: without terminal and display; sets `status` and `output`.
call() {
    status=0
    output=$(cd "$sandbox" && env -i PATH="$sandbox/bin" HOME="$sandbox" "${environment[@]}" \
        setsid -w "$@" </dev/null 2>&1) || status=$?
}

calls() { # calls NAME: how often it was called
    grep -c "^$1\b" "$journal" || true
}

# expect WHAT COMMAND...: notes a failure when COMMAND fails.
expect() {
    local what=$1
    shift
    if ! "$@"; then
        printf 'FAILED %s: %s\n--- status %s, output:\n%s\n--- calls:\n%s\n' \
            "$case" "$what" "$status" "$output" "$(cat "$journal")"
        failed=1
    fi
}

expect_status() {
    expect "status $1" [ "$status" -eq "$1" ]
}

expect_output() {
    expect "output holds \"$1\"" grep -qF -- "$1" <<<"$output"
}

expect_call() {
    expect "it calls $1" grep -qxF -- "$1" "$journal"
}

expect_calls() { # expect_calls NAME NUMBER
    expect "it calls $1 $2 times" [ "$(calls "$1")" -eq "$2" ]
}

run_cases() {
    local count=0
    for case in $(declare -F | awk '$3 ~ /^[A-Z][A-Za-z]+$/ { print $3 }'); do
        failed=0 status='' output='' environment=()
        make_sandbox
        "$case"
        [ "$failed" -eq 0 ] && printf 'ok %s\n' "$case"
        failures=$((failures + failed)) count=$((count + 1))
        rm -rf "$sandbox"
    done
    printf '%d passed, %d failed\n' "$((count - failures))" "$failures"
    [ "$count" -gt 0 ] && [ "$failures" -eq 0 ]
}
