#!/bin/bash
# Installs what is missing, builds, and runs the tests.
# --sanitize as the first argument: with the address and undefined-behaviour sanitizers.
# Further arguments go to ctest, e.g. ./test.sh -R slip_store
. "$(dirname "$0")/cmake/setup.sh"

preset=release folder=build
if [ "${1:-}" = --sanitize ]; then
    preset=sanitize folder=build-sanitize
    shift
fi

install_packages
build "$preset" "$folder"
exec ctest --preset "$preset" "$@"
