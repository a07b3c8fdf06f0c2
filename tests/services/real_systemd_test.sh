#!/bin/bash
# real_systemd_test.sh DRIVER: boots this machine's own systemd in a container on a throw-away copy of this machine's
# root, and lets DRIVER restart the two services there. Needs root and the right to make containers; without them it
# says so and ends with 77, "skipped". Nothing of the machine changes.
set -euo pipefail

readonly driver=$1
readonly manager=(org.freedesktop.systemd1 /org/freedesktop/systemd1 org.freedesktop.systemd1.Manager)
readonly limit=60 # seconds, for each wait

skip() {
  echo "skipped: $*"
  exit 77
}

[ "$(id -u)" -eq 0 ] || skip "booting a container takes root"
for tool in systemd-nspawn dbus-daemon busctl setpriv; do
  command -v "$tool" >/dev/null || skip "there is no $tool"
done
[ -x /lib/systemd/systemd ] || skip "there is no systemd to boot"

# The bus and the driver are below it, for a caller without rights too.
directory=$(mktemp -d)
chmod 755 "$directory"
mkdir "$directory"/{bus,units,overlay}
container=
# shellcheck disable=SC2317 # reached through the trap
clean_up() {
  if [ -n "$container" ]; then
    # The second signal makes a container that is still shutting down end at once.
    kill -TERM "$container" 2>/dev/null || true
    sleep 0.2
    kill -TERM "$container" 2>/dev/null || true
    wait "$container" 2>/dev/null || true
  fi
  umount "$directory/overlay/root" 2>/dev/null || true
  umount "$directory/overlay" 2>/dev/null || true
  rm -rf --one-file-system "$directory"
}
trap clean_up EXIT
install -m 755 "$driver" "$directory/driver"

mount -t tmpfs tmpfs "$directory/overlay" 2>/dev/null || skip "this machine lets nobody mount"
mkdir "$directory"/overlay/{changes,work,root}
mount -t overlay overlay -o "lowerdir=/,upperdir=$directory/overlay/changes,workdir=$directory/overlay/work" \
  "$directory/overlay/root" 2>/dev/null || skip "this machine has no overlay file system"

export DBUS_SYSTEM_BUS_ADDRESS=unix:path=$directory/bus/system_bus_socket

bus() { busctl --address="$DBUS_SYSTEM_BUS_ADDRESS" "$@"; }

boot() {
  systemd-nspawn --quiet --directory="$directory/overlay/root" --boot --console=pipe --register=no --keep-unit \
    --private-network --machine="restart$$" --bind="$directory/bus:/run/dbus" \
    --bind="$directory/units:/usr/local/lib/systemd/system" systemd.unit=basic.target \
    </dev/null >"$directory/console" 2>&1 &
  container=$!
  until bus get-property "${manager[@]}" Version >/dev/null 2>&1; do
    if ! kill -0 "$container" 2>/dev/null; then
      container=
      cat "$directory/console"
      skip "this machine cannot boot a container"
    fi
    [ "$SECONDS" -lt "$limit" ] || { cat "$directory/console"; fail "it was not up after $limit seconds"; }
    sleep 0.05
  done
}

# unit NAME [LINE...]: gives the unit these lines, each as SECTION.KEY=VALUE, beside what every unit of this test has.
unit() {
  local file=$directory/units/$1.service
  printf '[Service]\nExecStart=/bin/sleep infinity\n' >"$file"
  shift
  local line
  for line in "$@"; do printf '[%s]\n%s\n' "${line%%.*}" "${line#*.}" >>"$file"; done
}

property() {
  bus get-property org.freedesktop.systemd1 "/org/freedesktop/systemd1/unit/$1_2eservice" \
    org.freedesktop.systemd1.Unit "$2" | cut -d'"' -f2
}

# await NAME STATE
await() {
  until [ "$(property "$1" ActiveState)" = "$2" ]; do
    [ "$SECONDS" -lt "$limit" ] || fail "$1 is $(property "$1" ActiveState), not $2"
    sleep 0.02
  done
}

# begin TITLE: both units good and running.
begin() {
  title=$1
  SECONDS=0
  unit QLXSVC
  unit QLXLOGSVC
  bus call "${manager[@]}" Reload >/dev/null
  local name
  for name in QLXLOGSVC QLXSVC; do
    bus call "${manager[@]}" StartUnit ss "$name.service" replace >/dev/null
    await "$name" active
  done
}

# change NAME [LINE...]: as unit, in force from now on.
change() {
  unit "$@"
  bus call "${manager[@]}" Reload >/dev/null
}

fail() {
  echo "FAILED: $title: $*"
  exit 1
}

# expect LINE...: the driver reports these between "progress 0" and "progress 2".
expect() {
  local said wanted
  said=$("${caller[@]}" "$directory/driver")
  wanted=$(printf '%s\n' "progress 0" "$@" "progress 2")
  [ "$said" = "$wanted" ] || fail $'the restart reported\n'"$said"$'\nnot\n'"$wanted"
}

# expect_states FRAMEWORK LOGGING
expect_states() {
  local states
  states="$(property QLXSVC ActiveState) $(property QLXLOGSVC ActiveState)"
  [ "$states" = "$1 $2" ] || fail "the states are $states, not $1 $2"
  echo "passed: $title"
}

readonly again="Restart Quillon services manually."
readonly framework_failed="Quillon Framework Service failed to stop.|$again"
readonly logging_failed="Quillon Logging Service failed to stop.|$again"
readonly restarted="Quillon services restarted.|"
caller=(env)
title="the container"
boot

begin "both services are restarted"
before=$(bus get-property org.freedesktop.systemd1 /org/freedesktop/systemd1/unit/QLXSVC_2eservice \
  org.freedesktop.systemd1.Service ExecMainPID)
expect "progress 1" "$restarted"
after=$(bus get-property org.freedesktop.systemd1 /org/freedesktop/systemd1/unit/QLXSVC_2eservice \
  org.freedesktop.systemd1.Service ExecMainPID)
[ "$before" != "$after" ] || fail "the framework service still runs as the process it was"
expect_states active active

begin "stopped services are started"
for name in QLXSVC QLXLOGSVC; do
  bus call "${manager[@]}" StopUnit ss "$name.service" replace >/dev/null
  await "$name" inactive
done
expect "progress 1" "$restarted"
expect_states active active

begin "a service that takes its time to stop is waited for"
change QLXSVC "Service.ExecStop=/bin/sleep 1"
expect "progress 1" "$restarted"
expect_states active active

begin "a service that has to be killed ends in failed and is started again"
change QLXSVC "Service.ExecStop=/bin/sleep 60" "Service.TimeoutStopSec=1"
expect "progress 1" "$restarted"
expect_states active active

begin "a framework service that refuses to stop leaves both running"
change QLXSVC "Unit.RefuseManualStop=yes"
expect "progress 1" "Stop QLX Service GetLastError = 22" "$framework_failed"
expect_states active active

begin "a logging service that refuses to stop leaves the framework stopped"
change QLXLOGSVC "Unit.RefuseManualStop=yes"
expect "progress 1" "Stop Log Service GetLastError = 22" "$logging_failed"
expect_states inactive active

begin "a logging service that refuses to start leaves both stopped"
change QLXLOGSVC "Unit.RefuseManualStart=yes"
expect "progress 1" "Start Log Service GetLastError = 22" "$logging_failed"
expect_states inactive inactive

begin "a framework service that does not come up is an input/output error"
change QLXSVC "Unit.ConditionPathExists=/none"
expect "progress 1" "Start MZP Service GetLastError = 5" "$framework_failed"
expect_states inactive active

begin "a logging service that systemd does not know is told by its start"
bus call "${manager[@]}" StopUnit ss QLXLOGSVC.service replace >/dev/null
await QLXLOGSVC inactive
rm "$directory/units/QLXLOGSVC.service"
bus call "${manager[@]}" Reload >/dev/null
expect "progress 1" "Start Log Service GetLastError = 2" "$logging_failed"
expect_states inactive inactive

begin "a caller without rights is denied"
caller=(setpriv --reuid=65534 --regid=65534 --clear-groups)
expect "progress 1" "Stop QLX Service GetLastError = 13" "$framework_failed"
expect_states active active
