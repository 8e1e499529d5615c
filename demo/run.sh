#!/usr/bin/env bash
# Serves the browser front (www/) and a sample rack through lighttpd, with the demo's
# stand-in for the control daemon (demo/daemon.sh), until Ctrl-C.
#   demo/run.sh <cambioIP.cgi> <port> <state folder> [rack: qam (default), cofdm, isdbt, cofdmqamb]
# The pages show the units of the master's output family, so each family has its own rack
# (demo/racks/<rack>). Its working copy lives in <state folder>/demo-<rack>, made from the
# rack on the first start, so that saves persist between runs and the repository stays clean.
# The pause after each document load is 20 ms here (CAMBIOIP_LOAD_PAUSE_MS overrides it);
# on a master it is the units' own 250 ms.
set -euo pipefail

pause=${CAMBIOIP_LOAD_PAUSE_MS:-20}
cgi=$(realpath "${1:?path of cambioIP.cgi}")
port=${2:-8080}
state=$(realpath -m "${3:?state folder}")
rack=${4:-qam}
here=$(cd "$(dirname "$0")" && pwd)
[ -d "$here/racks/$rack" ] || { echo "demo: no rack $rack (demo/racks: $(ls "$here/racks" | tr '\n' ' '))" >&2; exit 1; }

[ -x "$cgi" ] || { echo "demo: $cgi is not built" >&2; exit 1; }
lighttpd=$(command -v lighttpd || echo /usr/sbin/lighttpd)
[ -x "$lighttpd" ] || { echo "demo: lighttpd is not installed (make deps)" >&2; exit 1; }

root="$state/demo-$rack"
if [ ! -d "$root" ]; then
  mkdir -p "$state"
  rm -rf "$root.tmp"
  cp -a "$here/racks/$rack" "$root.tmp"
  mv "$root.tmp" "$root"
  echo "demo: working copy of the $rack rack made in $root"
fi

conf="$state/lighttpd-demo.conf"
cat > "$conf" <<CONF
server.document-root = "$here/../www"
server.bind          = "127.0.0.1"
server.port          = $port
server.modules      += ( "mod_alias", "mod_cgi", "mod_setenv" )
server.errorlog      = "$state/lighttpd-error.log"
index-file.names     = ( "index.html" )
mimetype.assign      = ( ".html" => "text/html; charset=utf-8", ".css" => "text/css", ".js" => "text/javascript",
                         ".png" => "image/png", ".gif" => "image/gif", ".svg" => "image/svg+xml" )
# The browser's copy of the output tables is written by the build beside the CGI.
alias.url            = ( "/cgi-bin/cambioIP.cgi" => "$cgi",
                         "/js/tablas.js" => "$(dirname "$cgi")/www/js/tablas.js" )
\$HTTP["url"] =~ "^/cgi-bin/" {
  cgi.assign = ( ".cgi" => "" )
}
# The CGI finds the rack's fixed paths (/config, /upload, /root) under this folder.
# The demo's short pause after each document load keeps its pages fast.
setenv.add-environment = ( "CAMBIOIP_ROOT" => "$root", "CAMBIOIP_LOAD_PAUSE_MS" => "$pause" )
CONF

# Both run in the background so that a TERM or Ctrl-C given to this script stops them both.
"$here/daemon.sh" "$root" &
daemon=$!
"$lighttpd" -D -f "$conf" &
server=$!
trap 'kill "$server" "$daemon" 2>/dev/null; wait; exit 0' INT TERM
echo "demo: serving the $rack rack at http://127.0.0.1:$port/ (Ctrl-C stops)"
echo "demo: pause after each document load: $pause ms (a master waits 250 ms)"
echo "demo: a stand-in control daemon applies queued changes after 2 s"
echo "demo: try  curl -s 'http://127.0.0.1:$port/cgi-bin/cambioIP.cgi?command=5'"
wait "$server"
kill "$daemon" 2>/dev/null
wait
