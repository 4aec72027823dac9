#!/bin/bash
# SPDX-License-Identifier: BSD-3-Clause
# Starts the example agent under an SSH server of its own on 127.0.0.1, for the user who
# runs this, and stays until it is ended; then all its processes and temporary files are gone.
#
# usage: agent.sh [PORT [DIR]]
#   PORT  where the server listens; one is found by trying when it is not given or is 0
#   DIR   holds the keys and the agent's state, and is kept; a temporary folder by default
#
# Prints "port N", "user NAME", "key FILE" and the line of a client, once it has been tried.
# On a fresh Debian 12 it first installs what is missing; the service that the package
# openssh-server brings is not started. With QMODEL_AGENT, a command that runs an agent which
# is built already, nothing is installed or built.
# Exit status: 1 it cannot be started, 4 the server runs and does not let this user in.
set -euo pipefail

fail() {
  echo "agent.sh: $*" >&2
  exit 1
}

[ $# -le 2 ] || fail 'usage: agent.sh [PORT [DIR]]'
port=${1:-0}
case $port in
  *[!0-9]* | ??????*) fail "no port: $port" ;;
esac
[ "$port" -le 65535 ] || fail "no port: $port"
dir=${2:-}
case $dir in
  *[[:space:]%\"\'\\\$\`\#]*) fail "a folder that ssh's options cannot name: $dir" ;;
  '' | /*) ;;
  *) dir=$PWD/$dir ;;
esac
cd "$(dirname "$0")/.."
source=$PWD

run=$(mktemp -d)
server=
made_place=

# Stops a process with all that descend from it, and prints their numbers: what is stopped
# starts nothing, so that the second look, or the third, finds no more. What was found stays
# found: its parent may end in between.
stop_all() {
  local all=$1 before=
  while [ "$all" != "$before" ]; do
    # shellcheck disable=SC2086  # a list of words
    kill -STOP $all 2>/dev/null || true
    before=$all
    all=$(cat /proc/[0-9]*/stat 2>/dev/null | awk -v all="$all" '
      { pid = $1; sub(/^.*\) /, ""); parent[pid] = $2 }
      END {
        split(all, known, " ")
        for (i in known) found[known[i]]
        do {
          count = length(found)
          for (pid in parent) if (parent[pid] in found) found[pid]
        } while (count != length(found))
        for (pid in found) print pid
      }' | sort -n | tr '\n' ' ')
  done
  echo "$all"
}

# The server's sessions are in process groups of their own and outlive it otherwise. A killed
# agent has lost nothing: its datastore is whole at every moment.
finish() {
  trap '' INT TERM HUP
  if [ -n "$server" ] && kill -0 "$server" 2>/dev/null; then
    # shellcheck disable=SC2046  # a list of words
    kill -KILL $(stop_all "$server") 2>/dev/null || true
    wait "$server" 2>/dev/null || true
  fi
  if [ -n "$made_place" ] && flock -x -n 8; then
    rmdir /run/sshd 2>/dev/null || true
  fi
  rm -rf "$run"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM
trap 'exit 129' HUP

# Runs a step and shows its output only when it fails.
quietly() {
  "$@" >"$run/log" 2>&1 || { cat "$run/log" >&2; exit 1; }
}

if [ -z "${QMODEL_AGENT:-}" ]; then
  scripts/install-packages.sh build agent >&2
  quietly cmake -S . -B build/agent -G Ninja -DCMAKE_BUILD_TYPE=Release -DQMODEL_BUILD_TESTS=OFF
  quietly cmake --build build/agent --target netconf_agent
  QMODEL_AGENT=$(printf %q "$source/build/agent/examples/agent/netconf_agent")
fi
sshd=$(PATH=$PATH:/usr/sbin:/sbin command -v sshd) || fail 'no sshd: install openssh-server'

# Nobody else reads the keys; what was built above is for everyone.
umask 077
dir=${dir:-$run/state}
mkdir -p "$dir/state"
dir=$(cd "$dir" && pwd)
for key in host_key key; do
  [ -f "$dir/$key" ] || ssh-keygen -q -t ed25519 -N '' -C "example agent" -f "$dir/$key"
done
echo "* $(cut -d ' ' -f 1,2 "$dir/host_key.pub")" >"$dir/known_hosts"

# The server of root wants this folder, which is made when the machine starts that has the
# server as a service. Who has made it takes it away, unless another one uses it by then.
if [ "$(id -u)" -eq 0 ]; then
  if mkdir -m 755 /run/sshd 2>/dev/null; then made_place=yes; fi
  exec 8</run/sshd
  flock -s 8
fi

# The server passes no environment on, so what the agent needs stands in its command line.
user=$(id -un)
{
  printf 'exec %s %q' "$QMODEL_AGENT" "$dir/state"
  printf ' --models %q' "$source/examples/agent/models" "$source/examples/models"
  printf ' --module %s' router-interfaces router-system router-alarms
} >"$run/subsystem"
write_config() {
  cat >"$run/sshd_config" <<CONFIG
ListenAddress 127.0.0.1
Port $port
PidFile "$run/pid"
HostKey "$dir/host_key"
AuthorizedKeysFile "$dir/key.pub"
AllowUsers $user
AuthenticationMethods publickey
PermitRootLogin prohibit-password
UsePAM no
StrictModes no
UseDNS no
PrintMotd no
DisableForwarding yes
PermitTTY no
MaxStartups 100
Subsystem netconf /bin/bash "'$run/subsystem'"
CONFIG
}

# Listens on the port, or fails; the server writes its number once it listens.
start() {
  write_config
  "$sshd" -D -e -f "$run/sshd_config" 2>"$run/log" 8<&- &
  server=$!
  for _ in $(seq 600); do
    [ ! -s "$run/pid" ] || return 0
    kill -0 "$server" 2>/dev/null || break
    sleep 0.05
  done
  kill -KILL "$server" 2>/dev/null || true
  wait "$server" 2>/dev/null || true
  server=
  return 1
}

if [ "$port" -ne 0 ]; then
  start || { cat "$run/log" >&2; fail "no server on port $port"; }
else
  for _ in $(seq 20); do
    port=$((20000 + RANDOM))
    ! start || break
    grep -q 'Address already in use' "$run/log" || break
  done
  [ -n "$server" ] || { cat "$run/log" >&2; fail 'no server'; }
fi

client=(ssh -F none -i "$dir/key" -o IdentitiesOnly=yes -o "UserKnownHostsFile=$dir/known_hosts"
  -p "$port")
status=0
said=$(timeout 60 "${client[@]}" -n -o BatchMode=yes "$user@127.0.0.1" 'exit 7' 2>&1) || status=$?
if [ "$status" -ne 7 ]; then
  why=$(grep -o 'User .* not allowed because .*' "$run/log" | tail -n 1) ||
    why=${said:-ssh ended with status $status}
  echo "agent.sh: no login as $user: $why" >&2
  exit 4
fi

echo "port $port"
echo "user $user"
echo "key $dir/key"
printf '%q ' "${client[@]}"
printf '%s\n' "-s $user@127.0.0.1 netconf"
wait "$server"
