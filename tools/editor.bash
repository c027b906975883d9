# Functions for scripts that need a real editor with two words selected. To be sourced inside tools/virtual-desktop, as it
# writes settings into the home directory. Sets `window`, the editor's window.
# shellcheck shell=bash

# waitFor COMMAND...: fails where the command does not succeed in 30 seconds.
waitFor() {
    local rounds
    for ((rounds = 1500; rounds > 0; rounds--)); do
        if "$@"; then
            return 0
        fi
        sleep 0.02
    done
    printf '%s: the desktop did not get ready (%s)\n' "${0##*/}" "$*" >&2
    return 1
}

windowIsThere() { window=$(xdotool getactivewindow 2>/dev/null) && [[ $(xdotool getwindowname "$window") == Fox.txt* ]]; }
windowHasSize() { [[ $(xdotool getwindowgeometry "$window") == *"$1"* ]]; }

# openEditor: Mousepad on a small document, in front, in large type and without the decorations of a first start.
openEditor() {
    export GSETTINGS_BACKEND=keyfile
    mkdir -p "$XDG_CONFIG_HOME/glib-2.0/settings" "$XDG_CONFIG_HOME/gtk-3.0"
    cat >"$XDG_CONFIG_HOME/glib-2.0/settings/keyfile" <<'END'
[org/xfce/mousepad/preferences/view]
use-default-monospace-font=false
font-name='DejaVu Sans 20'
[org/xfce/mousepad/preferences/window]
path-in-title=false
END
    cat >"$XDG_CONFIG_HOME/gtk-3.0/settings.ini" <<'END'
[Settings]
gtk-font-name=DejaVu Sans 11
gtk-cursor-blink=false
gtk-icon-theme-name=hicolor
END
    # Room around the text; and no warning of the editor to who runs this as root, as nothing here is theirs.
    cat >"$XDG_CONFIG_HOME/gtk-3.0/gtk.css" <<'END'
textview { padding: 14px 16px; }
textview, textview border, textview text:not(:selected) { background-color: white; }
window > * > label, window > * > * > label, window > * > * > * > label { font-size: 0; min-height: 0; padding: 0; margin: 0; background: none; color: transparent; }
END
    printf 'The quick brown fox jumps over the lazy dog.\n' >"$HOME/Fox.txt"
    mousepad --disable-server "$HOME/Fox.txt" >/dev/null 2>&1 &
    waitFor windowIsThere
    xdotool windowsize "$window" 760 210
    xdotool windowmove "$window" 120 180
    waitFor windowHasSize 760x210
}

# selectCharacters START COUNT TEXT: letter by letter as a person would: to the start, START steps right, COUNT more with
# Shift held; returns once TEXT is marked.
selectCharacters() {
    local keys=(ctrl+Home) step
    for ((step = 0; step < $1; step++)); do keys+=(Right); done
    for ((step = 0; step < $2; step++)); do keys+=(shift+Right); done
    xdotool key --delay 5 "${keys[@]}"
    waitFor textIsMarked "$3"
}
textIsMarked() { [ "$(xclip -selection primary -out -target UTF8_STRING 2>/dev/null)" = "$1" ]; }

# selectWords: "brown fox", the words of the editor's document.
selectWords() { selectCharacters 10 9 'brown fox'; }
