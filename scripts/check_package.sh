#!/usr/bin/env bash
# Makes the Debian package and proves it on a clean Debian 12: installs it there, runs the program as
# an ordinary user, puts a newer package over it, removes and purges it, and looks each time whether
# his data are as he left them. Needs root, the network and about 1 GB in the temporary folder; takes
# some minutes. The package stays in build/run.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
# What is mounted below is not to be seen outside and goes away with this process.
[ "${1-}" = --unshared ] || exec unshare --mount scripts/check_package.sh --unshared
source scripts/packages.sh
InstallMissing "${RunPackages[@]}" "${CheckPackages[@]}" debootstrap

work=$(mktemp -d)
root=$work/root
trap 'mountpoint -q "$root/proc" && umount "$root/proc"; rm -rf --one-file-system "$work"' EXIT
scripts/package.sh -D CPACK_DEBIAN_PACKAGE_VERSION=2.0.1 -B "$work/newer"
rm -f build/run/quillary_*.deb
scripts/package.sh

mirror=$(apt-get indextargets --format '$(SITE)' 'Codename: bookworm' 'Component: main' | head -n 1)
debootstrap --variant=minbase bookworm "$root" "$mirror"
mount -t proc proc "$root/proc"
cp /etc/resolv.conf /etc/hosts "$root/etc/"
python3 tests/program/package_test.py "$root" build/run/quillary_*.deb "$work"/newer/quillary_*.deb
