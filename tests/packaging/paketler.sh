#!/usr/bin/env bash
# Makes the packages twice, looks at what they say of themselves, and asks their scripts whether they go back.
#   paketler.sh BUILD-FOLDER
set -euo pipefail
build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0
tell() { echo "HATA: $*" >&2; failed=1; }

export SOURCE_DATE_EPOCH=1700000000
for turn in 1 2; do
  touch "$build/bin/zembera-cli" "$build"/packaging/*.gz  # the day of the build must not be seen
  (cd "$work" && umask 022 && cpack --config "$build/CPackConfig.cmake" -B "$work/$turn" >"$work/log" 2>&1) ||
    { cat "$work/log"; exit 1; }
  sleep 1.1
done
for package in zembera zembera-cli; do
  file=$(basename "$work"/1/${package}_*.deb)
  cmp "$work/1/$file" "$work/2/$file" || tell "$package: iki yapım aynı değil"
  depends=$(dpkg-deb -f "$work/1/$file" Depends | tr '\n' ' ')
  case "$package/$depends" in
    zembera-cli/*libqt*) tell "zembera-cli Qt istiyor: $depends" ;;
    zembera-cli/*libsqlite3*libstdc++*) ;;
    zembera/*"zembera-cli (= "*libqt6widgets6*) ;;
    *) tell "$package: $depends" ;;
  esac
  # An older package: told the format of the files that the installed one writes.
  dpkg-deb -e "$work/1/$file" "$work/control"
  format=$(cat "$build/packaging/dosya-bicimi")
  for step in "0 0" "1 1"; do
    echo $((format + ${step% *})) >"$work/bicim"
    sed "s|^written=.*|written=$work/bicim|" "$work/control/preinst" >"$work/preinst"
    code=0
    sh "$work/preinst" upgrade 2099.1 2>"$work/soz" || code=$?
    [ $code = "${step#* }" ] || tell "$package: preinst ${step% *} sürüm yeni dosyalarda $code verdi"
    [ $code = 0 ] || grep -q "reads formats up to $format and could not open them" "$work/soz" || tell "sözü yok"
  done
  rm -rf "$work/control"
done
for script in "$(dirname "$0")"/../../packaging/debian/{postinst,prerm,postrm}; do sh -n "$script" || tell "$script"; done
exit $failed
