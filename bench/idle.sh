#!/usr/bin/env bash
# What the program takes of one core while it logs and nobody touches it: release build, offscreen, at the default
# intervals of 50 ms between two questions and 2000 ms between two cycles, in a home of its own, build/idle.
#   bench/idle.sh [seconds]   60 if missing
. "$(dirname "$0")/../scripts/common.sh"
install_missing
seconds=${1:-60}
home=$PWD/build/idle
rm -rf "$home"
install_example "$home"
sed -i 's/^DelayBetweenQuestions=.*/DelayBetweenQuestions=50/; s/^PauseTime=.*/PauseTime=2000/' "$home"/cfg/system_*.inn
trap end EXIT
start_cloud "$home"

# User and system time of the program so far, in ticks.
ticks() {
    local stat
    stat=$(cat "/proc/$program/stat" 2>/dev/null) || fail "the program ended early"
    # shellcheck disable=SC2086 # the words behind the name, which ends with ")"
    set -- ${stat##*) }
    echo $((${12} + ${13}))
}

TIDEWELL_HOME=$home QT_QPA_PLATFORM=offscreen:configfile=scripts/offscreen.json \
    "$bin/tidewell" -devid 410000000001 -LoginUserPW "service;tidewell" &
program=$!
sleep 15 # until it has signed in, linked and begun to log
before=$(ticks)
sleep "$seconds"
after=$(ticks)
kill -TERM "$program"
wait "$program" || fail "the program ended with code $?"
program=''

datalog=$(find "$home/log/systemlog" -name 'datalog*.csv' | sort | tail -n 1)
[ -n "$datalog" ] || fail "the program left no datalog in $home/log/systemlog"
rows=$(grep -c '^[0-9]' "$datalog" || true)
[ "$rows" -ge $((seconds / 5)) ] || fail "only $rows rows in $datalog, so it was not logging"
LC_ALL=C awk -v ticks=$((after - before)) -v rate="$(getconf CLK_TCK)" -v seconds="$seconds" -v rows="$rows" 'BEGIN {
    printf "CPU time in %d s of logging (%d rows in all): %.2f s, %.2f %% of one core\n",
        seconds, rows, ticks / rate, 100 * ticks / rate / seconds
}'
