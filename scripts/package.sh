#!/usr/bin/env bash
# Installs what is missing, builds the program and makes its Debian package, build/run/quillary_*.deb.
# Arguments go to cpack. QUILLARY_MAINTAINER (packaging/CMakeLists.txt) says who answers for it.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
source scripts/packages.sh
InstallMissing "${RunPackages[@]}" dpkg-dev

cmake --preset run
cmake --build build/run
cd build/run
cpack --config CPackConfig.cmake "$@"
