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
echo "== An accepted file goes into the database in $folder"
show 0 importar samples/aceito.txt --pasta "$folder"
show 0 listar --pasta "$folder"
echo
echo "== The same file again: its declarations are already held"
show 1 importar samples/aceito.txt --pasta "$folder"
echo
echo "== A faulty file: the message, and where the fault is"
show 1 validar samples/recusado.txt --pasta "$folder"
cat <<END

What to try next:
  $program validar samples/*.txt --pasta $folder
  $program exemplo --declaracoes 3 --saida build/exemplo.txt
  $program importar build/exemplo.txt --pasta $folder --json
  $program --help
The database is $folder/tremvik.db; docs/store.md describes its tables.
END
