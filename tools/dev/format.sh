#!/usr/bin/env bash
# formats every C++ source and rewrites the generated documentation
need "${packages_test[@]}"
step format "formatting the C++ sources" clang-format-14 -i $(sources)
source tools/dev/docs.sh
