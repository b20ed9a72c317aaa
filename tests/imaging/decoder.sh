#!/bin/bash
# Plays the image decoder for DecoderProcessTest: does what the text in the file on descriptor 3 says.
record="4 2 $(printf '%064d' 0)"
file=$(readlink /proc/self/fd/3)

inherited_nothing() {
    # Of ls, descriptor 1 is a pipe of this shell, and 4 the folder that it lists.
    [ "$(echo $(ls /proc/self/fd))" = "0 1 2 3 4" ] &&
        [ "$(readlink /proc/self/fd/0 /proc/self/fd/2 | sort -u)" = /dev/null ] &&
        grep -q '^SigBlk:[[:space:]]*0*$' /proc/self/status &&
        grep -q '^SigIgn:.*[08]0000000$' /proc/self/status && # 32 and above are the C library's own
        [ -z "$(tr -d '\0' <"/proc/$$/environ")" ]
}

# Leaves a file beside the picture and waits for that of another decoder.
met_another() {
    meeting=${file%/*}/meeting
    mkdir -p "$meeting"
    : >"$meeting/$$"
    for _ in $(seq 1000); do
        [ "$(ls "$meeting" | wc -l)" -lt 2 ] || return 0
        sleep 0.01
    done
    return 1
}

case $(cat "$file") in
    say*) tail -c +5 "$file" ;;
    "hang up") exec sleep 100 >&- ;;
    hang*) exec sleep 100 ;;
    flood) exec yes "$record" ;;
    touch) printf touch >"$file" && echo "$record" ;; # the same again
    look) inherited_nothing && echo "$record" ;;
    meet) met_another && echo "$record" ;;
    alone) [ "$1" = alone ] && mkdir "${file%/*}/busy" && sleep 0.01 && rmdir "${file%/*}/busy" && echo "$record" ;;
esac
