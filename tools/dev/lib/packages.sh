# Set-up: the Debian packages that a verb needs, installed once.

packages_build=(g++ cmake ninja-build libsqlite3-dev libcli11-dev nlohmann-json3-dev libfmt-dev libutfcpp-dev)
packages_test=("${packages_build[@]}" libgtest-dev libgmock-dev pkg-config python3 python3-jsonschema
  clang-format-14 clang-tidy-14)

package_missing() {
  [[ $(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null) != installed ]]
}

# need PACKAGE... : installs those that are missing; says so only when there is something to do.
need() {
  local package missing=()
  command -v dpkg-query >/dev/null || {
    [[ ${TREMVIK_SETUP:-} == no ]] && return
    fail "set-up knows Debian only; install the like of \"$*\" by hand, then set TREMVIK_SETUP=no"
  }
  for package in "$@"; do
    if package_missing "$package"; then missing+=("$package"); fi
  done
  ((${#missing[@]})) || return 0

  local as_root=()
  if [[ $EUID != 0 ]] && command -v sudo >/dev/null; then as_root=(sudo); fi
  if [[ ${TREMVIK_SETUP:-} == no ]] || [[ $EUID != 0 && ${#as_root[@]} == 0 ]]; then
    fail "missing packages; as root: apt-get install ${missing[*]}"
  fi
  if ((${#as_root[@]})); then sudo -v || fail "sudo is needed to install: ${missing[*]}"; fi
  echo "missing Debian packages: ${missing[*]}"
  step setup "installing them" install_packages
}

# Installs `missing` with the package lists at hand; fetches the lists only when they are absent or too old.
install_packages() {
  local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300)
  if apt-cache show "${missing[@]}" >/dev/null 2>&1 &&
    "${apt[@]}" install --no-install-recommends "${missing[@]}"; then
    return
  fi
  "${apt[@]}" update && "${apt[@]}" install --no-install-recommends "${missing[@]}"
}
