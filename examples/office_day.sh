#!/usr/bin/env bash
# A day at the office with the command kvarta16: a database filled, the rates of a day, amounts in
# words, numbers checked, a setting kept, a label printed.
#
#   office_day.sh TOOL FOLDER
#
# TOOL is the command, FOLDER an empty folder for everything that is written: the database, the
# settings, the printed file.
set -euo pipefail

tool=${1:?the command kvarta16}
cd -- "${2:?an empty folder}"
export KVARTA16_REGISTRY=$PWD/ustawienia.reg KVARTA16_DRIVES=$PWD/dyski

heading() { printf '\n# %s\n' "$*"; }

heading "The statutory tables, filled once; a second run adds nothing"
"$tool" seed --db sqlite:firma.db
"$tool" seed --db sqlite:firma.db --tables payroll,mileage

heading "The minimum wage and the mileage rates on a day"
"$tool" rates --db sqlite:firma.db --on 2024-05-17 --lang en | grep -E 'minimum|zł/km'

heading "An invoice: amount in words, and whether it can be paid that day"
"$tool" slownie 1234,56
for day in 2025-12-23 2025-12-24; do
    "$tool" dzien "$day" --lang en
done

heading "Numbers from a form: exit status 1 for a wrong one"
for number in 44051401359 44051401358; do
    "$tool" pesel "$number" --lang en || echo "(status $?)"
done
"$tool" nip 123-456-32-18 --lang en

heading "Length of service and leave"
"$tool" staz 2018-03-01 2020-12-31 2021-02-15 2026-10-31 --szkola 8 --lang en

heading "A setting of the suite, stored and read"
"$tool" registry set 'HKCU\Software\ZEVO\Wydruki' Drukarka Magazyn
"$tool" registry get 'HKCU\Software\ZEVO\Wydruki' Drukarka
"$tool" call aregistry.GetRegistryK Wydruki Drukarka 4

heading "A label to a printer that is a folder"
mkdir etykiety
printf '^XA^FDKawa^XZ' >kawa.zpl
"$tool" print kawa.zpl --printer spool:etykiety --app Etykiety
ls etykiety
cmp kawa.zpl etykiety/0001-*.prn && echo "printed as it is"

heading "A table of one's own in the same file, and what a cleaning would do to it"
"$tool" db exec firma.db "create table towary (id counter primary key, nazwa text(40), cena currency)"
"$tool" db exec firma.db "insert into towary (nazwa) values ('Kawa')"
"$tool" db show firma.db --table towary
"$tool" db clean firma.db --table towary --plan

heading "Any member of the library: a failure is exit status 1"
"$tool" call aLiczby.VarR2Str 1234,565
"$tool" call aChar.A_DOK null 2>&1 || echo "(status $?)"
