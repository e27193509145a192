#!/usr/bin/env python3
"""A year of minimum wage, worked out by the library in another process.

    payroll_year.py TOOL DATABASE YEAR

TOOL is the command kvarta16, DATABASE an SQLite file, made if it is not there. The client creates
its three statutory tables, has the library fill them, reads the rates with SQL, and asks the
library for money, working days and length of service.
"""

from __future__ import annotations

import datetime
import itertools
import json
import sqlite3
import subprocess
import sys
from decimal import Decimal
from typing import Any

# [client]
class Refused(Exception):
    """A failure of the library: its number and its text."""

    def __init__(self, error: dict[str, Any]) -> None:
        super().__init__(f"{error['code']}: {error['message']}")
        self.code = error["code"]


class Library:
    """The library in a process of its own: a request a line, an answer a line."""

    def __init__(self, tool: str) -> None:
        self._process = subprocess.Popen([tool, "rpc"], stdin=subprocess.PIPE,
                                         stdout=subprocess.PIPE, text=True, encoding="utf-8")
        self._ids = itertools.count(1)

    def ask(self, method: str, *params: Any) -> dict[str, Any]:
        """The whole result: `value`, the arguments after the call in `args`, the `boxes`."""
        request = {"jsonrpc": "2.0", "id": next(self._ids), "method": method, "params": params}
        self._process.stdin.write(json.dumps(request) + "\n")
        self._process.stdin.flush()
        answer = json.loads(self._process.stdout.readline())
        if "error" in answer:
            raise Refused(answer["error"])
        return answer["result"]

    def call(self, method: str, *params: Any) -> Any:
        """The value alone, without its type."""
        (value,) = self.ask(method, *params)["value"].values()
        return value

    def close(self) -> None:
        self._process.stdin.close()
        self._process.wait()
# [/client]


# Tables belong to whoever keeps the database: the library fills them and makes none.
TABLES = (
    "create table S_PLACE_PARAMETRY (id smallint, dataod datetime, "
    + ", ".join(f"wartosc{number or ''} currency" for number in (0, *range(2, 11))) + ")",
    "create table S_StawkiKM (Dataod datetime, Ponizej900 boolean, wartosc_wsp4 currency)",
    "create table S_ODSETKI (Rodzaj smallint, od_dnia datetime, procent currency)",
)
NO_SUCH_TABLE = 3078

# Kinds of payroll parameters.
MINIMUM_WAGE = 50
SOCIAL_CONTRIBUTIONS = (30, 31, 32)  # pension, disability, sickness: the employee's per cent
SATURDAY = 5  # of PodajDzień; Sundays and holidays are 6


def seed(library: Library, path: str) -> None:
    """Fills the tables; makes them first where the library finds that they are missing."""
    database = {"Object": library.call("host.connect", f"sqlite:{path}")}
    library.ask("host.answers", ["yes"])
    try:
        library.call("Akt.Ustaw_Parametry_płacowe", database, True, True)
    except Refused as refusal:
        if refusal.code != NO_SUCH_TABLE:
            raise
        print(f"Library: {refusal}")
        with sqlite3.connect(path) as connection:
            for table in TABLES:
                connection.execute(table)
        library.ask("host.answers", ["yes"])
        answer = library.ask("Akt.Ustaw_Parametry_płacowe", database, True, True)
        for box in answer["boxes"]:
            print(f"Library asked: {box['text'].strip()} - {box['answer']}")
    library.call("host.release", database)


def rate(connection: sqlite3.Connection, kind: int, day: datetime.date) -> Decimal:
    """What holds of a parameter on a day: its latest row up to it."""
    (value,) = connection.execute(
        "select wartosc from S_PLACE_PARAMETRY where id = ? and dataod <= ? "
        "order by dataod desc limit 1", (kind, f"{day} 00:00:00")).fetchone()
    return Decimal(str(value))


def money(library: Library, amount: Decimal) -> Decimal:
    """Rounded to grosze as the suite rounds."""
    return Decimal(library.call("aLiczby.VarR2Si", {"Decimal": str(amount)}))


def working_days(library: Library, first: datetime.date) -> int:
    days = (first + datetime.timedelta(days=number) for number in range(31))
    return sum(library.call("Kadry.PodajDzień", {"Date": str(day)}, True) < SATURDAY
               for day in days if day.month == first.month)


def print_months(library: Library, path: str, year: int) -> None:
    total = Decimal(0)
    with sqlite3.connect(path) as connection:
        for month in range(1, 13):
            first = datetime.date(year, month, 1)
            gross = rate(connection, MINIMUM_WAGE, first)
            social = sum(money(library, gross * rate(connection, kind, first) / 100)
                         for kind in SOCIAL_CONTRIBUTIONS)
            total += gross
            name = library.call("value.FormatMask", {"Date": str(first)}, "mmmm")
            print(f"{name:<12} {working_days(library, first):>2} days {gross:>10.2f} "
                  f"- {social:>7.2f} = {gross - social:>10.2f}")
    text = library.call("aLiczby.VarR2Str", {"Currency": str(total)})
    print(f"{'the year':<20} {text:>10}  {library.call('ClsSłownie.slownie', text)}")


def print_leave(library: Library, hired: str, until: str) -> None:
    """Length of service comes back in the three arguments that the call writes."""
    answer = library.ask("Kadry.licz_okres", {"Date": hired}, {"Date": until}, 0, 0, 0)
    years, months, days = (argument["Integer"] for argument in answer["args"][2:])
    leave = library.call("Kadry.limit_u", years, months, 0)
    print(f"{hired} to {until}: {years} years, {months} months, {days} days of service; "
          f"{leave} days of leave a year")


def main(tool: str, path: str, year: int) -> None:
    library = Library(tool)
    try:
        library.call("host.now", f"{year}-12-31T12:00:00")
        print(library.call("amain.VersjaLib"))
        seed(library, path)
        print_months(library, path, year)
        today = datetime.date(1899, 12, 30) + datetime.timedelta(
            days=library.call("aDaty.ToDayMonth"))
        print_leave(library, f"{year - 12}-03-15", str(today))
    finally:
        library.close()


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2], int(sys.argv[3]))
