# The program folder's registry file names the system-information tool that the
# About box starts. The install writes it for the machine at hand: sourced by
# cmake --install (InstallProgram.cmake) and pasted into the package's postinst.
#
# norvale_write_registry <registry file>, the template on standard input: the
# template with "PATH" set to the first of hardinfo, kinfocenter (KDE) and
# gnome-system-monitor (GNOME) found on PATH. With none found, hardinfo stays
# under a comment and the About box says that system information is not
# available until one is installed. An existing file whose PATH names a program
# that is there is left as it is: the choice made before, or an edit.
norvale_write_registry() {
    local registry=$1 current tool name escaped line eol cr
    current=$(sed -n 's/^"PATH"="\(.*\)"[[:space:]]*$/\1/p' "$registry" 2>/dev/null |
        head -n 1 | sed 's/\\\(.\)/\1/g')
    if [ -n "$current" ] && [ -f "$current" ] && [ -x "$current" ]; then
        cat >/dev/null
        return 0
    fi
    tool=
    for name in hardinfo kinfocenter gnome-system-monitor; do
        tool=$(command -v "$name") && break
    done
    escaped=$(printf '%s' "$tool" | sed 's/[\\"]/\\&/g')
    cr=$(printf '\r')
    # Line by line, so that the template's line ends stay as they are.
    while IFS= read -r line || [ -n "$line" ]; do
        case $line in
        '"PATH"='*)
            eol=
            case $line in *"$cr") eol=$cr ;; esac
            if [ -n "$tool" ]; then
                printf '"PATH"="%s"%s\n' "$escaped" "$eol"
            else
                printf '%s\n' \
                    "; No system-information tool was found at install time. Install one of$eol" \
                    ";   hardinfo, kinfocenter, gnome-system-monitor$eol" \
                    "; and install Norvale Setup again, or point PATH at another tool.$eol" \
                    "$line"
            fi
            ;;
        *) printf '%s\n' "$line" ;;
        esac
    done >"$registry.new"
    mv -f "$registry.new" "$registry"
}
