#!/usr/bin/env bash
# builds the command line, optimized, as build/release/cli/tremvik
need "${packages_build[@]}"
build_preset release "program"
echo "built: build/release/cli/tremvik"
