#!/usr/bin/env bash
# Serves the browser front (www/) and the sample rack through lighttpd, in the foreground,
# until Ctrl-C.
#   demo/run.sh <cambioIP.cgi> <port> <state folder>
# The rack's working copy lives in <state folder>/demo-root, made from demo/root on the
# first start, so that saves persist between runs and the repository stays clean.
set -euo pipefail

cgi=$(realpath "${1:?path of cambioIP.cgi}")
port=${2:-8080}
state=$(realpath -m "${3:?state folder}")
here=$(cd "$(dirname "$0")" && pwd)

[ -x "$cgi" ] || { echo "demo: $cgi is not built" >&2; exit 1; }
lighttpd=$(command -v lighttpd || echo /usr/sbin/lighttpd)
[ -x "$lighttpd" ] || { echo "demo: lighttpd is not installed (make deps)" >&2; exit 1; }

root="$state/demo-root"
if [ ! -d "$root" ]; then
  mkdir -p "$state"
  cp -a "$here/root" "$root.tmp"
  mv "$root.tmp" "$root"
  echo "demo: working copy of the sample rack made in $root"
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
setenv.add-environment = ( "CAMBIOIP_ROOT" => "$root"${CAMBIOIP_LOAD_PAUSE_MS:+, \"CAMBIOIP_LOAD_PAUSE_MS\" => \"$CAMBIOIP_LOAD_PAUSE_MS\"} )
CONF

echo "demo: serving the sample rack at http://127.0.0.1:$port/ (Ctrl-C stops)"
echo "demo: try  curl -s 'http://127.0.0.1:$port/cgi-bin/cambioIP.cgi?command=5'"
exec "$lighttpd" -D -f "$conf"
