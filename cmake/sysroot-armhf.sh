#!/usr/bin/env bash
# cmake/sysroot-armhf.sh <sysroot> <package>...
#
# Fetches Debian's armhf packages that the master's build links (libxml2 and what it pulls in)
# and unpacks them into <sysroot>, for cmake/armhf.cmake. apt works on a private state beside
# the sysroot (<sysroot>-apt: its own package lists, cache and an empty dpkg status), so nothing
# is installed on this machine and its dpkg database does not learn the armhf architecture.
# The C library and the C++ runtime are not fetched: they come with the cross compiler, in
# /usr/arm-linux-gnueabihf.
#
# A package that cannot be fetched is named and the script fails. Once every package is
# unpacked, <sysroot>/.packages lists them with their versions; a later run with the same
# packages does nothing, and the downloaded .deb files are kept for a rebuild of the sysroot.
#
# DEBIAN_MIRROR (default http://deb.debian.org/debian) and DEBIAN_SECURITY (default
# http://deb.debian.org/debian-security) choose the archives; the release is this machine's.
set -euo pipefail

if [ $# -lt 2 ]; then
    echo "usage: $0 <sysroot> <package>..." >&2
    exit 2
fi
sysroot=$(realpath -m "$1")
shift
if [ "$sysroot" = / ]; then
    echo "sysroot-armhf: the sysroot cannot be /" >&2
    exit 2
fi
packages=("$@")
stamp=$sysroot/.packages
wanted=$(printf '%s\n' "${packages[@]}" | sort -u)

if [ -f "$stamp" ] && [ "$(cut -d' ' -f1 "$stamp")" = "$wanted" ]; then
    echo "armhf sysroot complete: $sysroot ($(wc -l <"$stamp") packages)"
    exit 0
fi

release=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
if [ -z "$release" ]; then
    echo "sysroot-armhf: no VERSION_CODENAME in /etc/os-release, cannot tell the Debian release" >&2
    exit 1
fi
mirror=${DEBIAN_MIRROR:-http://deb.debian.org/debian}
security=${DEBIAN_SECURITY:-http://deb.debian.org/debian-security}
keyring=/usr/share/keyrings/debian-archive-keyring.gpg

state=$sysroot-apt
mkdir -p "$state/lists/partial" "$state/cache/archives/partial" "$state/sources.list.d" \
         "$state/preferences.d" "$state/debs"
: >"$state/status"
cat >"$state/sources.list" <<EOF
deb [arch=armhf signed-by=$keyring] $mirror $release main
deb [arch=armhf signed-by=$keyring] $mirror $release-updates main
deb [arch=armhf signed-by=$keyring] $security $release-security main
EOF

# The host's apt configuration (proxy, retries) still applies; its sources, pins, state and
# architectures do not.
options=(-o APT::Architecture=armhf -o APT::Architectures=armhf
         -o Dir::State="$state" -o Dir::State::Lists="$state/lists" -o Dir::State::status="$state/status"
         -o Dir::Cache="$state/cache"
         -o Dir::Etc::SourceList="$state/sources.list" -o Dir::Etc::SourceParts="$state/sources.list.d"
         -o Dir::Etc::Preferences="$state/preferences" -o Dir::Etc::PreferencesParts="$state/preferences.d")
if [ "$(id -u)" = 0 ]; then
    # The private folders belong to root; apt's download user could not write into them.
    options+=(-o APT::Sandbox::User=root)
fi

echo "Fetching the armhf package lists of Debian $release into $state"
if ! apt-get -q "${options[@]}" update >"$state/update.log" 2>&1; then
    # Without the release's own list nothing can be chosen. A list of the updates or security
    # archive that cannot be read (a mirror in the middle of a sync) leaves the release's
    # versions, which are as recent for a package that has had no update since; the packages
    # fetched and their versions are printed at the end.
    if ! compgen -G "$state/lists/*_dists_${release}_main_binary-armhf_Packages*" >/dev/null; then
        cat "$state/update.log" >&2
        echo "sysroot-armhf: cannot fetch the armhf package list of Debian $release from $mirror" >&2
        exit 1
    fi
    echo "sysroot-armhf: warning: some armhf package lists could not be fetched; the packages" \
         "come from the others:" >&2
    grep '^E: Failed to fetch' "$state/update.log" | cut -d' ' -f1-5 | sed 's/^/  /' >&2
fi

cd "$state/debs"
fetched=()
for package in $wanted; do
    version=$(apt-cache "${options[@]}" policy "$package:armhf" 2>/dev/null | awk '/Candidate:/ { print $2 }')
    if [ -z "$version" ] || [ "$version" = "(none)" ]; then
        echo "sysroot-armhf: cannot fetch $package:armhf: Debian $release has no such armhf package" >&2
        exit 1
    fi
    deb="${package}_${version//:/%3a}_armhf.deb"
    if [ ! -f "$deb" ]; then
        if ! apt-get -q "${options[@]}" download "$package:armhf=$version" >"$state/download.log" 2>&1; then
            cat "$state/download.log" >&2
            echo "sysroot-armhf: cannot fetch $package:armhf $version" >&2
            exit 1
        fi
        if [ ! -f "$deb" ]; then
            echo "sysroot-armhf: apt reported $package:armhf $version fetched, but $deb is missing" >&2
            exit 1
        fi
    fi
    fetched+=("$package $version $deb")
done

# Unpacked afresh, so that a package dropped from the list leaves nothing behind.
rm -rf "$sysroot"
mkdir -p "$sysroot"
for entry in "${fetched[@]}"; do
    read -r package version deb <<<"$entry"
    dpkg-deb -x "$deb" "$sysroot"
done
# The -dev packages link some libraries with absolute targets (/lib/arm-linux-gnueabihf/...);
# inside the sysroot they must point into it, not into this machine.
find "$sysroot" -type l -lname '/*' -print0 | while IFS= read -r -d '' link; do
    ln -sfn "$(realpath -m --relative-to="$(dirname "$link")" "$sysroot$(readlink "$link")")" "$link"
done
for entry in "${fetched[@]}"; do
    read -r package version deb <<<"$entry"
    echo "$package $version"
done >"$stamp"
sed 's/^/  /' "$stamp"
echo "armhf sysroot: $sysroot ($(du -sh --apparent-size "$state/debs" | cut -f1) of packages)"
