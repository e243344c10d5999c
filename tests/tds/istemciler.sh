#!/usr/bin/env bash
# usage: istemciler.sh FOLDER_OF_PROGRAMS
# The clients that people have, against zembera-sunucu: tsql, bsqldb, isql, Python's pyodbc and a JDBC driver.
set -euo pipefail
programs=$1
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
server=
cleanup() {
  [ -z "$server" ] || kill "$server" 2>/dev/null || true
  rm -rf "$work"
}
trap cleanup EXIT
password=Parola1
export LC_ALL=C.UTF-8 TDSVER=7.4 JAVA_TOOL_OPTIONS=-Dfile.encoding=UTF-8

printf '%s\nYonetici1\n' "$password" | "$programs/zembera-cli" --dizin "$work" kur --sunucu "(yerel):$work/veri" >/dev/null
"$programs/zembera-sunucu" --klasor "$work/veri" --kapi 0 --yerel-sifresiz 2>"$work/log" &
server=$!
for _ in $(seq 200); do
  port=$(sed -n 's/^Sunucu dinliyor: 127.0.0.1,\([0-9]*\),.*/\1/p' "$work/log")
  [ -z "$port" ] || break
  sleep 0.05
done

# expect NAME EXPECTED: compares with what comes in.
expect() {
  local found
  found=$(cat)
  if [ "$found" != "$2" ]; then
    printf '%s:\n%s\nexpected:\n%s\n' "$1" "$found" "$2" >&2
    cat "$work/log" >&2
    exit 1
  fi
}

printf "CREATE DATABASE DENEME\ngo\nSELECT N'Şık' AS a, 5 AS b\ngo\nexit\n" |
  tsql -H 127.0.0.1 -p "$port" -U sa -P "$password" -o fhq 2>/dev/null | expect tsql $'Şık\t5'
echo "SELECT 'Şık' AS a, 7 AS b" | bsqldb -S "127.0.0.1:$port" -U sa -P "$password" -D DENEME -q -h -t '|' 2>/dev/null |
  expect bsqldb 'Şık|7'
driver=$(find /usr/lib -name libtdsodbc.so | head -1)
echo "SELECT name FROM master..sysdatabases WHERE name='DENEME'" |
  isql -k -b -d'|' "DRIVER=$driver;SERVER=127.0.0.1;PORT=$port;TDS_Version=7.4;UID=sa;PWD=$password;DATABASE=DENEME" |
  expect isql DENEME
/usr/bin/python3 "$here/istemci.py" "$port" "$password" "$driver" | expect pyodbc "1
Şık 1.25
iki None
['ID', 'Ad', 'Tutar']
['P']
['ID']
8134 Divide by zero error encountered. 1
['iki', 'üç', 'x']
42S02
['Şık']
['Şık']
7 1
ID int 10
Ad varchar None
Tutar decimal 9
Pahali PROCEDURE
23000"
java -cp /usr/share/java/jtds.jar "$here/Istemci.java" "$port" "$password" 2>"$work/java" |
  expect jdbc "0 3
3 Şık 3 3.75
değişti 1.25
Şık 3 3.75
ID int identity
Ad varchar
Tutar decimal
208 Invalid object name 'YOK'." || { cat "$work/java" >&2; exit 1; }

/usr/bin/python3 "$here/kati.py" "$port" "$password" | expect "TDS 8" "TLSv1.3 tds/8.0 4 True True
TLSv1.2 tds/8.0 4 True True
refused
refused"

kill "$server"
wait "$server"
server=
