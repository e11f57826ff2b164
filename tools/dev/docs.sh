#!/usr/bin/env bash
# rewrites docs/layout.md from the record layouts
need "${packages_test[@]}"
step configure-test "documentation: configure" cmake --preset test
step layout-doc "documentation: docs/layout.md" cmake --build build/test --target layout_md
