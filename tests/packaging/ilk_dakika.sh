#!/usr/bin/env bash
# The first minute without a screen, twice: the example company and its balances, then the list of companies.
#   ilk_dakika.sh BUILD-FOLDER SOURCE-FOLDER
set -euo pipefail
build=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$build/bin/zembera-cli" "$source/data/Muhasebe Parametre" "$work"
tell() { echo "HATA: $*" >&2; cat "$work/ilk" >&2; exit 1; }

"$source/scripts/ilk_dakika" "$work" </dev/null >"$work/ilk" 2>&1 || tell "ilk çalışma"
for command in 'firma-olustur --ad ORNEK --kod 00001 --unvan "Örnek Ticaret A.Ş." --hesap-plani' 'ornek-veri --ad ORNEK' \
  'guncelle --ad ORNEK' 'sql --db ORNEK --bicim tablo "SELECT K.MHesap_Kod'; do
  grep -qF "\$ $work/zembera-cli $command" "$work/ilk" || tell "gösterilmeyen komut: $command"
done
# Debit and credit of a ledger are one sum, and balances are their difference.
awk '/^Hesap /{on=1; next} on && /^[0-9]/{d+=$(NF-2); c+=$(NF-1); b+=$NF; n++}
     END{exit !(n > 20 && d > 1000 && d-c < 0.5 && c-d < 0.5 && b < 0.5 && b > -0.5)}' "$work/ilk" || tell "bakiyeler"
"$source/scripts/ilk_dakika" "$work" </dev/null >"$work/iki" 2>&1
same=$(grep -c '^ORNEK  00001  Örnek Ticaret A.Ş.' "$work/iki")
[ "$same" = 1 ] && ! grep -q firma-olustur "$work/iki" || tell "ikinci çalışma: $(cat "$work/iki")"
