#!/usr/bin/env bash
# Hosts and machines of both systems, in all four pairs: each host shows the same lines and writes the same
# points, byte for byte, whatever system its machine is on.
set -euo pipefail

native=${1:?usage: cross_system.sh NATIVE_BIN WINDOWS_BIN WINE MACHINE_FILE}
windows=${2:?}
wine=${3:?}
machine=${4:?}

work=$(mktemp -d)
simulator=
leave() {
    [ -z "$simulator" ] || kill "$simulator" 2>/dev/null || true
    rm -rf "$work"
}
trap leave EXIT

for program in "$native/zendrix-sim" "$native/zxhost" "$windows/zendrix-sim.exe" "$windows/zxhost.exe"; do
    [ -e "$program" ] || { echo "$program is missing: build it first" >&2; exit 1; }
done

# on SYSTEM PROGRAM [ARGUMENT]...: becomes that system's program.
on() {
    local system=$1 program=$2
    shift 2
    if [ "$system" = linux ]; then
        exec "$native/$program" "$@"
    else
        exec "$wine" "$windows/$program.exe" "$@"
    fi
}

# A machine on SYSTEM for one client, in $simulator and $port. A program under Wine is no child of ours, so each
# machine ends with its client.
start_machine() {
    local said=$work/listening
    : >"$said"
    (on "$1" zendrix-sim --port 0 --machine "$machine" --speed max --seed 7 --once) >"$said" &
    simulator=$!
    for ((i = 0; i < 600; ++i)); do
        [ ! -s "$said" ] || break
        sleep 0.1
    done
    [ -s "$said" ] || { echo "no machine on $1" >&2; exit 1; }
    ! grep -q $'\r' "$said" || { echo "the machine on $1 ends its lines with CR LF" >&2; exit 1; }
    port=$(sed -n 's/^listening on .*:\([0-9]*\)$/\1/p' "$said")
}

cat >"$work/part.zx" <<'SCRIPT'
init
info
axes
set speed=20
move x=35 y=-5 c=0
move z=20
scan circle --centre 10 -5 20 --radius 25 --csv ring.csv --xyz ring.xyz --ply ring.ply --picture ring.svg --fit circle
scan z=25 --data x,z,deflection
get x y z c --format json
move q=1
SCRIPT

# measure HOST_SYSTEM MACHINE_SYSTEM: leaves what the host said and wrote in the folder of that name.
measure() {
    local folder=$work/$1-$2
    mkdir "$folder"
    start_machine "$2"
    local status=0
    (
        cd "$folder"
        export ZENDRIX_ERRORLOG=$work/error.log ZENDRIX_TRACE=$work/trace.log
        on "$1" zxhost --host 127.0.0.1 --port "$port" --lines run ../part.zx
    ) >"$folder/out" 2>"$folder/err" || status=$?
    echo "$status" >"$folder/status"
    wait "$simulator" || { echo "the machine on $2 ended with an error" >&2; exit 1; }
    simulator=
    # The time of day (and with it the sum over all bytes) and the port differ with every run.
    sed -i -E 's/20[0-9-]+T[0-9:]+Z/TIME/; s/, crc32 [0-9a-f]+$/, SUM/' "$folder"/ring.*
    sed -i "s/127\.0\.0\.1:$port/MACHINE/" "$folder/out" "$folder/err"
}

measure linux linux
points=$(wc -l <"$work/linux-linux/ring.xyz")
[ "$points" -gt 3000 ] || { echo "the machine gave $points points only"; cat "$work/linux-linux/err"; exit 1; } >&2
for pair in "windows linux" "linux windows" "windows windows"; do
    # shellcheck disable=SC2086
    measure $pair
    diff -r "$work/linux-linux" "$work/${pair/ /-}" || { echo "differs: host and machine on $pair" >&2; exit 1; }
    echo "host and machine on $pair: the same lines, and the same $points points"
done
