#!/bin/bash
# user_namespace_test.sh QLXSIM DRIVER: an ordinary user who is root of a user namespace runs the simulator there, and
# DRIVER restarts its services. Ends with 77, "skipped", where the system forbids user namespaces.
set -euo pipefail

# Copies: an ordinary user may not be able to reach the build.
directory=$(mktemp -d)
trap 'rm -rf "$directory"' EXIT
install -m 755 "$1" "$directory/qlxsim"
install -m 755 "$2" "$directory/driver"
chmod 777 "$directory"

ordinary=()
if [ "$(id -u)" -eq 0 ]; then ordinary=(setpriv --reuid=65534 --regid=65534 --clear-groups); fi
if ! "${ordinary[@]}" unshare --map-root-user true; then
  echo "skipped: this system forbids user namespaces"
  exit 77
fi

"${ordinary[@]}" unshare --map-root-user bash -eu -s "$directory" <<'INSIDE'
cd "$1"
[ "$(id -u)" -eq 0 ]
printf '<MZP><Logging_Configuration><TCP_Port>0</TCP_Port></Logging_Configuration></MZP>' >QLXConfig.xml
./qlxsim --config QLXConfig.xml --dir run >said 2>&1 &
simulator=$!
until grep -qx ready said; do kill -0 "$simulator"; sleep 0.05; done
. run/environment
./driver >restart
kill -INT "$simulator"
wait "$simulator"
INSIDE

cat "$directory/said" "$directory/restart"
grep -qxF "Quillon services restarted.|" "$directory/restart"
