#!/usr/bin/env bash
# Makes the Debian package and proves it on a clean Debian 12: installs it there, runs the program as
# an ordinary user, puts a newer package over it, removes and purges it, and looks each time whether
# his data are as he left them. Needs root, the network and about 1 GB in the temporary folder; takes
# some minutes. The package stays in build/run.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
# What is mounted below is not to be seen outside and goes away with this process.
[ "${1-}" = --unshared ] || exec unshare --mount "$0" --unshared
source scripts/packages.sh
InstallMissing "${RunPackages[@]}" "${CheckPackages[@]}" debootstrap dpkg-dev

cmake --preset run
cmake --build build/run
MakePackage() {
  (cd build/run && cpack --config CPackConfig.cmake "$@")
}
work=$(mktemp -d)
trap 'umount "$work/root/proc" || true; rm -rf --one-file-system "$work"' EXIT
newer=2.0.1
MakePackage -D CPACK_DEBIAN_PACKAGE_VERSION=$newer -B "$work"
MakePackage

mirror=$(apt-get indextargets --format '$(SITE)' 'Codename: bookworm' 'Component: main' | head -n 1)
debootstrap --variant=minbase bookworm "$work/root" "$mirror"
mount -t proc proc "$work/root/proc"
cp /etc/resolv.conf /etc/hosts "$work/root/etc/"
python3 tests/program/package_test.py "$work/root" build/run/quillary_2.0_*.deb \
  "$work"/quillary_"$newer"_*.deb
