#!/usr/bin/env python3
"""Writes address-book.vcf, an address book of invented people.

The file looks like the exports of every phone and mail program of the last ten
years, one after another: each program has its own dialect, many people occur in
more than one export, and some cards are odd in the ways that real cards are.

    python3 samples/make_address_book.py            writes the file next to this script
    python3 samples/make_address_book.py --check    fails if that file is out of date

Every person is invented. The phone numbers come from the ranges reserved for
fiction by the numbering authorities, the e-mail addresses from the domains
reserved for examples.
"""

import argparse
import base64
import random
import struct
import sys
import unicodedata
import uuid
import zlib
from dataclasses import dataclass, field, replace
from datetime import date, datetime, timedelta
from pathlib import Path

TARGET = Path(__file__).resolve().parent / "address-book.vcf"
SEED = 20240229
CRLF = b"\r\n"
LF = b"\n"


# --- People -------------------------------------------------------------------


@dataclass(frozen=True)
class Phone:
    """A number in the form "+44 20 7946 0123", with its country code."""

    kind: str
    number: str
    label: str = ""


@dataclass(frozen=True)
class Address:
    """A postal address; kind is "home" or "work"."""

    kind: str
    street: str
    city: str
    region: str
    postcode: str
    country: str


@dataclass(frozen=True)
class Person:
    """One entry of an address book, in any program.

    Entries with the same serial have the same identifier.
    """

    serial: int
    given: str = ""
    family: str = ""
    middle: str = ""
    prefix: str = ""
    suffix: str = ""
    shown_as: str = ""
    nickname: str = ""
    organisation: str = ""
    title: str = ""
    country: str = "US"
    phones: tuple[Phone, ...] = ()
    emails: tuple[tuple[str, str], ...] = ()
    address: Address | None = None
    birthday: date | None = None
    note: str = ""
    revised: datetime | None = None
    photo: bytes = b""
    is_firm: bool = False
    without_n: bool = False

    @property
    def formatted(self) -> str:
        """The name as it would be written on an envelope."""
        parts = (self.prefix, self.given, self.middle, self.family)
        name = " ".join(part for part in parts if part)
        if self.suffix:
            name += ", " + self.suffix
        return self.shown_as or name or self.nickname or self.organisation

    @property
    def identifier(self) -> str:
        """An identifier that is the same every time the file is written."""
        return str(uuid.uuid5(uuid.NAMESPACE_DNS, f"card-{self.serial}.example.org"))


# --- Places and names ---------------------------------------------------------


@dataclass(frozen=True)
class Place:
    """A town, with number patterns in which each # stands for any digit."""

    city: str
    region: str
    postcode: str
    landline: str
    mobile: str


@dataclass(frozen=True)
class Country:
    """A country; {} in a street is the house number."""

    name: str
    language: str
    places: tuple[Place, ...]
    streets: tuple[str, ...]


UK_MOBILE = "+44 7700 900 ###"
GERMAN_MOBILE = "+49 176 040690 ##"
FRENCH_MOBILE = "+33 6 39 98 ## ##"
AUSTRALIAN_MOBILE = "+61 491 570 ###"
SWEDISH_MOBILE = "+46 70 174 06 ##"
# The range reserved in Sweden begins at the sixth number of the pattern.
REAL_NUMBERS = frozenset(f"+46 70 174 06 0{digit}" for digit in range(5))

COUNTRIES = {
    "US": Country(
        "United States",
        "en-us",
        (
            Place("San Francisco", "CA", "94114", "+1 415 555 01##", "+1 415 555 01##"),
            Place("Boston", "MA", "02116", "+1 617 555 01##", "+1 617 555 01##"),
            Place("Chicago", "IL", "60614", "+1 312 555 01##", "+1 773 555 01##"),
            Place("Seattle", "WA", "98103", "+1 206 555 01##", "+1 206 555 01##"),
            Place("Austin", "TX", "78704", "+1 512 555 01##", "+1 512 555 01##"),
            Place("Miami", "FL", "33133", "+1 305 555 01##", "+1 786 555 01##"),
        ),
        ("{} Maple Street", "{} Orchard Avenue", "{} Lakeview Drive", "{} Mill Road"),
    ),
    "CA": Country(
        "Canada",
        "en-ca",
        (
            Place("Toronto", "ON", "M4K 1N2", "+1 416 555 01##", "+1 647 555 01##"),
            Place("Vancouver", "BC", "V6K 2E4", "+1 604 555 01##", "+1 778 555 01##"),
        ),
        ("{} Birch Crescent", "{} Harbour Street"),
    ),
    "GB": Country(
        "United Kingdom",
        "en-gb",
        (
            Place("London", "", "N1 9GU", "+44 20 7946 0###", UK_MOBILE),
            Place("Leeds", "", "LS6 2AB", "+44 113 496 0###", UK_MOBILE),
            Place("Bristol", "", "BS8 1TH", "+44 117 496 0###", UK_MOBILE),
            Place("Edinburgh", "", "EH9 1QG", "+44 131 496 0###", UK_MOBILE),
        ),
        ("{} Station Road", "{} Church Lane", "{} Victoria Terrace", "Flat 3\n{} The Crescent"),
    ),
    "AU": Country(
        "Australia",
        "en-au",
        (
            Place("Sydney", "NSW", "2042", "+61 2 5550 ####", AUSTRALIAN_MOBILE),
            Place("Melbourne", "VIC", "3068", "+61 3 5550 ####", AUSTRALIAN_MOBILE),
        ),
        ("{} Wattle Street", "Unit 4\n{} Banksia Parade"),
    ),
    "DE": Country(
        "Deutschland",
        "de",
        (
            Place("Berlin", "", "10437", "+49 30 23125 ###", GERMAN_MOBILE),
            Place("Hamburg", "", "20357", "+49 40 66969 ###", GERMAN_MOBILE),
            Place("Köln", "", "50674", "+49 221 4710 ###", "+49 171 39200 ##"),
            Place("München", "", "80799", "+49 89 99998 ###", "+49 171 39200 ##"),
        ),
        ("Lindenstraße {}", "Am Mühlbach {}", "Gartenweg {}", "Hinterhaus\nSchulstraße {}"),
    ),
    "FR": Country(
        "France",
        "fr",
        (
            Place("Paris", "", "75011", "+33 1 99 00 ## ##", FRENCH_MOBILE),
            Place("Lyon", "", "69004", "+33 4 65 71 ## ##", FRENCH_MOBILE),
            Place("Nantes", "", "44000", "+33 2 61 91 ## ##", FRENCH_MOBILE),
        ),
        ("{} rue des Tilleuls", "{} avenue de la Gare", "Bâtiment B\n{} allée des Pêchers"),
    ),
    "SE": Country(
        "Sverige",
        "sv",
        (
            Place("Stockholm", "", "116 32", "+46 8 465 004 ##", SWEDISH_MOBILE),
            Place("Göteborg", "", "413 05", "+46 31 390 06 ##", SWEDISH_MOBILE),
        ),
        ("Björkvägen {}", "Storgatan {}"),
    ),
}


@dataclass(frozen=True)
class Origin:
    """Names that go together, and the countries where people have them."""

    countries: tuple[str, ...]
    given: list[str]
    family: list[str]


def names(text: str) -> list[str]:
    """Splits a list with commas, over any number of lines, into names."""
    return [name.strip() for name in text.split(",")]


ORIGINS = (
    Origin(
        ("US", "GB", "GB", "US", "AU", "CA"),
        names("""Alice, Amelia, Andrew, Beatrice, Benjamin, Brian, Caroline, Catherine, Charlotte,
            Colin, Daniel, Deborah, Dennis, Diane, Edward, Eleanor, Emily, Ethan, Fiona, Gareth,
            Gemma, George, Grace, Hannah, Harriet, Heather, Imogen, Isaac, Jacob, Janet, Joanna,
            Jonathan, Judith, Keith, Laura, Leonard, Lucy, Malcolm, Megan, Naomi, Nathan, Oliver,
            Owen, Patrick, Philippa, Rachel, Rosemary, Stephen, Susannah, Theodore, Tessa,
            Wendy"""),
        names("""Ainsley, Ashdown, Beckwith, Birchall, Blakemore, Bramley, Calloway, Carradale,
            Corrigan, Crowther, Denholm, Drayton, Eastwick, Ellerby, Fairweather, Farrow, Garside,
            Greenhalgh, Hadley, Hargreave, Hathersage, Hollins, Ingham, Jessop, Kilbride, Langford,
            Lockwood, Loxley, Mayhew, McCorrie, Merriman, Nettleton, O'Connell, O'Shea,
            Oakley-Finch, Penhallow, Quigley, Ravensdale, Redfern, Rowntree, Sedgwick, Stanhope,
            Tattersall, Thackery, Underhill, Wainscott, Whitcombe, Winslow, Woolridge, Yardley,
            Stokesby, Lindfield"""),
    ),
    Origin(
        ("DE",),
        names("""Anke, Annegret, Bärbel, Birgit, Christoph, Dieter, Elke, Florian, Friederike,
            Gerd, Götz, Hannelore, Holger, Jörg, Jürgen, Kathrin, Lukas, Matthias, Mechthild,
            Rüdiger, Sabine, Sönke, Thorsten, Ulrike"""),
        names("""Ackermann, Brückner, Dörfler, Ehlers, Feldhaus, Gräfe, Großmann, Hagedorn,
            Heitkamp, Jägersberg, Kettler, Köhler, Lohmeyer, Möllenkamp, Niebuhr, Oehlschläger,
            Pfützner, Reuß, Schönfeld, Steinbrück, Tiedemann, Uhlig, Wöhrle, Zumbusch"""),
    ),
    Origin(
        ("FR",),
        names("""Agnès, Amélie, Baptiste, Cédric, Clémence, Élodie, Étienne, Fabien, François,
            Gaëlle, Hélène, Jérôme, Léa, Maëlys, Mathieu, Noémie, Océane, Rémi, Solène,
            Thérèse"""),
        names("""Aubertin, Bélanger, Carpentier, Chauvet, Delacourt, D'Aubray, Ferrand, Gauthier,
            Hébrard, Jacquemin, Lefort, Le Goff, Maréchal, Noirot, Pélissier, Quéméner, Rousselet,
            Saint-Martin, Tréville, Vasseur"""),
    ),
    Origin(
        ("US", "US", "FR", "GB"),
        names("""Adriana, Álvaro, Beatriz, Catarina, Concepción, Diego, Esperanza, Gonçalo,
            Guadalupe, Íñigo, Joaquín, José Luis, Leonor, Lucía, María José, Martín, Nuño, Rocío,
            Sebastião, Ximena"""),
        names("""Almeida, Arriaga, Benítez Soler, Carrasco, de la Fuente, Echeverría, Figueira,
            Galán, Ibáñez, Losada, Magalhães, Montoya, Núñez, Ordóñez, Peñalver, Quiroga, Ribeiro,
            Salcedo, Távora, Villaseñor"""),
    ),
    Origin(
        ("DE", "US"),
        names("""Alessia, Bruno, Chiara, Donatella, Fabrizio, Giosuè, Ilaria, Luigi, Niccolò,
            Raffaella"""),
        names("""Bassani, Castellucci, D'Angelo, Di Stefano, Fiorentini, Gambardella, Lo Presti,
            Marchetti, Pellegrotti, Zanetti"""),
    ),
    Origin(
        ("SE", "SE", "DE"),
        names("""Åsa, Bjørn, Britta, Göran, Gunnar, Håkan, Ingrid, Jørgen, Kirsten, Linnéa, Märta,
            Øyvind, Päivi, Sigrid, Søren, Torbjörn"""),
        names("""Ahlgren, Bergström, Dahlén, Ekholm, Fjellheim, Grønvold, Hedlund, Holmberg,
            Kjærgaard, Lindqvist, Mäkinen, Nyström, Østergaard, Rødland, Sjöblom, Vestergård"""),
    ),
    Origin(
        ("DE", "GB"),
        names("""Annelies, Bram, Femke, Jeroen, Maaike, Pieter, Saskia, Wouter"""),
        names("""Brouwer, de Graaf, Hoekstra, Kuipersma, Ten Cate, van den Heuvel, van 't Hoff,
            Zijlstra"""),
    ),
    Origin(
        ("DE", "GB", "US"),
        names("""Agnieszka, Bohumil, Dušan, Eszter, Grażyna, Katalin, Łukasz, Małgorzata, Radek,
            Sława, Wojciech, Zsófia"""),
        names("""Baráth, Dvořáček, Gołąb, Kaczmarek, Kovačič, Nowakiewicz, Pospíšil, Szőke, Šimek,
            Wójcik, Zając, Żuraw"""),
    ),
    Origin(
        ("DE",),
        names("""Ayşe, Çağla, Emre, Gülşen, İbrahim, Yiğit"""),
        names("""Aydoğan, Çelik, Karaca, Öztürk, Şahin, Yıldırım"""),
    ),
    Origin(
        ("GB", "US", "AU"),
        names("""Aditi, Anjali, Deepak, Farhan, Harpreet, Kavita, Lakshmi, Manoj, Nasreen, Rajesh,
            Sanjana, Vikram"""),
        names("""Bhattacharjee, Chowdhury, Deshpande, Gill, Iyengar, Kulkarni, Malhotra, Nambiar,
            Qureshi, Ranganathan, Siddiqui, Venkataraman"""),
    ),
    Origin(
        ("US", "CA", "AU"),
        names("Jia Hui, Meiling, Wenjun, Xiaoyu, Yuxuan, Zhihao"),
        names("Cai, Feng, Huang, Liang, Shen, Zhu"),
    ),
    Origin(
        ("FR", "US"),
        names("Bảo Ngọc, Quang, Thảo, Văn Hùng"),
        names("Đặng, Huỳnh, Nguyễn, Phạm"),
    ),
    Origin(
        ("GB", "FR", "US"),
        names("Adaeze, Babajide, Chinedu, Fatoumata, Kwabena, Ngozi, Thandiwe, Wanjiru"),
        names("Adeyinka, Boateng, Diarra, Kamau, Mthembu, Nwosu, Okonjo, Traoré"),
    ),
)

# Given name, family name, country, and the local part of the e-mail address.
OTHER_SCRIPTS = (
    ("Ольга", "Мельникова", "DE", "olga.melnikova"),
    ("Сергей", "Воронцов", "DE", "s.vorontsov"),
    ("Наталья", "Звягинцева", "GB", "nzvyagintseva"),
    ("Тарас", "Коваленко", "DE", "taras.kovalenko"),
    ("Оксана", "Бондаренко", "US", "oksana.b"),
    ("Йордан", "Стоянов", "DE", "j.stoyanov"),
    ("晓峰", "王", "US", "xiaofeng.wang"),
    ("雅婷", "陳", "CA", "yating.chen"),
    ("建国", "刘", "AU", "jianguo.liu"),
    ("美咲", "佐藤", "US", "misaki.sato"),
    ("健太", "笠井", "GB", "kenta.kasai"),
    ("태윤", "민", "US", "taeyun.min"),
    ("فاطمة", "الخطيب", "FR", "fatima.khatib"),
    ("يوسف", "البيطار", "GB", "y.bitar"),
    ("ليلى", "حداد", "CA", "layla.haddad"),
    ("Γιώργος", "Καλοπεράτης", "GB", "g.kaloperatis"),
    ("Ελένη", "Μελισσανού", "DE", "eleni.m"),
    ("Δημήτρης", "Σταφυλάς", "AU", "dimitris.s"),
    ("נועה", "בן דוד", "US", "noa.bd"),
)
FAMILY_NAME_FIRST = "王陳刘佐笠민"

NICKNAMES = {
    "Amelia": "Millie", "Andrew": "Andy", "Beatrice": "Bea", "Benjamin": "Ben",
    "Catherine": "Cath", "Charlotte": "Lottie", "Daniel": "Dan", "Deborah": "Debs",
    "Edward": "Ted", "Eleanor": "Nell", "Harriet": "Hattie", "Jonathan": "Jonty",
    "Leonard": "Len", "Megan": "Meg", "Oliver": "Ollie", "Patrick": "Paddy",
    "Philippa": "Pip", "Rosemary": "Romy", "Stephen": "Steve", "Theodore": "Theo",
    "Annegret": "Anne", "Christoph": "Stoffel", "Friederike": "Rike", "Hannelore": "Hanne",
    "Matthias": "Matze", "Ulrike": "Ulli", "Clémence": "Clem", "François": "Fanfan",
    "Mathieu": "Mat", "Concepción": "Concha", "Guadalupe": "Lupe", "José Luis": "Pepe",
    "María José": "Majo", "Sebastião": "Tião", "Donatella": "Dona", "Raffaella": "Raffi",
    "Torbjörn": "Tobbe", "Linnéa": "Nea", "Annelies": "Lies", "Agnieszka": "Aga",
    "Małgorzata": "Gosia", "Katalin": "Kati", "Wojciech": "Wojtek", "İbrahim": "İbo",
    "Lakshmi": "Lux", "Harpreet": "Harry", "Babajide": "Jide", "Kwabena": "Kobby",
    "Ольга": "Оля", "Сергей": "Серёжа", "晓峰": "小峰", "Γιώργος": "Γιωργάκης",
}  # fmt: skip

FIRMS = (
    "Brightwater Optics", "Nordlicht Buchhandel", "Atelier Mirabeau", "Tall Pine Joinery",
    "Quellhof Apotheke", "Three Rivers Veterinary", "Kite & Anchor Design", "Sundholm Energi",
    "Gable End Architects", "Café Zwölf", "Northgate Primary School", "Larkfield Surgery",
    "Moss, Fenn & Partners", "Weidenhof Gärtnerei", "Ponteverde Imports", "Halden Instruments",
)  # fmt: skip
TITLES = (
    "Accountant", "Architect", "Bookseller", "Carpenter", "Dentist", "Electrician", "Engineer",
    "Head of Sales", "Librarian", "Nurse", "Office Manager", "Physiotherapist", "Teacher",
    "Translator", "Veterinary Surgeon",
)  # fmt: skip
NOTES = (
    "Met at the sailing course.",
    "Prefers to be called in the evening.",
    "Neighbour from the third floor; has a spare key.",
    "Birthday present: tea, books, no flowers.",
    "Plays the viola in the Thursday quartet.",
    "Allergic to nuts, lactose and late trains.",
    "Parents of Tim from the kindergarten.",
    "First line of a note.\nSecond line, with a comma; and a semicolon.",
    "Lends out the trailer.\nAsk a week before.",
)
MOBILE_LABELS = ("iPhone", "_$!<Mobile>!$_", "Handy", "Mobile (private)")
HOME_LABELS = ("Holiday cottage", "_$!<Other>!$_", "Parents")


# --- Inventing people ----------------------------------------------------------


@dataclass
class Inventor:
    """Invents people, each with phone numbers that nobody else has.

    Uses only random(), the only method that is guaranteed to return the same
    numbers in every version of Python.
    """

    dice: random.Random
    serial: int = 0
    taken: set[str] = field(default_factory=lambda: set(REAL_NUMBERS))

    def chance(self, probability: float) -> bool:
        """Returns True with this probability."""
        return self.dice.random() < probability

    def below(self, limit: int) -> int:
        """Returns an integer from zero up to, but not including, the limit."""
        return int(self.dice.random() * limit)

    def pick(self, choices):
        """Returns one of the choices."""
        return choices[self.below(len(choices))]

    def shuffled(self, items) -> list:
        """Returns the items in random order."""
        return sorted(items, key=lambda _: self.dice.random())

    def next_serial(self) -> int:
        """Returns a serial number that was not used before."""
        self.serial += 1
        return self.serial

    def number(self, pattern: str) -> str:
        """Returns an unused phone number that matches the pattern."""
        while True:
            number = "".join(str(self.below(10)) if c == "#" else c for c in pattern)
            if number not in self.taken:
                self.taken.add(number)
                return number

    def moment(self) -> datetime:
        """Returns a time in the years 2016 to 2024."""
        return datetime(2016, 1, 4, 6) + timedelta(seconds=self.below(3270 * 86400))

    def phones(self, place: Place) -> tuple[Phone, ...]:
        """Returns at least one number for somebody who lives there."""
        phones = []
        if self.chance(0.76):
            label = self.pick(MOBILE_LABELS) if self.chance(0.15) else ""
            phones.append(Phone("mobile", self.number(place.mobile), label))
        if self.chance(0.40):
            label = self.pick(HOME_LABELS) if self.chance(0.12) else ""
            phones.append(Phone("home", self.number(place.landline), label))
        if self.chance(0.30) or not phones:
            phones.append(Phone("work", self.number(place.landline)))
            if self.chance(0.15):
                phones.append(Phone("work fax", self.number(place.landline)))
        if self.chance(0.03):
            phones.append(Phone("pager", self.number(place.mobile)))
        if self.chance(0.04):
            phones.append(Phone("home fax", self.number(place.landline)))
        return tuple(phones)

    def address(self, country: str, place: Place) -> Address:
        """Returns an address in this place."""
        street = self.pick(COUNTRIES[country].streets).format(1 + self.below(140))
        kind = "home" if self.chance(0.7) else "work"
        return Address(kind, street, place.city, place.region, place.postcode, country)

    def emails(self, mailbox: str, employed: bool) -> tuple[tuple[str, str], ...]:
        """Returns the private and, for the employed, the business e-mail address."""
        emails = []
        if self.chance(0.65):
            domain = self.pick(("example.org", "example.net"))
            emails.append(("home", f"{mailbox}@{domain}"))
        if employed:
            emails.append(("work", f"{mailbox}@example.com"))
        return tuple(emails)

    def photo(self) -> bytes:
        """Returns a picture small enough to occur by the dozen in an address book."""
        if self.chance(0.6):
            return tiny_jpeg()
        return tiny_png(bytes(40 * (1 + self.below(6)) for _ in range(3)))

    def person(self, given: str, family: str, country: str, mailbox: str = "") -> Person:
        """Returns a person of that name and invents the rest."""
        place = self.pick(COUNTRIES[country].places)
        employed = self.chance(0.4)
        nickname = NICKNAMES.get(given, "")
        born = date(1938, 1, 1) + timedelta(days=self.below(24000))
        return Person(
            serial=self.next_serial(),
            given=given,
            family=family,
            middle=self.pick("ABCDEFGHJKLMRST") + "." if self.chance(0.05) else "",
            prefix="Dr." if self.chance(0.04) else "",
            shown_as=family + given if family[0] in FAMILY_NAME_FIRST else "",
            nickname=nickname if self.chance(0.8) else "",
            organisation=self.pick(FIRMS) if employed else "",
            title=self.pick(TITLES) if employed and self.chance(0.7) else "",
            country=country,
            phones=self.phones(place),
            emails=self.emails(mailbox or mailbox_name(given, family), employed),
            address=self.address(country, place) if self.chance(0.35) else None,
            birthday=born if self.chance(0.25) else None,
            note=self.pick(NOTES) if self.chance(0.12) else "",
            revised=self.moment() if self.chance(0.96) else None,
            photo=self.photo() if self.chance(0.14) else b"",
        )

    def copy_of(self, person: Person) -> Person:
        """Returns the same person as another program has them, with other gaps."""
        kept = tuple(phone for phone in person.phones if self.chance(0.8))
        return replace(
            person,
            serial=self.next_serial(),
            middle="",
            prefix="",
            nickname=person.nickname if self.chance(0.5) else "",
            phones=() if self.chance(0.2) else kept or person.phones[:1],
            emails=tuple(email for email in person.emails if self.chance(0.7)),
            address=person.address if self.chance(0.6) else None,
            birthday=person.birthday if self.chance(0.6) else None,
            note="",
            revised=self.moment(),
            photo=b"",
        )

    def everybody(self) -> list[Person]:
        """Returns all ordinary people in random order."""
        people = [
            self.person(given, family, country, mailbox)
            for given, family, country, mailbox in OTHER_SCRIPTS
        ]
        for origin in ORIGINS:
            pairs = zip(self.shuffled(origin.given), self.shuffled(origin.family), strict=True)
            for given, family in pairs:
                people.append(self.person(given, family, self.pick(origin.countries)))
        return self.shuffled(people)


def mailbox_name(given: str, family: str) -> str:
    """Returns the local part of an e-mail address, such as "jose.ibanez"."""

    def letters(name: str) -> str:
        name = name.lower()
        for letter, substitute in zip("ßøæłđı", ("ss", "o", "ae", "l", "d", "i"), strict=True):
            name = name.replace(letter, substitute)
        plain = unicodedata.normalize("NFKD", name)
        return "".join(c for c in plain if c.isascii() and c.isalnum())

    return f"{letters(given)}.{letters(family)}"


def tiny_png(colour: bytes) -> bytes:
    """Returns a picture of four by four pixels of one colour.

    The pixels are stored without compression, because compressors differ in
    their output.
    """

    def chunk(kind: bytes, data: bytes) -> bytes:
        checksum = zlib.crc32(kind + data)
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", checksum)

    points = (b"\0" + colour * 4) * 4
    stored = b"\x78\x01\x01" + struct.pack("<HH", len(points), len(points) ^ 0xFFFF) + points
    return (
        b"\x89PNG\r\n\x1a\n"
        + chunk(b"IHDR", struct.pack(">IIBBBBB", 4, 4, 8, 2, 0, 0, 0))
        + chunk(b"IDAT", stored + struct.pack(">I", zlib.adler32(points)))
        + chunk(b"IEND", b"")
    )


def tiny_jpeg() -> bytes:
    """Returns a picture of eight by eight grey pixels."""

    def segment(marker: int, data: bytes) -> bytes:
        return struct.pack(">BBH", 0xFF, marker, len(data) + 2) + data

    one_code = b"\x01" + bytes(15) + b"\x00"
    return (
        b"\xff\xd8"
        + segment(0xDB, b"\x00" + b"\x10" * 64)
        + segment(0xC0, b"\x08\x00\x08\x00\x08\x01\x01\x11\x00")
        + segment(0xC4, b"\x00" + one_code)
        + segment(0xC4, b"\x10" + one_code)
        + segment(0xDA, b"\x01\x01\x00\x00\x3f\x00")
        + b"\x3f\xff\xd9"
    )


# --- The programs' number formats ---------------------------------------------


def compact(number: str) -> str:
    """+442079460123"""
    return number.replace(" ", "")


def bracketed(number: str) -> str:
    """+1 (415) 555-0123 in North America, elsewhere groups with spaces."""
    if not number.startswith("+1 "):
        return number
    _, area, exchange, line = number.split(" ")
    return f"+1 ({area}) {exchange}-{line}"


def national(number: str) -> str:
    """(415) 555-0123 or 020 7946 0123, as dialled within the country."""
    if number.startswith("+1 "):
        return bracketed(number).removeprefix("+1 ")
    return "0" + number.split(" ", 1)[1]


def dashed(number: str) -> str:
    """415-555-0123 or 02079460123, as phones display it."""
    if number.startswith("+1 "):
        return number.removeprefix("+1 ").replace(" ", "-")
    return compact(national(number))


# --- Lines --------------------------------------------------------------------


def escape(value: str) -> str:
    """Escapes the characters that separate values."""
    for plain, escaped in (("\\", "\\\\"), (",", "\\,"), (";", "\\;"), ("\n", "\\n")):
        value = value.replace(plain, escaped)
    return value


def compound(name: str, *parts: str) -> str:
    """Returns a line whose value has several parts."""
    return name + ":" + ";".join(escape(part) for part in parts)


def optional(name: str, value: str) -> list[str]:
    """Returns a line if there is a value."""
    return [compound(name, value)] if value else []


def n_parts(person: Person) -> tuple[str, ...]:
    """Returns the five parts of a name in the order of the N line."""
    return (person.family, person.given, person.middle, person.prefix, person.suffix)


def n_line(person: Person) -> list[str]:
    """Returns the N line, unless the person has none."""
    return [] if person.without_n else [compound("N", *n_parts(person))]


def adr_parts(address: Address) -> tuple[str, ...]:
    """Returns the seven parts of an address in the order of the ADR line."""
    country = COUNTRIES[address.country].name
    return ("", "", address.street, address.city, address.region, address.postcode, country)


def extended(moment: datetime) -> str:
    """2024-05-01T10:15:00Z"""
    return moment.isoformat() + "Z"


def basic(moment: datetime) -> str:
    """20240501T101500Z"""
    return extended(moment).replace("-", "").replace(":", "")


def picture_kind(photo: bytes) -> str:
    """JPEG or PNG."""
    return "PNG" if photo.startswith(b"\x89PNG") else "JPEG"


def base64_text(data: bytes) -> str:
    """Returns the data in Base64."""
    return base64.b64encode(data).decode("ascii")


def fold(line: bytes) -> list[bytes]:
    """Splits a line into pieces of at most 75 bytes, never within a character."""
    pieces = []
    room = 75
    while len(line) > room:
        cut = room
        while line[cut] & 0xC0 == 0x80:
            cut -= 1
        pieces.append(line[:cut])
        line = line[cut:]
        room = 74
    first, *others = [*pieces, line]
    return [first, *(b" " + other for other in others)]


def finished(lines: list[bytes], line_end: bytes) -> bytes:
    """Joins the lines to a card."""
    return b"".join(line + line_end for line in [b"BEGIN:VCARD", *lines, b"END:VCARD"])


def folded_card(lines: list[str], line_end: bytes) -> bytes:
    """Folds the lines and joins them to a card in UTF-8."""
    return finished([piece for line in lines for piece in fold(line.encode())], line_end)


def quoted_lines(head: str, tokens: list[str]) -> list[bytes]:
    """Joins the tokens of a quoted-printable value to the head, with soft breaks."""
    lines = [head]
    for token in tokens:
        if len(lines[-1]) + len(token) > 75:
            lines[-1] += "="
            lines.append("")
        lines[-1] += token
    return [line.encode("ascii") for line in lines]


# --- The programs -------------------------------------------------------------------

APPLE_PHONES = {
    "mobile": "type=CELL;type=VOICE",
    "home": "type=HOME;type=VOICE",
    "work": "type=WORK;type=VOICE",
    "main": "type=MAIN",
    "home fax": "type=HOME;type=FAX",
    "work fax": "type=WORK;type=FAX",
    "pager": "type=PAGER",
}
APPLE_PRODID = "PRODID:-//Apple Inc.//macOS 14.5//EN"


def labelled(lines: list[str], item: int, line: str, label: str) -> None:
    """Adds a line and its label, which share an item number."""
    lines += [f"item{item}.{line}", f"item{item}.X-ABLabel:{escape(label)}"]


def apple_card(person: Person) -> bytes:
    """Returns a card as Contacts on a Mac exports it."""
    lines = ["VERSION:3.0", APPLE_PRODID, *n_line(person), *optional("FN", person.formatted)]
    lines += optional("NICKNAME", person.nickname)
    if person.organisation:
        lines.append(compound("ORG", person.organisation, ""))
    lines += optional("TITLE", person.title)
    for index, (kind, mail) in enumerate(person.emails):
        preferred = "" if index else ";type=pref"
        lines.append(f"EMAIL;type=INTERNET;type={kind.upper()}{preferred}:{mail}")
    item = 0
    for index, phone in enumerate(person.phones):
        preferred = "" if index else ";type=pref"
        number = bracketed(phone.number)
        if phone.label:
            item += 1
            labelled(lines, item, f"TEL{preferred}:{number}", phone.label)
        else:
            lines.append(f"TEL;{APPLE_PHONES[phone.kind]}{preferred}:{number}")
    if person.address:
        item += 1
        kind = person.address.kind.upper()
        adr = compound(f"ADR;type={kind};type=pref", *adr_parts(person.address))
        lines += [f"item{item}.{adr}", f"item{item}.X-ABADR:{person.address.country.lower()}"]
    lines += optional("NOTE", person.note)
    if person.birthday:
        lines.append(f"BDAY:{person.birthday.isoformat()}")
    if person.photo:
        kind = picture_kind(person.photo)
        lines.append(f"PHOTO;ENCODING=b;TYPE={kind}:{base64_text(person.photo)}")
    if person.is_firm:
        lines.append("X-ABShowAs:COMPANY")
    identifier = person.identifier.upper()
    lines.append(f"UID:{identifier}" if person.serial % 2 else f"X-ABUID:{identifier}:ABPerson")
    if person.revised:
        lines.append("REV:" + extended(person.revised))
    return folded_card(lines, CRLF)


GOOGLE_PHONES = {
    "mobile": "CELL",
    "home": "HOME",
    "work": "WORK",
    "main": "MAIN",
    "home fax": "HOME;TYPE=FAX",
    "work fax": "WORK;TYPE=FAX",
    "pager": "PAGER",
}


def google_card(person: Person) -> bytes:
    """Returns a card as downloaded from Google Contacts: no identifier, no date."""
    lines = ["VERSION:3.0", *optional("FN", person.formatted), *n_line(person)]
    lines += optional("NICKNAME", person.nickname)
    lines += [f"EMAIL;TYPE=INTERNET;TYPE={kind.upper()}:{mail}" for kind, mail in person.emails]
    item = 0
    for phone in person.phones:
        if phone.label:
            item += 1
            labelled(lines, item, f"TEL:{compact(phone.number)}", phone.label)
        else:
            lines.append(f"TEL;TYPE={GOOGLE_PHONES[phone.kind]}:{compact(phone.number)}")
    if person.address:
        name = f"ADR;TYPE={person.address.kind.upper()}"
        lines.append(compound(name, *adr_parts(person.address)))
    lines += optional("ORG", person.organisation) + optional("TITLE", person.title)
    if person.birthday:
        lines.append(f"BDAY:{person.birthday.isoformat()}")
    lines += [*optional("NOTE", person.note), "CATEGORIES:myContacts"]
    return folded_card(lines, LF)


ANDROID_PHONES = {
    "mobile": "CELL",
    "home": "HOME",
    "work": "WORK",
    "main": "X-Main",
    "home fax": "HOME;FAX",
    "work fax": "WORK;FAX",
    "pager": "PAGER",
}


def android_line(name: str, *parts: str) -> list[bytes]:
    """Returns a line that quotes every byte as soon as one byte needs it."""
    escaped = [part.replace(";", "\\;").replace("\n", "\r\n") for part in parts]
    value = ";".join(escaped)
    if value.isascii() and "\n" not in value:
        return [f"{name}:{value}".encode("ascii")]
    tokens = []
    for part in escaped:
        tokens += [f"={byte:02X}" for byte in part.encode()] + [";"]
    return quoted_lines(f"{name};CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:", tokens[:-1])


def android_card(person: Person) -> bytes:
    """Returns a card as Android phones write it on a memory card."""
    lines = [b"VERSION:2.1"]
    if not person.without_n:
        lines += android_line("N", *n_parts(person))
    lines += android_line("FN", person.formatted)
    if person.nickname:
        nickname = ("vnd.android.cursor.item/nickname", person.nickname, "1", *[""] * 13)
        lines += android_line("X-ANDROID-CUSTOM", *nickname)
    for phone in person.phones:
        lines += android_line(f"TEL;{ANDROID_PHONES[phone.kind]}", dashed(phone.number))
    for kind, mail in person.emails:
        lines += android_line(f"EMAIL;{kind.upper()}", mail)
    if person.address:
        lines += android_line(f"ADR;{person.address.kind.upper()}", *adr_parts(person.address))
    if person.organisation:
        lines += android_line("ORG", person.organisation)
    if person.title:
        lines += android_line("TITLE", person.title)
    if person.note:
        lines += android_line("NOTE", person.note)
    if person.birthday:
        lines += android_line("BDAY", person.birthday.isoformat())
    if person.photo:
        head = f"PHOTO;ENCODING=BASE64;{picture_kind(person.photo)}:"
        lines += [*fold((head + base64_text(person.photo)).encode()), b""]
    return finished(lines, CRLF)


OUTLOOK_PHONES = {
    "mobile": "CELL;VOICE",
    "home": "HOME;VOICE",
    "work": "WORK;VOICE",
    "main": "WORK;PREF",
    "home fax": "HOME;FAX",
    "work fax": "WORK;FAX",
    "pager": "PAGER;VOICE",
}


def outlook_line(name: str, *parts: str) -> list[bytes]:
    """Returns a line in Windows' code page if possible, named if it matters."""
    value = ";".join(part.replace(";", "\\;").replace("\n", "\r\n") for part in parts)
    try:
        data, charset = value.encode("cp1252"), "windows-1252"
    except UnicodeEncodeError:
        data, charset = value.encode(), "utf-8"
    head = name if value.isascii() else f"{name};CHARSET={charset}"
    if "\n" not in value:
        return [head.encode("ascii") + b":" + data]
    tokens = [chr(byte) if 32 <= byte < 127 and byte != 61 else f"={byte:02X}" for byte in data]
    return quoted_lines(head + ";ENCODING=QUOTED-PRINTABLE:", tokens)


def outlook_card(person: Person) -> bytes:
    """Returns a card as Outlook saves it."""
    language = COUNTRIES[person.country].language
    lines = [b"VERSION:2.1", b"X-MS-SIGNATURE:YES"]
    if not person.without_n:
        lines += outlook_line(f"N;LANGUAGE={language}", *n_parts(person))
    lines += outlook_line("FN", person.formatted)
    if person.nickname:
        lines += outlook_line("NICKNAME", person.nickname)
    if person.organisation:
        lines += outlook_line("ORG", person.organisation)
    if person.title:
        lines += outlook_line("TITLE", person.title)
    if person.note:
        lines += outlook_line("NOTE", person.note)
    for phone in person.phones:
        lines += outlook_line(f"TEL;{OUTLOOK_PHONES[phone.kind]}", national(phone.number))
    if person.address:
        kind = person.address.kind.upper()
        lines += outlook_line(f"ADR;{kind};PREF", *adr_parts(person.address))
        lines += outlook_line("X-MS-OL-DEFAULT-POSTAL-ADDRESS", "1" if kind == "HOME" else "2")
    if person.birthday:
        lines += outlook_line("BDAY", person.birthday.isoformat().replace("-", ""))
    for index, (_, mail) in enumerate(person.emails):
        lines += outlook_line("EMAIL;INTERNET" if index else "EMAIL;PREF;INTERNET", mail)
    if person.photo:
        head = f"X-MS-CARDPICTURE;TYPE={picture_kind(person.photo)};ENCODING=BASE64:"
        lines += [head.encode(), *fold(b" " + base64_text(person.photo).encode()), b""]
    if person.revised:
        lines += outlook_line("REV", basic(person.revised))
    return finished(lines, CRLF)


KDE_PHONES = {
    "mobile": "CELL",
    "home": "HOME,VOICE",
    "work": "WORK,VOICE",
    "main": "WORK,PREF",
    "home fax": "HOME,FAX",
    "work fax": "WORK,FAX",
    "pager": "PAGER",
}


def kde_card(person: Person) -> bytes:
    """Returns a card as KDE's address book stores it: lines in alphabetical order."""
    lines = optional("FN", person.formatted) + n_line(person)
    lines += optional("NICKNAME", person.nickname) + optional("NOTE", person.note)
    lines += optional("ORG", person.organisation) + optional("TITLE", person.title)
    for index, (_, mail) in enumerate(person.emails):
        lines.append(f"EMAIL:{mail}" if index else f"EMAIL;TYPE=PREF:{mail}")
    lines += [f"TEL;TYPE={KDE_PHONES[phone.kind]}:{phone.number}" for phone in person.phones]
    if person.address:
        name = f"ADR;TYPE={person.address.kind}"
        lines.append(compound(name, *adr_parts(person.address)))
    if person.birthday:
        lines.append(f"BDAY:{person.birthday.isoformat()}")
    if person.organisation:
        lines.append(f"X-KADDRESSBOOK-X-Office:{escape(person.organisation)}")
    lines += ["UID:" + person.identifier, "X-KADDRESSBOOK-OPENPGPFP:"]
    if person.revised:
        lines.append("REV:" + extended(person.revised))
    return folded_card(["VERSION:3.0", *sorted(lines)], CRLF)


def evolution_card(person: Person) -> bytes:
    """Returns a card as Evolution, GNOME's mail program, saves it."""
    file_as = ", ".join(part for part in (person.family, person.given) if part)
    lines = ["VERSION:3.0", *optional("TITLE", person.title)]
    lines += optional("NICKNAME", person.nickname)
    if person.birthday:
        lines.append(f"BDAY:{person.birthday.isoformat()}")
    lines += [*optional("NOTE", person.note), *optional("FN", person.formatted), *n_line(person)]
    lines += optional("X-EVOLUTION-FILE-AS", file_as or person.formatted)
    lines += optional("ORG", person.organisation)
    for slot, (kind, mail) in enumerate(person.emails, 1):
        lines.append(f"EMAIL;X-EVOLUTION-UI-SLOT={slot};TYPE={kind.upper()}:{mail}")
    for slot, phone in enumerate(person.phones, 1):
        kind = KDE_PHONES[phone.kind]
        lines.append(f"TEL;X-EVOLUTION-UI-SLOT={slot};TYPE={kind}:{bracketed(phone.number)}")
    if person.address:
        name = f"ADR;TYPE={person.address.kind.upper()}"
        lines.append(compound(name, *adr_parts(person.address)))
    identifier = person.identifier.replace("-", "")[:16].upper()
    lines += ["X-MOZILLA-HTML:FALSE", f"UID:pas-id-{identifier}"]
    if person.revised:
        lines.append("REV:" + extended(person.revised))
    return folded_card(lines, LF)


VCARD4_PHONES = {
    "mobile": '"cell,voice"',
    "home": '"home,voice"',
    "work": '"work,voice"',
    "main": '"work,voice";PREF=1',
    "home fax": '"home,fax"',
    "work fax": '"work,fax"',
    "pager": "pager",
}


def vcard4_card(person: Person) -> bytes:
    """Returns a card of version 4.0, as a Nextcloud server sends it."""
    lines = ["VERSION:4.0", "PRODID:-//Sabre//Sabre VObject 4.5.4//EN"]
    lines.append("UID:urn:uuid:" + person.identifier)
    lines.append("KIND:org" if person.is_firm else "KIND:individual")
    lines += [*optional("FN", person.formatted), *n_line(person)]
    lines += optional("NICKNAME", person.nickname)
    for phone in person.phones:
        number = phone.number.replace(" ", "-")
        lines.append(f"TEL;VALUE=uri;TYPE={VCARD4_PHONES[phone.kind]}:tel:{number}")
    lines += [f"EMAIL;TYPE={kind}:{mail}" for kind, mail in person.emails]
    if person.address:
        name = f"ADR;TYPE={person.address.kind}"
        lines.append(compound(name, *adr_parts(person.address)))
    lines += optional("ORG", person.organisation) + optional("TITLE", person.title)
    if person.birthday:
        lines.append("BDAY:" + person.birthday.isoformat().replace("-", ""))
    lines += optional("NOTE", person.note)
    if person.photo:
        kind = picture_kind(person.photo).lower()
        lines.append(f"PHOTO:data:image/{kind};base64,{base64_text(person.photo)}")
    if person.revised:
        lines.append("REV:" + basic(person.revised))
    return folded_card(lines, CRLF)


# How many cards of ordinary people each program exports, in the order of the
# exports in the file.
PROGRAMS = {
    apple_card: 0.28,
    google_card: 0.20,
    android_card: 0.15,
    outlook_card: 0.14,
    kde_card: 0.09,
    evolution_card: 0.08,
    vcard4_card: 0.06,
}


# --- Odd cards ------------------------------------------------------------------------


def without_end(card: bytes) -> bytes:
    """Returns the card without its last line."""
    return card[: card.rindex(b"END:VCARD")]


def with_late_label(card: bytes) -> bytes:
    """Returns the card with the label of its first item far from the item."""
    lines = card.split(CRLF)
    label = next(line for line in lines if line.startswith(b"item1.X-ABLabel:"))
    lines.remove(label)
    lines.insert(lines.index(b"END:VCARD"), label)
    return CRLF.join(lines)


def with_agent(card: bytes, agent: bytes) -> bytes:
    """Returns the card with an assistant's card inside."""
    return without_end(card) + b"AGENT:" + CRLF + agent + b"END:VCARD" + CRLF


def group_card(name: str, serial: int, members: list[Person], revised: datetime) -> bytes:
    """Returns a list of people, which Apple's program writes like another person."""
    group = Person(serial)
    lines = ["VERSION:3.0", APPLE_PRODID, compound("N", name), compound("FN", name)]
    lines.append("X-ADDRESSBOOKSERVER-KIND:group")
    for member in members:
        lines.append(f"X-ADDRESSBOOKSERVER-MEMBER:urn:uuid:{member.identifier.upper()}")
    lines += ["UID:" + group.identifier.upper(), "REV:" + extended(revised)]
    return folded_card(lines, CRLF)


def firms(inventor: Inventor) -> list[tuple]:
    """Returns firms and services: some with an empty N, some without N."""

    def firm(name: str, country: str, kind: str, without_n: bool) -> Person:
        place = COUNTRIES[country].places[0]
        return Person(
            inventor.next_serial(),
            organisation=name,
            country=country,
            phones=(Phone(kind, inventor.number(place.landline)),),
            revised=inventor.moment(),
            is_firm=True,
            without_n=without_n,
        )

    return [
        (apple_card, firm("Larkfield Surgery", "GB", "main", False)),
        (apple_card, firm("Lakeside Boat Hire", "US", "work", True)),
        (google_card, firm("Moss, Fenn & Partners; Solicitors", "GB", "work", False)),
        (google_card, firm("Taxi Grünwald", "DE", "mobile", True)),
        (android_card, firm("Bäckerei Hollerbusch", "DE", "work", False)),
        (evolution_card, firm("Nordlicht Buchhandel", "DE", "work", True)),
        (vcard4_card, firm("Sundholm Energi AB", "SE", "work", True)),
    ]


def scanty_people(inventor: Inventor) -> list[tuple]:
    """Returns entries with little more than a name."""
    mobile = (Phone("mobile", inventor.number(UK_MOBILE)),)
    home = (Phone("home", inventor.number("+1 415 555 01##")),)
    return [
        (google_card, Person(inventor.next_serial(), shown_as="Plumber", without_n=True)),
        (android_card, Person(inventor.next_serial(), nickname="Spud", phones=mobile)),
        (apple_card, Person(inventor.next_serial(), nickname="Nonna", phones=home)),
        (kde_card, Person(inventor.next_serial(), emails=(("home", "list@example.org"),))),
        (outlook_card, Person(inventor.next_serial(), given="Margit")),
    ]


def peculiar_names(inventor: Inventor) -> list[tuple]:
    """Returns names that are long, padded, decorated, or need escaping."""
    padded = inventor.person("  Petra ", " Sommerfeld  ", "DE")
    tidy = replace(inventor.copy_of(padded), given="Petra", family="Sommerfeld")
    accented = inventor.person("Zoë", "Hallström", "SE")
    plain = replace(inventor.copy_of(accented), given="Zoe", family="Hallstrom")
    shouting = inventor.person("ROLAND", "PFEIFFER", "DE")
    quiet = replace(inventor.copy_of(shouting), given="Roland", family="Pfeiffer")
    lengthy = inventor.person(
        "Maximilian-Konstantin Friedrich Leopold Ferdinand",
        "Freiherr von und zu Hohenwartenfels-Mittelstedt auf Niederrheinsbüttel und Klein Wörrlau",
        "DE",
    )
    learned = replace(inventor.person("Harold", "Bexley", "GB"), suffix="Jr., M.A.; F.R.S.A.")
    return [
        (google_card, padded),
        (apple_card, tidy),
        (apple_card, accented),
        (android_card, plain),
        (outlook_card, shouting),
        (google_card, quiet),
        (kde_card, lengthy),
        (evolution_card, learned),
        (google_card, inventor.person("Marta 🌻", "Espinar", "US")),
        (apple_card, inventor.person("D'Arcy", "O'Rourke-St. John", "AU")),
    ]


def exact_copies(inventor: Inventor) -> list[tuple]:
    """Returns people whose identical card occurs two or three times, without identifier."""
    twice = inventor.person("Lorna", "Tidewell", "GB")
    thrice = inventor.person("Käthe", "Brömmel", "DE")
    return [(google_card, twice)] * 2 + [(android_card, thrice)] * 3


def namesakes(inventor: Inventor) -> list[tuple]:
    """Returns different people with the same name."""

    def two(given: str, family: str, *countries: str) -> list[Person]:
        return [
            replace(
                inventor.person(given, family, country, f"{given[0]}{family}{number}".lower()),
                address=inventor.address(country, COUNTRIES[country].places[0]),
                birthday=date(1949 + 33 * number, 3 + number, 12),
                title=("Dentist", "Student")[number],
            )
            for number, country in enumerate(countries)
        ]

    dentist, student = two("Thomas", "Ahrendt", "DE", "US")
    aunt, niece = two("Sarah", "Collingham", "GB", "AU")
    return [
        (apple_card, dentist),
        (google_card, student),
        (outlook_card, aunt),
        (android_card, niece),
    ]


def shared_identifiers(inventor: Inventor) -> list[tuple]:
    """Returns two people with one identifier, and two revisions of one person with one."""
    one = inventor.person("Bernhard", "Kloster", "DE")
    other = replace(inventor.person("Yvonne", "Aldercott", "GB"), serial=one.serial)
    older = replace(inventor.person("Simone", "Wexford", "US"), revised=datetime(2017, 8, 2, 9, 5))
    newer = replace(
        older,
        organisation="Halden Instruments",
        phones=(*older.phones, Phone("work", inventor.number("+1 617 555 01##"))),
        revised=datetime(2022, 11, 19, 17, 40, 12),
    )
    return [(kde_card, one), (kde_card, other), (vcard4_card, older), (vcard4_card, newer)]


ODD_PEOPLE = (
    firms,
    scanty_people,
    peculiar_names,
    exact_copies,
    namesakes,
    shared_identifiers,
)


def broken_cards(inventor: Inventor, members: list[Person]) -> list[tuple]:
    """Returns finished cards whose lines are not where a parser expects them."""
    lost = inventor.person("Dorothea", "Ullsmere", "GB")
    labelled_late = replace(
        inventor.person("Gregor", "Anstruth", "US"),
        phones=(
            Phone("mobile", inventor.number("+1 773 555 01##"), "iPhone"),
            Phone("work", inventor.number("+1 312 555 01##")),
        ),
        photo=tiny_png(b"\x30\x60\xc0"),
    )
    principal = inventor.person("Verena", "Stachelberg", "DE")
    assistant = inventor.person("Till", "Rasmus", "DE")
    group = group_card("Book club", inventor.next_serial(), members, inventor.moment())
    return [
        (apple_card, group),
        (apple_card, with_late_label(apple_card(labelled_late))),
        (google_card, without_end(google_card(lost))),
        (outlook_card, with_agent(outlook_card(principal), outlook_card(assistant))),
    ]


# --- The whole file ----------------------------------------------------------------------


def copies_across_programs(inventor: Inventor, people: list[Person]) -> list[tuple]:
    """Returns the people two, three or four times, each time in another program."""
    programs = list(PROGRAMS)
    dealt = []
    for index, person in enumerate(people):
        times = 4 if index == 0 else 3 if index < 6 else 2
        first, *others = inventor.shuffled(programs)[:times]
        dealt.append((first, person))
        dealt += [(program, inventor.copy_of(person)) for program in others]
    return dealt


def shared_out(inventor: Inventor, people: list[Person]) -> list[tuple]:
    """Distributes the people over the programs, each once."""
    dealt = []
    start = 0.0
    for program, share in PROGRAMS.items():
        stop = start + share * len(people)
        dealt += [(program, person) for person in people[round(start) : round(stop)]]
        start = stop
    return dealt


def address_book() -> bytes:
    """Returns the whole file: all exports, some cards separated by a blank line."""
    inventor = Inventor(random.Random(SEED))
    people = inventor.everybody()
    dealt = copies_across_programs(inventor, people[:28]) + shared_out(inventor, people[28:])
    members = [person for program, person in dealt if program is apple_card][-4:]
    for odd in ODD_PEOPLE:
        dealt += odd(inventor)
    dealt += broken_cards(inventor, members)
    cards = []
    for program in PROGRAMS:
        own = inventor.shuffled([entry for owner, entry in dealt if owner is program])
        for entry in own:
            card = program(entry) if isinstance(entry, Person) else entry
            cards.append(card)
            if program is kde_card or inventor.chance(0.06):
                cards.append(CRLF if card.endswith(CRLF) else LF)
    return b"".join(cards)


def main() -> int:
    """Writes the file, or compares it with what would be written."""
    parser = argparse.ArgumentParser(description="Write an address book of invented people.")
    parser.add_argument("--check", action="store_true", help="only compare; fail if the file differs")
    if not parser.parse_args().check:
        TARGET.write_bytes(address_book())
        return 0
    if not TARGET.is_file() or TARGET.read_bytes() != address_book():
        print(f"{TARGET.name} is out of date. Run {Path(__file__).name}.", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
