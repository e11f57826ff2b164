#!/usr/bin/env bash
# checks SARIF reports (of PROGRAM, if given) with the validator that npm has for them
program=${1:-build/test/cli/tremvik}
sarif=$PWD/build/sarif
multitool=$sarif/npm/node_modules/@microsoft/sarif-multitool-linux/Sarif.Multitool

# Its program for Linux comes without the right to be run.
fetch_multitool() {
  [[ -x $multitool ]] && return
  npm install --silent --no-audit --no-fund --ignore-scripts --prefix "$sarif/npm" @microsoft/sarif-multitool@5 &&
    chmod u+x "$multitool"
}

# Reports on all samples, on a file for each rule and on one with a name that is no URI.
make_reports() {
  rm -rf "$sarif/files" && mkdir -p "$sarif/files" && "$program" exemplo --todas-as-regras "$sarif/files/regras" --pasta "$sarif/casa"
  cp samples/recusado-letra-em-valor.txt "$sarif/files/a b:\"ç%.txt"
  "$program" validar samples "$sarif/files" nada.txt --padrao '*.txt' --todos --relatorio sarif --saida "$sarif/todos.sarif" \
    --pasta "$sarif/casa"
  "$program" validar samples/aceito.txt --relatorio sarif --saida "$sarif/aceito.sarif" --pasta "$sarif/casa"
  sed 's/"startLine":[0-9]*/"startLine":0/' "$sarif/todos.sarif" >"$sarif/errado.sarif"
}

# errors REPORT : how many errors the validator finds in it. It wants no library for languages.
errors() {
  DOTNET_SYSTEM_GLOBALIZATION_INVARIANT=1 "$multitool" validate "$sarif/$1.sarif" --output "$sarif/$1-achados.sarif" \
    --log ForceOverwrite >"$sarif/$1.log" 2>&1
  python3 - "$sarif/$1-achados.sarif" <<'PYTHON'
import json, sys
run, = json.load(open(sys.argv[1], encoding="utf-8-sig"))["runs"]
told = run.get("results", []) + run["invocations"][0].get("toolConfigurationNotifications", [])
print(sum(one.get("level", "warning") == "error" for one in told))
PYTHON
}

# The last one must be found wrong, else the validator did not look.
check_reports() {
  local right wrong
  right=$(($(errors todos) + $(errors aceito)))
  wrong=$(errors errado)
  echo "errors in the reports: $right; in a report that is wrong: $wrong"
  ((right == 0 && wrong > 0))
}

[[ -x $program ]] || fail_usage "sarif wants a built command line, not \"$program\""
if ! command -v npm >/dev/null && ! (need npm) >/dev/null 2>&1; then
  echo "  left out: the check of SARIF reports, as npm is not to be had"
elif ! run_logged sarif-fetch "SARIF: fetch the validator" fetch_multitool; then
  echo "  left out: the check of SARIF reports, as npm does not give the validator"
else
  step sarif-reports "SARIF: make reports" make_reports
  step sarif "SARIF: the validator" check_reports
fi
