# Steps: one line on the screen for each, its whole output in build/log/, the end of that shown when it fails.

log_dir=build/log
failed_steps=()

fail() {
  echo "dev: $*" >&2
  exit 1
}

fail_usage() {
  echo "dev: $*; try ./dev help" >&2
  exit 2
}

# run_logged NAME LABEL COMMAND... : runs COMMAND with its output in the log NAME and prints the step's line.
# Returns the command's status.
run_logged() {
  local name=$1 label=$2 start=$SECONDS status=0
  shift 2
  mkdir -p "$log_dir"
  [[ -t 1 ]] && printf '%-58s ...' "$label"
  "$@" >"$log_dir/$name.log" 2>&1 </dev/null || status=$?
  [[ -t 1 ]] && printf '\r\033[K'
  if ((status == 0)); then
    printf '%-58s ok (%d s)\n' "$label" $((SECONDS - start))
  else
    printf '%-58s FAILED (%d s)\n' "$label" $((SECONDS - start))
    echo "--- the end of $log_dir/$name.log ---"
    tail -n "${TREMVIK_LOG_LINES:-60}" "$log_dir/$name.log"
    echo "---"
  fi
  return "$status"
}

# step NAME LABEL COMMAND... : a step that the following ones need; a failure ends everything.
step() {
  run_logged "$@" || exit 1
}

# check NAME LABEL COMMAND... : a step on its own; a failure is remembered and the next ones still run.
check() {
  run_logged "$@" && return
  failed_steps+=("$2")
  return 1
}
