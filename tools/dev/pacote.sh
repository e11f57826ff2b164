#!/usr/bin/env bash
# makes the Debian package in dist/ and tries it in a bare Debian
packages_package=("${packages_build[@]}" scdoc gzip dpkg-dev file lintian debootstrap)
need "${packages_package[@]}"
dist=$PWD/dist
root=$PWD/build/bare-debian

# The date of the sources, so that a package built again from them has the same bytes.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || date +%s)
export SOURCE_DATE_EPOCH

make_package() {
  cmake --preset release -B build/package -DTREMVIK_PAGE_FILE="$1" -DCMAKE_EXE_LINKER_FLAGS=-Wl,-z,relro,-z,now \
    -DCMAKE_INSTALL_PREFIX=/usr &&
    cmake --build build/package --parallel "$(nproc)" &&
    (cd build/package && cpack -G DEB) && mkdir -p "$dist" && cp build/package/tremvik_*.deb "$dist/"
}

# A second package from the same tree must be the first one.
make_again() {
  local first=$1
  (cd build/package && cpack -G DEB) && cmp build/package/"$(basename "$first")" "$first"
}

# Neither an error nor a warning; hints may stand.
lint() {
  lintian --fail-on error,warning "$1"
}

# Installed, used as a user would, and removed without a trace.
try_in_bare_debian() {
  local mirror
  [[ -x $root/bin/sh ]] || {
    mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Codename: bookworm' 'Identifier: Packages' | sort -u | head -1)
    debootstrap --variant=minbase bookworm "$root" "$mirror"
  }
  cp "$1" "$root/tremvik.deb"
  chroot "$root" sh -euc '
    dpkg -i /tremvik.deb || { apt-get update -q; apt-get -f install -y -q --no-install-recommends; }
    tremvik --versao
    cd /tmp && tremvik exemplo --saida e.txt --sobrescrever && tremvik importar e.txt --pasta casa && rm -rf casa e.txt
    test -f /usr/share/bash-completion/completions/tremvik
    apt-get purge -y -q tremvik && test -z "$(find / -xdev -name "*tremvik*" -not -path "/proc/*" -not -name tremvik.deb)"
    rm /tremvik.deb'
}

page=build/page/tremvik.html
if [[ ! -f $page ]]; then
  echo "  without the page; ./dev page makes it"
  page=
fi
step package "package: build" make_package "${page:+$PWD/$page}"
package=$(ls -t "$dist"/tremvik_*.deb | head -1)
check package-again "package: the same bytes when built again" make_again "$package" || true
check package-lint "package: lintian" lint "$package" || true
check package-bare "package: in a bare Debian" try_in_bare_debian "$package" || true
echo "  $(basename "$package"), $(($(stat -c %s "$package") / 1000)) kB"
((${#failed_steps[@]} == 0))
