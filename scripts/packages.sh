# Sourced by run and test: installs the Debian packages that are missing.
packages=(
  build-essential cmake ninja-build ccache lld pkg-config
  libsqlite3-dev libicu-dev libsodium-dev libssl-dev unixodbc-dev tdsodbc libsqliteodbc libcli11-dev
  qt6-base-dev qt6-svg-dev libqt6opengl6-dev libgl-dev libegl-dev fonts-dejavu-core
  libgtest-dev libbenchmark-dev
  freetds-bin unixodbc python3-pyodbc libjtds-java default-jdk-headless
)

install_missing_packages() {
  local missing=() name
  for name in "${packages[@]}" "$@"; do
    dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'ok installed' || missing+=("$name")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  local sudo=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "Install as root first: apt-get install ${missing[*]}" >&2; return 1; }
    sudo=(sudo)
  fi
  echo "Installing: ${missing[*]}" >&2
  "${sudo[@]}" apt-get update -qq >&2
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}
