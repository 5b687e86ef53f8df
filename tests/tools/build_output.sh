#!/usr/bin/env bash
# tools/test as a new user meets it, with the build programs played by
# stand-ins on PATH (nothing is built): the build's progress and the line
# that names the packages to install reach the terminal, and only the
# build folder passes from tools/build to the caller.
#
# usage: build_output.sh SOURCE_DIR WORK_DIR
set -uo pipefail
source=$1
work=$2
rm -rf "$work"
mkdir -p "$work/bin"
fail() { echo "FAIL: $*"; exit 1; }

# Stand-ins: cmake shows progress, ctest says what it was asked, the
# package check finds what $QM_FAKE_INSTALLED says, and the user is not root.
cat > "$work/bin/cmake" <<'STAND_IN'
#!/usr/bin/env bash
if [[ $1 == --build ]]; then echo "[1/2] Building CXX object something.o"; echo "[2/2] Linking cadhost"
else echo "-- Configuring done"; fi
STAND_IN
cat > "$work/bin/ctest" <<'STAND_IN'
#!/usr/bin/env bash
echo "ctest ran with $*"
STAND_IN
cat > "$work/bin/dpkg-query" <<'STAND_IN'
#!/usr/bin/env bash
[[ ${QM_FAKE_INSTALLED:-} == all ]] && printf 'install ok installed'
exit 0
STAND_IN
cat > "$work/bin/id" <<'STAND_IN'
#!/usr/bin/env bash
echo 1000
STAND_IN
chmod +x "$work/bin/"*
export PATH="$work/bin:$PATH"

# Packages missing: the install line is shown, and the run stops.
QM_FAKE_INSTALLED=none "$source/tools/test" > "$work/out" 2> "$work/err"
status=$?
[[ $status -eq 1 ]] || fail "tools/test with packages missing exited with $status, not 1"
grep -q "apt-get install -y --no-install-recommends build-essential" "$work/err" ||
  fail "the install line was not shown; errors were: $(cat "$work/err")"
[[ ! -s "$work/out" ]] || fail "tools/test printed on standard output: $(cat "$work/out")"

# Everything there: the progress shows, the tests run in the build folder.
QM_FAKE_INSTALLED=all "$source/tools/test" > "$work/out" 2> "$work/err"
status=$?
[[ $status -eq 0 ]] || fail "tools/test exited with $status: $(cat "$work/err")"
grep -q "\[1/2\] Building CXX object something.o" "$work/err" || fail "the build's progress was not shown: $(cat "$work/err")"
grep -q "^ctest ran with --test-dir $source/build " "$work/out" || fail "ctest did not run in the build folder: $(cat "$work/out")"

# tools/build passes the folder alone on standard output.
QM_FAKE_INSTALLED=all "$source/tools/build" --sanitize --werror > "$work/out" 2> "$work/err"
[[ $(cat "$work/out") == "$source/build-sanitize" ]] || fail "tools/build printed: $(cat "$work/out")"
QM_FAKE_INSTALLED=all "$source/tools/build" --fast > "$work/out" 2> "$work/err"
[[ $? -eq 2 ]] || fail "tools/build took an unknown option"
echo "tools/test and tools/build show what they do"
