# To be sourced. What the project needs from Debian, and a function that installs what is missing.

RunPackages=(
  cmake ninja-build g++ pkg-config
  qt6-base-dev qt6-serialport-dev qt6-svg-dev libicu-dev zlib1g-dev
  fonts-dejavu-core
)
CheckPackages=(
  libgtest-dev libbenchmark-dev clang-format clang-tidy clang libclang-rt-14-dev
  libsimpleini-dev libglib2.0-dev
  xvfb xauth openbox x11-utils xdotool xclip python3
  libreoffice-writer python3-uno
  desktop-file-utils appstream
  dbus at-spi2-core gir1.2-atspi-2.0 python3-pyatspi
)
ScreenshotPackages=(
  xvfb openbox x11-utils x11-xserver-utils xdotool python3
  imagemagick qt6ct pngquant optipng
)

# Installs those of the named packages that are not there. Needs root or sudo only then.
InstallMissing() {
  local missing=()
  local package
  for package in "$@"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "Installing: ${missing[*]}"
  local asRoot=()
  [ "$(id -u)" -eq 0 ] || asRoot=(sudo)
  "${asRoot[@]}" apt-get update -q
  "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -q --no-install-recommends "${missing[@]}"
}
