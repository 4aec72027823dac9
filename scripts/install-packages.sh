#!/bin/sh
# SPDX-License-Identifier: BSD-3-Clause
# Installs the Debian packages of the named groups (see packages.txt) that are
# missing. Needs root or sudo only when something is missing. No service that a package
# brings is started, and the SSH server is not at the next start of the machine either:
# only its program is wanted.
set -eu
here=$(cd "$(dirname "$0")" && pwd)

missing=
for group in "$@"; do
  for package in $(awk -v group="$group" '$1 == group { print $2 }' "$here/packages.txt"); do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
      missing="$missing $package"
  done
done
[ -n "$missing" ] || exit 0

echo "installing:$missing"
as_root=
[ "$(id -u)" -eq 0 ] || as_root=sudo
policy=/usr/sbin/policy-rc.d
if [ ! -e "$policy" ]; then
  trap '$as_root rm -f "$policy"' EXIT
  trap 'exit 1' INT TERM HUP
  printf '#!/bin/sh\nexit 101\n' | $as_root tee "$policy" >/dev/null
  $as_root chmod 755 "$policy"
fi
$as_root apt-get update -qq
# shellcheck disable=SC2086  # a list of words
$as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing
case $missing in
  *openssh-server*) $as_root systemctl --quiet disable ssh.service ssh.socket 2>/dev/null || true ;;
esac
