#!/usr/bin/env bash
# Makes the Debian packages of a build, unpacks them and works with what is in them:
# debian.sh BUILD SCRATCH VERSION
set -euo pipefail
build=$1 scratch=$2 version=$3
for program in dpkg-deb dpkg-shlibdeps file; do
    command -v "$program" >/dev/null || {
        echo "SKIPPED: there is no $program"
        exit 77
    }
done
fail() {
    echo "$*" >&2
    exit 1
}

rm -rf -- "$scratch"
mkdir -p -- "$scratch/root"
(cd -- "$build" && cpack -G DEB -B "$scratch" >"$scratch/log" 2>&1) || {
    cat -- "$scratch/log" >&2
    exit 1
}
for name in kvarta16 libkvarta16-dev; do
    package=$(echo "$scratch/${name}_${version}"_*.deb)
    [[ $(dpkg-deb -f "$package" Package) == "$name" ]] || fail "$package has another name"
    [[ $(dpkg-deb -f "$package" Version) == "$version" ]] || fail "$package has another version"
    dpkg-deb -x "$package" "$scratch/root"
    [[ -s $scratch/root/usr/share/doc/$name/copyright ]] || fail "$package has no copyright file"
done
depends=$(dpkg-deb -f "$scratch/kvarta16_${version}"_*.deb Depends)
for needed in libc6 'libstdc++6' libsqlite3-0; do
    [[ $depends == *"$needed"* ]] || fail "kvarta16 does not depend on $needed: $depends"
done

cd -- "$scratch/root/usr"
[[ $(gzip -dc share/man/man1/kvarta16.1.gz) == *'.Dt KVARTA16 1'* ]] || fail 'no manual page'
for file in share/bash-completion/completions/kvarta16 include/kvarta16/frame/value.h \
    lib*/libkvarta16.a lib*/cmake/kvarta16/kvarta16-config.cmake lib*/pkgconfig/kvarta16.pc; do
    [[ -s $file ]] || fail "no $file in the packages"
done
# It says "1.0.9999.kvarta16": major, minor and revision.
[[ $(bin/kvarta16 --version) == 1.*.kvarta16 ]] || fail 'the version of the unpacked tool'
bin/kvarta16 seed --db "sqlite:$scratch/firma.db" >/dev/null
again=$(bin/kvarta16 seed --db "sqlite:$scratch/firma.db")
(($(grep -c ' 0 added' <<<"$again") == 3)) || fail "a second seeding adds: $again"
echo "packages with $(find . -type f | wc -l) files, all well"
