#!/bin/sh
# Runs a command in a network of its own, whose only interface is the loop-back one, so that nothing that the
# command sends can leave this machine.
set -eu

if [ "${1:-}" = --inside ]; then
    shift
    ip link set lo up multicast on
    ip route add 224.0.0.0/4 dev lo
    ip -6 route add local ff00::/8 dev lo table local
    exec "$@"
fi

if ! unshare -rn true; then
    echo "These tests need a network namespace of their own, and this system does not permit one (unshare -rn)." >&2
    exit 1
fi
exec unshare -rn "$0" --inside "$@"
