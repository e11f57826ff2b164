#!/usr/bin/env bash
# builds the program, imports a sample into a fresh database and shows a refusal
need "${packages_build[@]}"
build_preset release "program"

program=build/release/cli/tremvik
folder=build/demo
rm -rf "$folder"

# show STATUS ARGUMENTS... : a call of the program as a user would type it; it must end with STATUS.
show() {
  local expected=$1 status=0
  shift
  echo
  echo "\$ tremvik $*"
  "$program" "$@" </dev/null || status=$?
  ((status == expected)) || fail "tremvik $1 ended with $status, not $expected"
}

echo
echo "== A faulty file: the message, and where the fault is"
show 1 validar samples/recusado-letra-em-valor.txt --pasta "$folder"
echo
echo "== An accepted file: its declarations go into the database in $folder"
show 0 importar samples/aceito.txt --pasta "$folder"
show 0 listar --pasta "$folder"
echo
echo "== The same file again: they are already held"
show 1 importar samples/aceito.txt --pasta "$folder"
cat <<END

What to try next:
  $program --help
  $program validar samples/*.txt
  $program listar 271.939.199.527 04/2014 --pasta $folder
  $program exemplo --declaracoes 3 --saida build/exemplo.txt --sobrescrever
  $program importar build/exemplo.txt --pasta $folder --json
The database is $folder/tremvik.db; docs/store.md describes its tables.
END
