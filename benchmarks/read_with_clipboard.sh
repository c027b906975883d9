#!/bin/sh
# Reads the selection of the window in front the way a shell script would: save the clipboard, press Control+C, read the
# clipboard, put it back.
saved=$(xclip -selection clipboard -out 2>/dev/null)
xdotool key --clearmodifiers ctrl+c
xclip -selection clipboard -out
printf %s "$saved" | xclip -selection clipboard -in >/dev/null 2>&1
