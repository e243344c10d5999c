#!/usr/bin/env bash
# Installs a build into a folder as a package would and looks at what a person meets there.
#   kurulum.sh BUILD-FOLDER SOURCE-FOLDER
set -euo pipefail
build=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work/ev XDG_DATA_HOME=$work/ev/veri LC_ALL=C.UTF-8
unset DISPLAY WAYLAND_DISPLAY
mkdir -p "$HOME"
prefix=$work/usr
failed=0

tell() { echo "HATA: $*" >&2; failed=1; }
# same NAME EXPECTED ACTUAL
same() { [ "$2" = "$3" ] || tell "$1: beklenen '$2', gelen '$3'"; }

cmake --install "$build" --prefix "$prefix" >/dev/null
PATH=$prefix/bin:$PATH
same "sürüm" "Zembera 2012.002" "$(zembera-cli --surum)"
same "masaüstü sürümü" "Zembera 2012.002" "$(zembera --surum)"

# The user's folder holds sys.inf and data; nothing is written beside the program.
before=$(find "$prefix" | sort)
printf 'Sql12345\nYonet123\n' | zembera-cli --sessiz kur --sunucu '(yerel)'
zembera-cli --sessiz firma-olustur --ad KURULUM --kod 00001 --unvan 'Kurulum' --hesap-plani
same "sys.inf hakları" 600 "$(stat -c %a "$XDG_DATA_HOME/zembera/sys.inf")"
[ -e "$XDG_DATA_HOME/zembera/veri/KURULUM.mdf" ] || tell "veri klasörü yok"
same "program klasörü" "$before" "$(find "$prefix" | sort)"
accounts=$(zembera-cli sql --db KURULUM "SELECT COUNT(*) FROM MUHKART" 2>/dev/null | tail -1)
[ "${accounts:-0}" -gt 100 ] || tell "hesap planı kurulu klasörden okunamadı: $accounts"

# A carried folder goes on as it was: sys.inf beside the program is the one that counts.
mkdir "$work/tasinan"
cp "$prefix/bin/zembera-cli" "$work/tasinan/"
printf 'Sql12345\nYonet123\n' | "$work/tasinan/zembera-cli" --sessiz kur --sunucu '(yerel)'
[ -e "$work/tasinan/sys.inf" ] && [ -e "$work/tasinan/veri/master.mdf" ] || tell "taşınabilir klasör"

# Completion, asked as bash asks it.
complete_words() {
  bash -c '. "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _zembera_cli; echo "${COMPREPLY[*]}"' \
    bash "$prefix/share/bash-completion/completions/zembera-cli" "$@" 2>&1
}
# A busy machine may take longer than a key press allows; then it is pressed again.
completes() {
  local turn words
  for turn in 1 2 3 4 5 6 7 8 9; do
    words=$(complete_words "${@:3}")
    [ "$words" != "$2" ] || return 0
  done
  same "$1" "$2" "$words"
}
same "komut" "firma-listele firma-olustur firma-sil" "$(complete_words zembera-cli firma-)"
same "seçenek" "--dene" "$(complete_words zembera-cli guncelle --de)"
same "biçim" "tsv tablo" "$(complete_words zembera-cli firma-listele --bicim t)"
completes "firma" "KURULUM" zembera-cli guncelle --ad KU
completes "kullanıcı" "KORVENA" zembera-cli yetki-goster --firma KURULUM --kullanici ''
same "başka klasörde firma yok" "" "$(complete_words zembera-cli --dizin "$work/tasinan" guncelle --ad '')"
same "sunucusuz" "" "$(complete_words zembera-cli --dizin "$work/yok" guncelle --ad '')"

# Manual pages in both languages, without a complaint of the formatter.
for program in zembera-cli zembera; do
  for page in man1 tr/man1; do
    file=$prefix/share/man/$page/$program.1.gz
    [ -s "$file" ] || { tell "sayfa yok: $page/$program"; continue; }
    if command -v man >/dev/null; then
      same "sayfa $page/$program" "" "$(man --warnings -E UTF-8 -l -Tutf8 "$file" 2>&1 >/dev/null)"
    fi
  done
done
for command in $(zembera-cli --help | sed -n '/^Komutlar:/,/^$/s/^  \([a-z-]*\) .*/\1/p'); do
  for page in man1 tr/man1; do
    zcat "$prefix/share/man/$page/zembera-cli.1.gz" | grep -qx "\.SS ${command//-/\\\\-}" ||
      tell "$page: $command anlatılmıyor"
  done
done
"$build/bin/yardim_sayfalari" "$work/sayfa" "$source/src/cli/yardim.en.po" 1 2000-01-01 || tell "İngilizcesi eksik"

entry=$prefix/share/applications/tr.korvena.zembera.desktop
grep -qx 'Exec=zembera' "$entry" || tell "menü girdisi"
for size in 16x16 48x48 256x256; do
  file=$prefix/share/icons/hicolor/$size/apps/tr.korvena.zembera.png
  same "simge $size" "$size" "$(od -An -tu4 -j16 -N8 --endian=big "$file" | awk "{print \$1 \"x\" \$2}")"
done
if command -v desktop-file-validate >/dev/null; then desktop-file-validate "$entry" || tell "menü girdisi geçersiz"; fi
if command -v appstreamcli >/dev/null; then
  appstreamcli validate --no-net "$prefix/share/metainfo/tr.korvena.zembera.metainfo.xml" || tell "AppStream"
fi
exit $failed
