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
same "sunucu sürümü" "Zembera 2012.002" "$(zembera-sunucu --surum)"

# The server speaks as the other programs do, and ends with the codes that its page tells.
help=$(zembera-sunucu --help)
same "sunucu yardımı" "Kullanım: zembera-sunucu [SEÇENEKLER]" "$(sed -n 2p <<<"$help")"
for words in '  --klasor KLASÖR (zorunlu)     Veri klasörü' 'Çıkış kodları: 0 sunucu durduruldu, 1 '; do
  grep -F -- "$words" <<<"$help" >/dev/null || tell "sunucu yardımı: $help"
done
code=0
said=$(env -u QT_QPA_PLATFORM zembera 2>&1) || code=$?
same "ekransız" "1 Ekran açılamadı. Komut satırı için: zembera-cli --help" "$code $(tail -1 <<<"$said")"
# ends CODE TEXT OPTION...
ends() {
  local code=0 said
  said=$(zembera-sunucu "${@:3}" 2>&1) || code=$?
  same "zembera-sunucu ${*:3}" "$1 $2" "$code $(head -1 <<<"$said")"
}
ends 2 'Zorunlu seçenek verilmedi: --klasor'
ends 2 'Beklenmeyen bağımsız değişken: --yok' --klasor "$work" --yok
ends 2 '--kapi 0 ile 65535 arasında bir sayı olmalı: 65536' --klasor "$work" --kapi 65536
ends 2 '--baglanti 1 ile 100000 arasında bir sayı olmalı: 5x' --klasor "$work" --baglanti 5x
ends 1 "Sunucu açılamadı: Unable to open the data folder \"$work/yok\": it is no folder." --klasor "$work/yok"

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

# offered SHELL LINE...: for each line "LINE:WORD|WORD", the words that the shell itself offers behind it.
offered() {
  local shell=$1 line
  shift
  if [ "$shell" = zsh ]; then zsh -f "$source/tests/packaging/tamamla.zsh" "$prefix/share/zsh/vendor-completions" "$@"; return; fi
  for line in "$@"; do
    case $shell in
      bash) bash -c '. "$1"; read -ra COMP_WORDS <<<"$2"; [[ $2 != *" " ]] || COMP_WORDS+=("")
          COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); program=${2%% *}; _"${program//-/_}"; printf "%s\n" "${COMPREPLY[@]}"' \
          bash "$prefix/share/bash-completion/completions/${line%% *}" "$line" ;;
      fish) XDG_DATA_DIRS=$prefix/share fish -c 'complete -C $argv[1]' "$line" | cut -f1 ;;
    esac 2>&1 | LC_ALL=C sort -u | echo "$line:$(paste -sd'|')"
  done
}
printf 'Kasa1234\n' | zembera-cli --sessiz kullanici-ekle --ad 'Kasa Bir' --firma KURULUM
for shell in bash fish zsh; do
  command -v $shell >/dev/null || { echo "$shell yok: tamamlaması sınanmadı"; continue; }
  wrong=('zembera-cli firma-:firma-listele|firma-olustur|firma-sil' "zembera-cli --dizin $work/yok firma-s:firma-sil"
    'zembera-cli guncelle --de:--dene' 'zembera-cli guncelle --sur:--surum' 'zembera-cli firma-listele --bicim t:tablo|tsv'
    'zembera-cli tanim d:doviz|drop' 'zembera-cli guncelle --ad KU:KURULUM'
    'zembera-cli yetki-goster --firma KURULUM --kullanici K:KASA BİR|KORVENA'
    "zembera-cli --dizin $work/tasinan guncelle --ad :" "zembera-cli --dizin $work/tasinan yetki-goster --kullanici K:KORVENA"
    "zembera-cli guncelle --dizin $work/yok --ad :" 'zembera --renkler :acik|koyu|masaustu'
    'zembera-sunucu --sert:--sertifika')
  # A busy machine may take longer than a key press allows; then it is pressed again.
  for turn in $(seq 20); do
    mapfile -t found < <(offered $shell "${wrong[@]%:*}")
    again=()
    for i in "${!wrong[@]}"; do [ "${wrong[i]}" = "${found[i]-}" ] || again+=("${wrong[i]}"); done
    wrong=("${again[@]}")
    [ ${#wrong[@]} -gt 0 ] || break
  done
  for line in "${wrong[@]}"; do tell "$shell: beklenen '$line', gelen: ${found[*]}"; done
done

# Colours and bars are for a terminal, and there not against NO_COLOR, TERM=dumb and --sessiz.
if command -v script >/dev/null; then
  table='zembera-cli sunucu --bicim tablo' trial='guncelle --ad KURULUM --dene'
  bold=$'\033\\[1m' bar=$'\033\\[K%'
  # written EXPECTED MARK COMMAND [VARIABLE=VALUE...]
  written() {
    local found=yok
    if env TERM=xterm NO_COLOR= "${@:4}" script -qec "$3" /dev/null </dev/null | grep "$2" >/dev/null; then found=var; fi
    same "terminalde ${*:3}" "$1" "$found"
  }
  written var "$bold" "$table"
  written yok "$bold" "$table" NO_COLOR=1
  written yok "$bold" "$table" TERM=dumb
  written yok "$bold" "$table | cat"
  written var "$bar" "zembera-cli $trial >/dev/null"
  written yok "$bar" "zembera-cli $trial >/dev/null" TERM=dumb
  written yok "$bar" "zembera-cli --sessiz $trial >/dev/null"
  written yok "$bar" "zembera-cli $trial 2>&1 | cat"
fi

# Manual pages in both languages, without a complaint of the formatter.
for program in zembera-cli zembera zembera-sunucu; do
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

# The package's unit and the user's own have names of their own, and systemd takes both.
sed -i "s|/usr/bin/|$prefix/bin/|" "$prefix/lib/systemd/system/zembera-sunucu.service"
XDG_CONFIG_HOME=$work/ayar zembera-cli sunucu-baslat --ag --adres 127.0.0.1 >"$work/ag" 2>&1 || true  # without a manager
same "kullanıcının birimi" "zembera-ag.service" "$(ls "$work/ayar/systemd/user")"
if command -v systemd-analyze >/dev/null; then
  mkdir -m 700 "$work/run"
  systemd-analyze verify --man=no "$prefix/lib/systemd/system/zembera-sunucu.service" || tell "sistemin birimi"
  XDG_RUNTIME_DIR=$work/run systemd-analyze --user verify --man=no "$work/ayar/systemd/user/zembera-ag.service" ||
    tell "kullanıcının birimi"
fi

entry=$prefix/share/applications/example.korvena.zembera.desktop
grep -qx 'Exec=zembera' "$entry" || tell "menü girdisi"
for size in 16x16 48x48 256x256; do
  file=$prefix/share/icons/hicolor/$size/apps/example.korvena.zembera.png
  same "simge $size" "$size" "$(od -An -tu4 -j16 -N8 --endian=big "$file" | awk "{print \$1 \"x\" \$2}")"
done
if command -v desktop-file-validate >/dev/null; then desktop-file-validate "$entry" || tell "menü girdisi geçersiz"; fi
if command -v appstreamcli >/dev/null; then
  appstreamcli validate --no-net "$prefix/share/metainfo/example.korvena.zembera.metainfo.xml" || tell "AppStream"
fi
exit $failed
