#!/usr/bin/env bash
# Tests of the scripts: one case a call, named by a function below.
#   scripts_test.sh SOURCES CASE
# Programs of the same name stand in for cmake, dpkg-query and apt-get, so nothing is built here.
set -uo pipefail

sources=$1
work=$(mktemp -d)
trap 'chmod -R u+w "$work"; rm -rf "$work"' EXIT
export PATH=$work/bin:$PATH LC_ALL=C
unset LC_CTYPE LC_MESSAGES LANGUAGE CCACHE_DISABLE
export KESTRIX_BUILD_DIR=$work/build
mkdir "$work/bin"

stand_in() # NAME, its script on standard input
{
    { echo '#!/usr/bin/env bash'; cat; } >"$work/bin/$1"
    chmod +x "$work/bin/$1"
}

# All packages are there, and building makes a tool that prints its arguments.
stand_in dpkg-query <<'END'
for package; do printf 'installed %s\n' "$package"; done
END
stand_in cmake <<'END'
echo "cmake $*"
folder=$KESTRIX_BUILD_DIR/release
touch "$folder/build.ninja"
printf '#!/bin/sh\necho "tool:$*:${CCACHE_DISABLE-}"\n' >"$folder/kestrix"
chmod +x "$folder/kestrix"
END
# Whoever is no root installs by sudo.
stand_in sudo <<'END'
exec "$@"
END

die()
{
    printf 'FAILED: %s\n--- standard output\n%s\n--- standard error\n%s\n' "$1" "$out" "$err"
    exit 1
}

call()
{
    out=$("$@" 2>"$work/err")
    code=$?
    err=$(cat "$work/err")
}

expect() # WHAT, then a condition
{
    local what=$1
    shift
    "$@" || die "expected $what (exit code $code)"
}

says() { [[ $err == *"$1"* ]]; }

run_says_at_first_where_the_log_is()
{
    call "$sources/scripts/run" update a.obl
    expect "the tool's exit code" [ "$code" = 0 ]
    expect "the log's name" says "the log is $KESTRIX_BUILD_DIR/release/build.log"
    expect "a log" grep -q '^cmake --build' "$KESTRIX_BUILD_DIR/release/build.log"
}

run_says_nothing_when_the_tool_is_built()
{
    call "$sources/scripts/run"
    call "$sources/scripts/run" update a.obl
    expect "silence" [ -z "$err" ]
    expect "the tool's output alone" [ "$out" = "tool:update a.obl:" ]
}

run_refuses_a_build_folder_that_it_cannot_write()
{
    KESTRIX_BUILD_DIR=/proc/kestrix call "$sources/scripts/run"
    expect "exit code 2" [ "$code" = 2 ]
    expect "the way out" says "set KESTRIX_BUILD_DIR"
    expect "no output" [ -z "$out" ]
}

run_starts_no_old_tool_when_the_lock_cannot_be_opened()
{
    call "$sources/scripts/run"
    rm "$KESTRIX_BUILD_DIR/.lock"
    mkdir "$KESTRIX_BUILD_DIR/.lock" # nobody can open it for writing, not even root
    call "$sources/scripts/run"
    expect "exit code 2" [ "$code" = 2 ]
    expect "no output" [ -z "$out" ]
}

run_starts_no_old_tool_when_building_fails()
{
    call "$sources/scripts/run"
    stand_in cmake <<<'echo "no such header"; exit 1'
    call "$sources/scripts/run"
    expect "exit code 2" [ "$code" = 2 ]
    expect "the log" says "no such header"
    expect "no output" [ -z "$out" ]
}

run_works_through_a_symbolic_link()
{
    ln -s "$sources/scripts/run" "$work/kestrix"
    call "$work/kestrix" x
    expect "the tool's output" [ "$out" = "tool:x:" ]
}

run_leaves_out_a_cache_that_cannot_be_written()
{
    stand_in ccache <<<'echo /proc/ccache'
    call "$sources/scripts/run" x
    expect "the cache switched off" [ "$out" = "tool:x:1" ]
}

run_says_that_it_waits_for_another_build()
{
    mkdir -p "$KESTRIX_BUILD_DIR"
    exec 8>"$KESTRIX_BUILD_DIR/.lock"
    flock 8
    # The other build ends when the waiting has been told.
    (
        exec 8>&-
        call "$sources/scripts/run" x
        printf '%s\n%s\n' "$out" "$err" >"$work/result"
    ) &
    until grep -qs "waiting for another build" "$work/err"; do sleep 0.05; done
    exec 8>&-
    wait
    out=$(cat "$work/result") err= code=0
    expect "the tool after the wait" grep -q '^tool:x:' "$work/result"
}

# An apt-get that finds the lock taken as often as a file says.
taken_lock()
{
    stand_in dpkg-query <<<''
    stand_in sleep <<<''
    echo "$1" >"$work/left"
    stand_in apt-get <<END
left=\$(cat "$work/left")
echo "apt-get \$*" >>"$work/calls"
[ "\$left" -gt 0 ] || exit 0
echo \$((left - 1)) >"$work/left"
echo "E: Could not get lock /var/lib/apt/lists/lock" >&2
exit 100
END
}

install_packages_waits_for_the_lock_and_says_so_once()
{
    taken_lock 2
    call "$sources/scripts/install-packages" lint
    expect "success" [ "$code" = 0 ]
    expect "one line that says so" [ "$(grep -c 'waiting for it' "$work/err")" = 1 ]
    expect "the packages" grep -q 'install --no-install-recommends .*clang-format' "$work/calls"
}

install_packages_fails_with_the_words_of_apt_get()
{
    taken_lock 0
    stand_in apt-get <<<'echo "E: no network" >&2; exit 100'
    call "$sources/scripts/install-packages" lint
    expect "failure" [ "$code" = 1 ]
    expect "its words" says "E: no network"
}

# A history of the commits base, one and two. Two sources and a header have changed since the base.
history()
{
    stand_in git <<'END'
shift 2 # -C FOLDER
case $* in
    "merge-base origin/main HEAD") echo base ;;
    "rev-parse HEAD") echo two ;;
    "rev-parse --verify --quiet gone^{commit}") exit 1 ;;
    "rev-parse --verify --quiet one^{commit}") echo one ;;
    "rev-parse --verify --quiet large^{commit}") echo large ;;
    "diff --name-only --diff-filter=d large "*) printf 'core/a%s.cpp\n' {1..50} ;;
    "rev-list --reverse base..HEAD") printf 'one\ntwo\n' ;;
    "diff --name-only --diff-filter=d base "*) printf 'core/a.cpp\ncore/place.h\n' ;;
    "diff --name-only --diff-filter=d one "*) ;;
    "ls-files "*) ;;
    "grep "*'place\.h"'*) printf 'core/b.cpp\ncore/coreplace.cpp\n' ;;
    "archive "*)
        folder=$(mktemp -d)
        echo "$2" >"$folder/commit"
        tar -c -C "$folder" commit
        rm -r "$folder"
        ;;
    *) echo "git $*" >&2; exit 3 ;;
esac
END
    stand_in cmake <<<'echo "cmake $*"'
    stand_in clang-format <<<''
    stand_in run-clang-tidy <<<'printf "%s\n" "$@"'
}

lint_analyses_changed_sources_and_those_of_changed_headers()
{
    history
    call "$sources/scripts/test" --lint
    expect "success" [ "$code" = 0 ]
    expect "the changed source" grep -qxF "^$sources/core/a.cpp\$" <<<"$out"
    expect "the header's own source" grep -qxF "^$sources/core/coreplace.cpp\$" <<<"$out"
    expect "no other source" [ "$(grep -c '\.cpp' <<<"$out")" = 2 ]
}

lint_analyses_nothing_where_no_source_has_changed()
{
    history
    call "$sources/scripts/test" --lint=one
    expect "success" [ "$code" = 0 ]
    expect "a word about it" [ "$out" = "lint: no source has changed" ]
}

lint_analyses_a_share_of_a_large_change()
{
    history
    call "$sources/scripts/test" --lint=large
    expect "success" [ "$code" = 0 ]
    expect "forty sources" [ "$(grep -c '/core/a[0-9]*\.cpp' <<<"$out")" = 40 ]
    expect "a word about it" says "analysing 40 of 50 sources"
}

lint_refuses_an_unknown_revision()
{
    history
    call "$sources/scripts/test" --lint=gone
    expect "exit code 2" [ "$code" = 2 ]
    expect "the revision" says "no commit gone"
}

lint_fails_where_the_layout_is_wrong()
{
    history
    stand_in clang-format <<<'exit 1'
    call "$sources/scripts/test" --lint=all
    expect "failure" [ "$code" != 0 ]
    expect "no analysis" [ -z "$out" ]
}

check_commits_names_the_one_that_cannot_be_configured()
{
    history
    stand_in cmake <<<'grep -q one "$2/commit" || { echo "no file x.cpp" >&2; exit 1; }'
    call "$sources/scripts/check-commits"
    expect "exit code 2" [ "$code" = 2 ]
    expect "the words of cmake" says "no file x.cpp"
    expect "the commit alone" says "cannot be configured: two"
}

check_commits_says_that_there_is_no_history()
{
    stand_in git <<<'exit 128'
    call "$sources/scripts/check-commits"
    expect "success" [ "$code" = 0 ]
    expect "a word about it" says "no older commit is known"
}

check_commits_is_silent_about_good_ones()
{
    history
    call "$sources/scripts/check-commits"
    expect "success" [ "$code" = 0 ]
    expect "silence" [ -z "$out$err" ]
}

# A project with the nightly script, in which the other scripts are stand-ins that note their call.
# Those whose call has the word fail.
nightly_project() # [WORD]
{
    mkdir -p "$work/project/scripts" "$work/project/tests/fuzz"
    cp "$sources/scripts/nightly" "$sources/scripts/build-folder" "$work/project/scripts"
    for name in test coverage trust install-packages; do
        stand_in "../project/scripts/$name" <<END
echo "$name \$*" >>"$work/calls"
[[ " $name \$* " != *"${1-no such word}"* ]]
END
    done
    stand_in git <<<"echo one"
    stand_in cmake <<<''
    echo "open('$work/calls', 'a').write('fuzz\\n')" >"$work/project/tests/fuzz/fuzz.py"
}

nightly_runs_all_parts_and_prints_a_table()
{
    nightly_project
    call "$work/project/scripts/nightly" 2
    expect "success" [ "$code" = 0 ]
    expect "the checks" grep -qx 'test --lint=all' "$work/calls"
    expect "more mutants than usual" grep -qx 'trust mutants --share 10' "$work/calls"
    expect "six fuzzers" [ "$(grep -cx fuzz "$work/calls")" = 6 ]
    expect "a table" grep -q '^fuzz-values  *ok' <<<"$out"
}

nightly_names_the_parts_that_failed()
{
    nightly_project --qt6
    call "$work/project/scripts/nightly" 2
    expect "exit code 1" [ "$code" = 1 ]
    expect "the part" says "nightly: failed: qt6"
    expect "the others" grep -q '^valgrind  *ok' <<<"$out"
}

nightly_goes_on_with_what_was_not_done()
{
    nightly_project
    mkdir -p "$KESTRIX_BUILD_DIR/nightly"
    printf 'commit one\nsanitize ok 5\nlint failed 7\n' >"$KESTRIX_BUILD_DIR/nightly/state"
    call "$work/project/scripts/nightly" 2
    expect "the failure of before" [ "$code" = 1 ]
    expect "no part twice" [ "$(grep -c -e --sanitize -e --lint "$work/calls")" = 0 ]
    expect "the other parts" grep -qx 'test --qt6' "$work/calls"
    expect "a new run next time" [ ! -e "$KESTRIX_BUILD_DIR/nightly/state" ]
}

nightly_begins_anew_for_another_commit()
{
    nightly_project
    mkdir -p "$KESTRIX_BUILD_DIR/nightly"
    printf 'commit other\nsanitize failed 5\n' >"$KESTRIX_BUILD_DIR/nightly/state"
    call "$work/project/scripts/nightly" 2
    expect "success" [ "$code" = 0 ]
    expect "the part again" grep -qx 'test --sanitize' "$work/calls"
}

nightly_refuses_a_budget_beyond_its_bounds()
{
    nightly_project
    call "$work/project/scripts/nightly" 9
    expect "exit code 2" [ "$code" = 2 ]
    expect "no part" [ ! -e "$work/calls" ]
}

"$2"
