#!/usr/bin/env bash
# The demo's stand-in for the master's control daemon. It plays the daemon's side of the files
# it shares with cambioIP.cgi, so that a change saved in the browser goes from pending to
# applied as on a real rack:
#   - it waits while the web holds the page lock (config/web.lock) during an Apply;
#   - a second or two after a unit was queued (a line "network.<name>" in
#     config/fileschanged.list) or the master was told to apply (config/command.msg), it
#     takes config/control.lock, "applies" each unit by clearing the pending flag
#     (CAMBIOSWEB) of its configuration document, empties the queue, removes the command
#     file and releases config/control.lock.
# It never changes anything else in a document.
#   demo/daemon.sh <rack root> [seconds before applying, default 2]
set -uo pipefail

root=${1:?rack root}
pausa=${2:-2}
config="$root/config"
cola="$config/fileschanged.list"
comando="$config/command.msg"

aviso() { echo "demo daemon: $*" >&2; }
# A sleep that a TERM cuts short.
espera() { sleep "$1" & wait $!; }

# Clears the pending flag of one configuration document. The document is held with the same
# lock cambioIP.cgi takes while it saves (flock on the file, checked again after the wait
# because a save renames a new file over it), and is replaced by a rename, so a save and the
# daemon never interleave.
aplica() {
  local documento=$1 fd temporal
  [ -f "$documento" ] || { aviso "no document $documento"; return; }
  while :; do
    exec {fd}<"$documento" || return
    flock "$fd"
    if [ "$(stat -L -c %i "/dev/fd/$fd")" = "$(stat -c %i "$documento" 2>/dev/null)" ]; then
      break
    fi
    exec {fd}<&-
  done
  if grep -q '<CAMBIOSWEB>1</CAMBIOSWEB>' "$documento"; then
    temporal=$(mktemp "$(dirname "$documento")/.$(basename "$documento").tmpXXXXXX")
    sed 's|<CAMBIOSWEB>1</CAMBIOSWEB>|<CAMBIOSWEB>0</CAMBIOSWEB>|' "$documento" > "$temporal" &&
      chmod --reference="$documento" "$temporal" && mv "$temporal" "$documento"
    rm -f "$temporal"
    aviso "applied $(basename "$documento")"
  fi
  exec {fd}<&-
}

trap 'exit 0' TERM INT
while espera 1; do
  [ -s "$cola" ] || [ -e "$comando" ] || continue
  # The operator is still applying (a lock left behind by a closed browser counts for 30 s).
  if [ -e "$config/web.lock" ] && (( $(date +%s) - $(stat -c %Y "$config/web.lock" 2>/dev/null || echo 0) < 30 )); then
    continue
  fi
  espera "$pausa"
  : > "$config/control.lock"
  if [ -s "$cola" ]; then
    # The queue is taken whole by a rename; a save appending meanwhile starts a new one. A
    # save that opened it before the rename appends under its flock, so the renamed file is
    # read under that flock too: it then holds every line that went into it.
    mv "$cola" "$cola.daemon"
    exec {tomada}<"$cola.daemon"
    flock "$tomada"
    while IFS= read -r linea; do
      if [[ $linea =~ ^network\.([0-9]{3}\.[0-9]{3}\.[0-9]{3}\.[0-9]{3})$ ]]; then
        aplica "$config/network.${BASH_REMATCH[1]}.xml"
      else
        aviso "ignored queue line: $linea"
      fi
    done <&"$tomada"
    rm -f "$cola.daemon"
    exec {tomada}<&-
  fi
  # The command is taken away before the master's document is applied: a master save made
  # meanwhile writes a new command file, which the next round applies.
  if [ -e "$comando" ] && mv "$comando" "$comando.daemon"; then
    aplica "$config/network.xml"
    rm -f "$comando.daemon"
  fi
  rm -f "$config/control.lock"
done
