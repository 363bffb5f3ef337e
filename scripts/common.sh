# Shared by demo, test and bench/idle.sh; sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Installs what scripts/packages.txt names and this machine lacks.
install_missing() {
    local missing=() package
    while read -r package; do
        case "$package" in '' | '#'*) continue ;; esac
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
    done <scripts/packages.txt
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing: ${missing[*]}"
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -q
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
}

# build <preset> [target...]
build() {
    local preset=$1
    shift
    cmake --preset "$preset" >"/dev/null"
    if [ $# -gt 0 ]; then
        cmake --build --preset "$preset" --target "$@"
    else
        cmake --build --preset "$preset"
    fi
}

fail() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

bin=$PWD/build/release/bin
cloud='' program=''

# Ends what was started; for a trap.
end() {
    [ -z "$program" ] || kill "$program" 2>/dev/null || true
    [ -z "$cloud" ] || kill "$cloud" 2>/dev/null || true
    wait
}

# install_example <home>: builds the release and puts it there with the example installation. What was changed there
# by hand stays.
install_example() {
    build release tidewell nabto_client_api tidewell-cloud E D KHelper
    mkdir -p "$1/log"
    cp -rn installation/. "$1/"
    cp -n sim/cloud/cloud.ini "$1/"
    cp -r "$bin/libnabto_client_api.so" "$bin/libKHelper.so" "$bin/share" "$1/"
}

# start_cloud <home>: starts the cloud stand-in for that installation, and sets cloud to its process id.
start_cloud() {
    local ready=$1/log/cloud-port
    rm -f "$ready"
    "$bin/tidewell-cloud" --config "$1/cloud.ini" --port 0 --ca-file "$1/cfg/cloud-ca.pem" --ready-file "$ready" &
    cloud=$!
    for _ in $(seq 100); do
        [ -s "$ready" ] || ! kill -0 "$cloud" 2>/dev/null && break
        sleep 0.1
    done
    [ -s "$ready" ] || fail "the cloud stand-in did not start"
    sed -i "s/^ApiPort=.*/ApiPort=$(cat "$ready")/" "$1"/cfg/system_*.inn
}
