#!/usr/bin/env bash
# Tests the installed program the way a technician meets it:
#   tools/test-package.sh deb <norvale-setup_*.deb>   dpkg -i as CI does (root); purged at the end
#   tools/test-package.sh install <build folder>      cmake --install into a scratch prefix
# Checks the layout, the desktop entry, the ".nvl" type, a start in a writable
# and in a read-only program folder, a ".nvl" file opened through the desktop
# entry's command line, two saves in the file dialog's folder, and the registry
# file's system-information tool. Ends with 'N passed, N failed'.
# The saves and the About box are driven by tools/norvale-drive, found in the
# build folder (install) or in tools/ beside the package (deb).
set -uo pipefail

mode=${1:-}
target=${2:-}
if [[ ($mode != deb && $mode != install) || -z $target ]]; then
    echo "usage: $0 deb <package.deb> | install <build folder>" >&2
    exit 2
fi
source_dir=$(realpath "$(dirname "$0")/..")
# No dot in its path: a save's backup name is cut at the first dot.
scratch=$(realpath "$(mktemp -d "${TMPDIR:-/tmp}/norvale-test-XXXXXX")")
if [[ $scratch == *.* ]]; then
    echo "the scratch folder $scratch has a dot in its path: set TMPDIR to a folder without" >&2
    rm -rf "$scratch"
    exit 2
fi
chmod 755 "$scratch" # the read-only start runs as another user
passed=0
failed=0
installed_deb=""
cleanup() {
    if [[ -n $installed_deb ]]; then
        rm -f /usr/lib/norvale-setup/Setup.ini /usr/lib/norvale-setup/*.nvl /usr/lib/norvale-setup/*.bak
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

# Installs, and sets prefix, program_dir, around (a folder holding the whole
# layout), drive (the driver), run_as_other (how to start the program as a user
# who cannot write its folder).
case $mode in
deb)
    [[ $(id -u) -eq 0 ]] || { echo "dpkg -i needs root" >&2; exit 2; }
    deb=$(realpath "$target")
    version=$(sed -n 's/^project(NorvaleSetup VERSION \([0-9.]*\).*/\1/p' "$source_dir/CMakeLists.txt")
    check "package version is the program's version $version" \
        test "$(dpkg-deb --field "$deb" Version)" = "$version"
    depends=$(dpkg-deb --field "$deb" Depends)
    for lib in libqt6core6 libqt6gui6 libqt6widgets6 libqt6serialport6; do
        check "package depends on $lib" grep -q "\b$lib\b" <<<"$depends"
    done
    check "package recommends a system-information tool" \
        grep -q 'hardinfo | kinfocenter | gnome-system-monitor' <<<"$(dpkg-deb --field "$deb" Recommends)"
    # On a fresh machine dpkg -i stops at the missing Qt packages; apt completes them.
    if ! dpkg -i "$deb" >"$scratch/dpkg.log" 2>&1; then
        DEBIAN_FRONTEND=noninteractive apt-get install -y -f >>"$scratch/dpkg.log" 2>&1
    fi
    installed_deb=$deb
    check "dpkg installs the package" \
        test "$(dpkg-query -W -f='${Status}' norvale-setup 2>/dev/null)" = "install ok installed"
    prefix=/usr
    program_dir=/usr/lib/norvale-setup
    around=/usr
    drive=$(dirname "$deb")/tools/norvale-drive
    run_as_other=(setpriv --reuid=nobody --regid=nogroup --clear-groups --)
    ;;
install)
    build=$(realpath "$target")
    # A user's prefix, as the default ~/.local, with a blank in the path: the
    # desktop entry must quote it.
    prefix="$scratch/home dir/.local"
    program_dir="$scratch/home dir/NorvaleSetup"
    around=$scratch
    drive=$build/tools/norvale-drive
    cmake --install "$build" --prefix "$prefix" >"$scratch/install.log" 2>&1
    check "cmake --install succeeds" test $? -eq 0
    # What the manifest lists is what an uninstall removes; the caches that the
    # desktop tools rebuilt are shared with other programs and stay.
    find "$prefix" "$program_dir" \( -type f -o -type l \) \
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
program="$program_dir/norvale-setup"
data="$prefix/share"
entry="$data/applications/norvale-setup.desktop"
registry="$program_dir/Registry.reg"

check "the program is installed in its own folder" test -x "$program"
check "the program folder's path has no dot" test "${program_dir//./}" = "$program_dir"
check "the registry file lies beside it" test -f "$registry"
# Every program of the folder: norvale-setup, and the others once they are built.
links=("$prefix/bin/norvale-setup")
for link in "$prefix"/bin/norvale-*; do
    [[ $link != "${links[0]}" && -L $link ]] && links+=("$link")
done
for link in "${links[@]}"; do
    name=$(basename "$link")
    check "the launcher link $name leads to the program" \
        test "$(readlink -f "$link")" = "$(readlink -f "$program_dir/$name")" -a -x "$program_dir/$name"
    check "the link $name is relative" \
        test "$(readlink "$link")" = "$(realpath -m --relative-to="$prefix/bin" "$program_dir/$name")"
done
# The command line against the emulator on a pseudo-terminal, both installed, with
# the installed examples: the survey finds the absent satellite and the PDF module
# beside the programs paints the report.
examples="$prefix/share/doc/norvale-setup/examples"
check "the examples are installed" test -f "$examples/demo.nvl" -a -f "$examples/demo-air.ini"
if [[ -x $program_dir/norvale-netsim && -x $program_dir/norvale-cli ]]; then
    coproc netsim { exec "$program_dir/norvale-netsim" --pty --scenario "$examples/demo-air.ini"; }
    read -r -t 15 device <&"${netsim[0]}"
    XDG_RUNTIME_DIR=$scratch "$program_dir/norvale-cli" survey "$examples/demo.nvl" --link serial \
        --port "$device" --report "$scratch/site.pdf" >"$scratch/survey.txt" 2>&1
    check "norvale-cli surveys the example over the emulator's line: one satellite missing" \
        test $? -eq 1 -a "$(grep -c matches "$scratch/survey.txt")" -eq 3
    check "norvale-cli writes the PDF report" test "$(head -c 4 "$scratch/site.pdf")" = "%PDF"
    [[ -n ${netsim_PID:-} ]] && stop "$netsim_PID"
fi
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

# The driver makes the window over the folder that the installed program finds
# through its link, as applicationDirPath() does.
check "the driver $drive is built" test -x "$drive"
folder=$(dirname "$(readlink -f "$prefix/bin/norvale-setup")")
drive() { # command [file]
    timeout 60 "$drive" "$1" "$folder" "${@:2}" 2>>"$scratch/drive.log"
}

# Two saves in the file dialog's own folder: the backup of the second lies
# beside the file, holding what the first save wrote.
cp "$source_dir/tests/data/three-satellites.nvl" "$program_dir/site.nvl"
touch "$scratch/before saves"
drive save-as site.nvl >"$scratch/save.out"
check "the file dialog starts in the program folder" \
    test "$(grep '^dialog: ' "$scratch/save.out" | sort | uniq -c | sed 's/^ *//')" = "3 dialog: $program_dir"
# The open's own message depends on the range in the file: only the saves' count.
check "saved twice through the dialog" \
    test "$(sed -n 's/^status: //p' "$scratch/save.out" | tail -n 2 | paste -sd '|')" = "File saved|File saved"
check "the backup lies beside the file, as the first save wrote it" \
    cmp -s "$program_dir/site.bak" "$program_dir/site.nvl"
check "no backup elsewhere in $around" test -z "$(find "$around" -name '*.bak' \
    -newer "$scratch/before saves" ! -path "$program_dir/*" -print -quit 2>/dev/null)"
rm -f "$program_dir/site.nvl" "$program_dir/site.bak" "$program_dir/Setup.ini"

# The registry file names the system-information tool that the About box starts.
registry_path() {
    sed -n 's/^"PATH"="\(.*\)"\r\?$/\1/p' "$registry" | sed 's/\\\(.\)/\1/g'
}
# The first tool of the install's choice found on a PATH.
first_tool() { # PATH
    local name
    for name in hardinfo kinfocenter gnome-system-monitor; do
        (PATH=$1 && command -v "$name") && return 0
    done
    return 0
}
install_again() { # PATH
    case $mode in
    deb) PATH=$1 dpkg -i "$deb" >>"$scratch/dpkg.log" 2>&1 ;;
    install) PATH=$1 cmake --install "$build" --prefix "$prefix" >>"$scratch/install.log" 2>&1 ;;
    esac
}
unavailable="Les informations système ne sont pas disponibles actuellement"
tool=$(first_tool "$PATH")
if [[ -z $tool ]]; then
    check "no tool on this machine: the registry names hardinfo, with a comment" \
        test "$(registry_path)" = /usr/bin/hardinfo -a -n "$(grep '^; No system-information tool' "$registry")"
    check "System Info... says the information is not available" \
        grep -qxF "message: $unavailable" <(drive sysinfo)
else
    check "the registry names $tool, found on this machine" test "$(registry_path)" = "$tool"
fi
# A tool installed later: installing again names it in place of a missing one
# (a file naming a tool that is there is removed first), and the About box starts it.
mkdir -p "$scratch/tools"
started="$scratch/sysinfo started"
printf '#!/bin/sh\ntouch "%s"\n' "$started" >"$scratch/tools/gnome-system-monitor"
chmod 755 "$scratch/tools/gnome-system-monitor"
[[ -x $(registry_path) ]] && rm -f "$registry"
install_again "$scratch/tools:$PATH"
tool=$(first_tool "$scratch/tools:$PATH")
check "installed again, the registry names $tool" test "$(registry_path)" = "$tool"
if [[ $tool == "$scratch/tools/gnome-system-monitor" ]]; then
    # The status line comes once the About box is closed again.
    check "System Info... starts it without a message" \
        test "$(drive sysinfo | cut -d: -f1 | paste -sd ' ')" = status
    check "the tool has started" wait_running_until $$ test -e "$started"
fi
install_again "$PATH"
check "installed again, the registry keeps a tool that is there" test "$(registry_path)" = "$tool"
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
