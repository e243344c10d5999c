#!/usr/bin/env bash
# Makes the packages twice, looks at what they say of themselves, and runs their scripts as dpkg does: whether they go
# back, and what becomes of a server that runs.
#   paketler.sh BUILD-FOLDER
set -euo pipefail
build=$1
work=$(mktemp -d)
trap '[ ! -e "$work/pid" ] || kill "$(cat "$work/pid")"; rm -rf "$work"' EXIT
failed=0
tell() { echo "HATA: $*" >&2; failed=1; }

export SOURCE_DATE_EPOCH=1700000000
for turn in 1 2; do
  touch "$build/bin/zembera-cli" "$build"/packaging/*.gz  # the day of the build must not be seen
  (cd "$work" && umask 022 && cpack --config "$build/CPackConfig.cmake" -B "$work/$turn" >"$work/log" 2>&1) ||
    { cat "$work/log"; exit 1; }
  sleep 1.1
done
for package in zembera zembera-cli zembera-sunucu; do
  file=$(basename "$work"/1/${package}_*.deb)
  cmp "$work/1/$file" "$work/2/$file" || tell "$package: iki yapım aynı değil"
  depends=$(dpkg-deb -f "$work/1/$file" Depends | tr '\n' ' ')
  case "$package/$depends" in
    zembera-cli/*libqt*) tell "zembera-cli Qt istiyor: $depends" ;;
    zembera-cli/*libsqlite3*libstdc++*) ;;
    zembera/*"zembera-cli (= "*libqt6widgets6*) ;;
    zembera-sunucu/*"zembera-cli (= "*adduser*libsqlite3*) ;;
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
if command -v lintian >/dev/null; then
  lintian --allow-root --fail-on error,warning "$work"/1/*.deb || tell "lintian"
fi

# The server's scripts, with a manager that writes down what it is asked for and runs the program itself.
bin=$build/bin
mkdir -p "$work/sahte" "$work/run/systemd/system" "$work/ayar"
dpkg-deb -e "$work"/1/zembera-sunucu_*.deb "$work/betik"
sed -i "s|/run/|$work/run/|g; s|/var/lib/zembera|$work/veri|g; s|/etc/zembera|$work/ayar|g; s|^written=.*|written=$work/bicim|" \
  "$work"/betik/{preinst,postinst,prerm,postrm}
printf 'Sql12345\nYonet123\n' | "$bin/zembera-cli" --dizin "$work/ayar" --sessiz kur --sunucu "(yerel):$work/veri"
fake() { cat >"$work/sahte/$1"; chmod +x "$work/sahte/$1"; }
echo 'exit 0' | tee >(fake deb-systemd-helper) >(fake adduser) >(fake getent) >/dev/null
fake systemctl <<END
case "\$*" in *is-active*) [ -e "$work/pid" ] && kill -0 "\$(cat "$work/pid")" 2>/dev/null ;; esac
END
fake deb-systemd-invoke <<END
echo "\$1 \$2" >>"$work/istek"
case \$1 in
  start) "$bin/zembera-sunucu" --klasor "$work/veri" --kapi 0 >>"$work/sunucu.log" 2>&1 </dev/null & echo \$! >"$work/pid" ;;
  stop) kill "\$(cat "$work/pid")"; while kill -0 "\$(cat "$work/pid")" 2>/dev/null; do sleep 0.1; done; rm "$work/pid" ;;
esac
END
sed -i '1i #!/bin/sh' "$work"/sahte/*
# dpkg_runs CODE SCRIPT ARGUMENT...
dpkg_runs() {
  local code=0
  PATH=$work/sahte:$PATH sh "$work/betik/$2" "${@:3}" 2>>"$work/soz" || code=$?
  [ $code = "$1" ] || { tail -5 "$work/soz" >&2; tell "${*:2}: $code"; }
}
# asked TEXT EXPECTED RUNS: what the manager was asked for since the last time, and whether the server runs now.
asked() {
  local requests runs=hayır
  requests=$(paste -sd, "$work/istek" 2>/dev/null | sed 's/ zembera-sunucu.service//g' || true)
  [ ! -e "$work/pid" ] || ! kill -0 "$(cat "$work/pid")" 2>/dev/null || runs=evet
  [ "$requests/$runs" = "$2/$3" ] || tell "$1: istenen '$requests', çalışıyor: $runs"
  rm -f "$work/istek"
  [ -z "$(find "$work/run" -name '*.calisiyordu')" ] || tell "$1: işaret kaldı"
}
cp "$build/packaging/dosya-bicimi" "$work/bicim"
dpkg_runs 0 postinst configure ''
asked "ilk kurulum" start evet
dpkg_runs 0 prerm upgrade 2999.1
[ "$(cat "$work/istek")" = "stop zembera-sunucu.service" ] || tell "dosyalar değişmeden önce durmadı"
dpkg_runs 0 preinst upgrade 2012.2
dpkg_runs 0 postinst configure 2012.2
asked "güncelleme" stop,start evet
echo 999 >"$work/bicim"
dpkg_runs 0 prerm upgrade 2012.2
dpkg_runs 1 preinst upgrade 2999.1
dpkg_runs 0 postrm abort-upgrade 2999.1
dpkg_runs 0 postinst abort-upgrade 2012.2
asked "geri çevrilen eski sürüm" stop,start evet
dpkg_runs 0 prerm remove
dpkg_runs 0 postrm remove
asked "kaldırma" stop hayır
dpkg_runs 0 prerm upgrade 2999.1
dpkg_runs 0 postinst configure 2012.2
asked "durmuşken güncelleme" '' hayır
[ "$(grep -c '^Sunucu dinliyor' "$work/sunucu.log")$(grep -c '^Sunucu duruyor' "$work/sunucu.log")" = 33 ] || cat "$work/sunucu.log"
"$bin/zembera-cli" --dizin "$work/ayar" firma-listele >/dev/null || tell "veri açılmıyor"
exit $failed
