# Functions for scripts that need a real browser with two words selected in a page. To be sourced after editor.bash, inside
# tools/virtual-desktop. Sets `window`, the browser's window.
# shellcheck shell=bash

browserIsThere() { window=$(xdotool getactivewindow 2>/dev/null) && [[ $(xdotool getwindowname "$window") == Fox\ page* ]]; }

# openBrowser TOOL: Firefox on a page with a text area in which "brown fox" is selected; returns once TOOL can read it.
openBrowser() {
    local tool=$1
    mkdir -p "$HOME/profile"
    # The editor's style would empty the labels of the browser.
    rm -f "$XDG_CONFIG_HOME/gtk-3.0/gtk.css"
    cat >"$HOME/profile/user.js" <<'END'
user_pref("browser.shell.checkDefaultBrowser", false);
user_pref("browser.startup.homepage_override.mstone", "ignore");
user_pref("datareporting.policy.dataSubmissionEnabled", false);
user_pref("browser.tabs.inTitlebar", 0);
END
    cat >"$HOME/page.html" <<'END'
<!doctype html><meta charset="utf-8"><title>Fox page, opening</title>
<body style="font: 26px 'DejaVu Sans'; margin: 24px">
<p>A text area in a page:</p>
<textarea id="area" rows="3" cols="44" style="font: inherit">The quick brown fox jumps over the lazy dog.</textarea>
<script>onload = () => { area.focus(); area.setSelectionRange(10, 19); };
onkeyup = (event) => { if (event.key === 'Shift') document.title = 'Fox page'; };</script>
END
    firefox-esr --profile "$HOME/profile" --new-instance "file://$HOME/page.html" >/dev/null 2>&1 &
    waitFor browserIsThere
    xdotool windowsize "$window" 900 420
    xdotool windowmove "$window" 40 90
    readingBrowserWith=$tool
    waitFor browserAnswers
    # A browser that is slow at first may still have the copies of an earlier try before it: behind them is this key.
    xdotool key shift
    waitFor browserHasHandledItsKeys
}
browserAnswers() { [ "$("$readingBrowserWith" read-selection 2>/dev/null)" = 'brown fox' ]; }
browserHasHandledItsKeys() { [[ $(xdotool getwindowname "$window") != *opening* ]]; }
