#!/usr/bin/env bash
# rewrites docs/layout.md from the record layouts and docs/regras.md from the catalogue of rules and their examples
need "${packages_test[@]}"
step configure-test "documentation: configure" cmake --preset test
step program "documentation: the program that makes the examples" cmake --build build/test --target tremvik
step layout-doc "documentation: docs/layout.md" cmake --build build/test --target layout_md
rules_page() { python3 -B tools/rules_page.py build/test/cli/tremvik >docs/regras.md; }
step rules-page "documentation: docs/regras.md" rules_page
