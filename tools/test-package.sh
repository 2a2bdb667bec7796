#!/usr/bin/env bash
# Tests the installed program the way a technician meets it:
#   tools/test-package.sh deb <norvale-setup_*.deb>   dpkg -i as CI does (root); purged at the end
#   tools/test-package.sh install <build folder>      cmake --install into a scratch prefix
# Checks the layout, the desktop entry, the ".nvl" type, a start in a writable
# and in a read-only program folder, and a ".nvl" file opened through the
# desktop entry's command line. Ends with 'N passed, N failed'.
set -uo pipefail

mode=${1:-}
target=${2:-}
if [[ ($mode != deb && $mode != install) || -z $target ]]; then
    echo "usage: $0 deb <package.deb> | install <build folder>" >&2
    exit 2
fi
source_dir=$(realpath "$(dirname "$0")/..")
scratch=$(mktemp -d)
chmod 755 "$scratch" # the read-only start runs as another user
passed=0
failed=0
installed_deb=""
cleanup() {
    if [[ -n $installed_deb ]]; then
        rm -f /usr/lib/norvale-setup/Setup.ini
        dpkg --purge norvale-setup >/dev/null 2>&1
    fi
    rm -rf "$scratch"
}
trap cleanup EXIT

check() { # description command...
    local what=$1
    shift
    if "$@"; then
        passed=$((passed + 1))
        echo "PASS: $what"
    else
        failed=$((failed + 1))
        echo "FAIL: $what"
    fi
}

# Reads one key of the desktop entry's main group.
entry_value() { # file key
    sed -n "/^\[Desktop Entry\]/,/^\[/{s/^$2=//p}" "$1" | head -n 1
}

# The program of an Exec line, read as a launcher reads it: the desktop file's
# escapes undone, then the first argument unquoted; nothing when the rest of
# the line is not the one file argument %f.
exec_program() { # exec value
    local value=${1//\\\\/\\} program rest
    local quoted='^"((\\.|[^"\\])*)"( .*)?$'
    if [[ $value =~ $quoted ]]; then
        program=$(printf '%s' "${BASH_REMATCH[1]}" | sed 's/\\\(.\)/\1/g')
        rest=${BASH_REMATCH[3]}
    else
        program=${value%% *}
        rest=${value#"$program"}
    fi
    [[ $rest == " %f" ]] || return 0
    printf '%s' "${program//%%/%}"
}

# Waits for a condition while the program runs; fails when it ends first or
# when the condition does not come within 15 s.
wait_running_until() { # pid command...
    local pid=$1
    shift
    for _ in $(seq 150); do
        "$@" && return 0
        kill -0 "$pid" 2>/dev/null || return 1
        sleep 0.1
    done
    return 1
}

# True when the program is still running after that many tenths of a second.
stays_running() { # pid tenths
    for _ in $(seq "$2"); do
        kill -0 "$1" 2>/dev/null || return 1
        sleep 0.1
    done
}

stop() { # pid
    kill "$1" 2>/dev/null
    wait "$1" 2>/dev/null
    return 0
}

# Installs, and sets prefix, program_dir, run_as_other (how to start the program
# as a user who cannot write its folder).
case $mode in
deb)
    [[ $(id -u) -eq 0 ]] || { echo "dpkg -i needs root" >&2; exit 2; }
    deb=$(realpath "$target")
    version=$(sed -n 's/^project(NorvaleSetup VERSION \([0-9.]*\).*/\1/p' "$source_dir/CMakeLists.txt")
    check "package version is the program's version $version" \
        test "$(dpkg-deb --field "$deb" Version)" = "$version"
    depends=$(dpkg-deb --field "$deb" Depends)
    for lib in libqt6core6 libqt6gui6 libqt6widgets6; do
        check "package depends on $lib" grep -q "\b$lib\b" <<<"$depends"
    done
    # On a fresh machine dpkg -i stops at the missing Qt packages; apt completes them.
    if ! dpkg -i "$deb" >"$scratch/dpkg.log" 2>&1; then
        DEBIAN_FRONTEND=noninteractive apt-get install -y -f >>"$scratch/dpkg.log" 2>&1
    fi
    installed_deb=$deb
    check "dpkg installs the package" \
        test "$(dpkg-query -W -f='${Status}' norvale-setup 2>/dev/null)" = "install ok installed"
    prefix=/usr
    run_as_other=(setpriv --reuid=nobody --regid=nogroup --clear-groups --)
    ;;
install)
    build=$(realpath "$target")
    # A blank in the path: the desktop entry must quote it.
    prefix="$scratch/home dir/.local"
    cmake --install "$build" --prefix "$prefix" >"$scratch/install.log" 2>&1
    check "cmake --install succeeds" test $? -eq 0
    # What the manifest lists is what an uninstall removes; the caches that the
    # desktop tools rebuilt are shared with other programs and stay.
    find "$prefix" \( -type f -o -type l \) \
        ! -path "$prefix/share/mime/*" ! -name mimeinfo.cache ! -name icon-theme.cache |
        sort >"$scratch/found"
    find "$prefix/share/mime/packages" -type f >>"$scratch/found"
    check "the install manifest lists every installed file" \
        cmp -s <(sort -u "$scratch/found") <(sort -u "$build/install_manifest.txt")
    if [[ $(id -u) -eq 0 ]]; then
        run_as_other=(setpriv --reuid=nobody --regid=nogroup --clear-groups --)
    else
        run_as_other=()
    fi
    ;;
esac
program_dir="$prefix/lib/norvale-setup"
program="$program_dir/norvale-setup"
data="$prefix/share"
entry="$data/applications/norvale-setup.desktop"

check "the program is installed in its own folder" test -x "$program"
check "the registry example lies beside it" test -f "$program_dir/Registry.reg"
check "the launcher link leads to the program" \
    test "$(readlink -f "$prefix/bin/norvale-setup")" = "$(readlink -f "$program")"
check "the link is relative" test "$(readlink "$prefix/bin/norvale-setup")" = ../lib/norvale-setup/norvale-setup
for size in 16 24 32 48 64 128 256; do
    check "icon ${size}x${size}" test -s "$data/icons/hicolor/${size}x${size}/apps/norvale-setup.png"
done
check "scalable icon" test -s "$data/icons/hicolor/scalable/apps/norvale-setup.svg"
check "MIME entry for .nvl" grep -q 'pattern="\*.nvl"' "$data/mime/packages/norvale-setup.xml"
check "desktop entry installed" test -f "$entry"
if command -v desktop-file-validate >/dev/null; then
    check "desktop entry valid" desktop-file-validate "$entry"
fi
exec_line=$(entry_value "$entry" Exec)
check "desktop entry starts the installed program with the file as one argument" \
    test "$(exec_program "$exec_line")" = "$program"
check "desktop entry's TryExec is the installed program" \
    test "$(entry_value "$entry" TryExec)" = "$(printf '%s' "$program" | sed 's/\\/\\\\/g')"
check "desktop entry claims the .nvl type" \
    test "$(entry_value "$entry" MimeType)" = "application/x-norvale-configuration;"
if command -v update-mime-database >/dev/null; then
    # Refreshed by the install itself, or by the package's triggers.
    check ".nvl files are recognised" \
        grep -qx 'application/x-norvale-configuration:\*\.nvl' <(cut -d: -f2- "$data/mime/globs2")
fi

export QT_QPA_PLATFORM=offscreen
# A read-only program folder: the program still starts and stays up; it writes nothing.
rm -f "$program_dir/Setup.ini"
[[ ${#run_as_other[@]} -eq 0 ]] && chmod a-w "$program_dir"
(cd / && exec "${run_as_other[@]}" "$prefix/bin/norvale-setup" >"$scratch/ro.log" 2>&1) &
pid=$!
# Staying up is the sign here: in that folder the start-up leaves no trace.
check "starts from a read-only folder and is still running 3 s later" stays_running "$pid" 30
stop "$pid"
check "no Setup.ini in the read-only folder" test ! -e "$program_dir/Setup.ini"
check "no platform plugin error" \
    bash -c "! grep -qi 'could not load the qt platform plugin\|failed to start' '$scratch/ro.log'"
[[ ${#run_as_other[@]} -eq 0 ]] && chmod u+w "$program_dir"

# A writable folder, started through the desktop entry with a configuration
# file, as a double-click does: the file is opened and listed first in Setup.ini.
mkdir -p "$scratch/site files"
nvl="$scratch/site files/three satellites.nvl"
cp "$source_dir/tests/data/three-satellites.nvl" "$nvl"
(cd / && exec "$(exec_program "$exec_line")" "$nvl" >"$scratch/rw.log" 2>&1) &
pid=$!
check "opens the .nvl file given by the desktop entry" \
    wait_running_until "$pid" grep -sqF "File1=$nvl" "$program_dir/Setup.ini"
stop "$pid"
check "Setup.ini lies beside the program" grep -q '^Version=TALMOR NORVALE CONFIGURATION FILE' "$program_dir/Setup.ini"
rm -f "$program_dir/Setup.ini"

if [[ $mode == deb ]]; then
    dpkg --purge norvale-setup >"$scratch/purge.log" 2>&1
    check "dpkg --purge removes the package" test $? -eq 0
    installed_deb=""
    check "nothing is left of the program's folder" test ! -e "$program_dir"
    check "the launcher link is gone" test ! -L /usr/bin/norvale-setup
fi

echo "$passed passed, $failed failed"
[[ $failed -eq 0 ]]
