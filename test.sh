#!/bin/bash
# Installs what is missing, builds, and runs the tests.
# --dev as the first argument: warnings are errors; --sanitize: that, with the address and undefined-behaviour
# sanitizers.
# Further arguments go to ctest, e.g. ./test.sh -R slip_store
. "$(dirname "$0")/cmake/setup.sh"

preset=release folder=build
case "${1:-}" in
    --dev) preset=dev folder=build-dev && shift ;;
    --sanitize) preset=sanitize folder=build-sanitize && shift ;;
esac

install_packages
build "$preset" "$folder"
exec ctest --preset "$preset" "$@"
