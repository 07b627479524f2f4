#!/usr/bin/env python3
"""letters.py - business letters with known recipient and sender blocks, for measuring the
address recognition.

  tools/letters.py hocr   --out DIR [--count N] [--seed S]   clean hOCR layouts + truth.json
  tools/letters.py render --out DIR [--count N] [--seed S]   PNG pages (ImageMagick) + truth.json

Each letter is German (Germany, Austria, Switzerland: DIN 5008 form A or B) or English
(United Kingdom, United States), with random but realistic names, companies, streets, towns
and postal codes; a return address over the window, often a letterhead with contact data, a
date line, a subject, an invoice table and a footer with bank data as near-misses. The same
seed gives the same letters. truth.json maps each file name to its "recipient" and "sender"
fields (the sender is the letterhead when there is one, else the return address).
"""
import argparse
import html
import json
import os
import random
import subprocess

FIRST_DE = ["Anna", "Max", "Lena", "Jonas", "Sophie", "Lukas", "Marie", "Felix", "Julia", "Paul",
            "Katharina", "Stefan", "Ursula", "Jürgen", "Sabine", "Günther", "Hannah", "Tobias"]
LAST_DE = ["Müller", "Schmidt", "Schneider", "Fischer", "Weber", "Meyer", "Wagner", "Becker",
           "Hoffmann", "Schäfer", "Koch", "Bauer", "Richter", "Klein", "Wolf", "Schröder",
           "Neumann", "Schwarz", "Zimmermann", "Krüger", "Hofmann", "Hartmann", "Lange"]
FIRST_EN = ["James", "Mary", "John", "Patricia", "Robert", "Jennifer", "Michael", "Linda",
            "David", "Emily", "Oliver", "Charlotte", "George", "Amelia", "Harry", "Olivia"]
LAST_EN = ["Smith", "Johnson", "Williams", "Brown", "Jones", "Taylor", "Davies", "Evans",
           "Wilson", "Thomas", "Roberts", "Walker", "Wright", "Thompson", "White", "Hughes",
           "Green", "Baker", "Clarke", "Miller", "Anderson", "Martin", "Jackson"]
WORDS_DE = ["Nord", "Süd", "Alpen", "Rhein", "Main", "Elb", "Donau", "Tal", "Berg", "Sonnen",
            "Stern", "Linden", "Eichen", "Stadt", "Wald", "Brücken", "Mühlen", "Markt"]
TRADES_DE = ["Bau", "Technik", "Logistik", "Druck", "Handel", "Metall", "Energie", "Software",
             "Immobilien", "Versicherung", "Möbel", "Elektro"]
WORDS_EN = ["North", "Silver", "Oak", "River", "Bright", "Harbour", "Summit", "Pine", "Kings",
            "Crown", "Maple", "Blue", "Granite", "Eagle", "Ash", "Meadow"]
TRADES_EN = ["Logistics", "Printing", "Software", "Engineering", "Supplies", "Consulting",
             "Foods", "Textiles", "Motors", "Finance", "Builders", "Media"]
FORMS = {"DE": ["GmbH", "AG", "GmbH & Co. KG", "KG", "e.V."], "AT": ["GmbH", "AG", "GesmbH", "KG"],
         "CH": ["AG", "GmbH", "SA"], "UK": ["Ltd", "Limited", "plc", "LLP"],
         "US": ["Inc.", "LLC", "Corp.", "Corporation"]}
STREETS_DE = ["Hauptstraße", "Bahnhofstraße", "Gartenweg", "Schillerstraße", "Goethestraße",
              "Lindenallee", "Marktplatz", "Am Mühlbach", "Kirchgasse", "Industriestraße",
              "Rosenweg", "Berliner Straße", "Hauptstr.", "Waldstr.", "Ringstraße"]
STREETS_EN = ["High Street", "Station Road", "Church Lane", "Victoria Road", "Mill Lane",
              "Park Avenue", "Main Street", "Oak Street", "Elm Street", "Maple Avenue",
              "Washington Boulevard", "Lake Drive", "King Street", "Queens Road"]
TOWNS = {"DE": ["Berlin", "Hamburg", "München", "Köln", "Frankfurt am Main", "Stuttgart",
                "Düsseldorf", "Leipzig", "Dresden", "Hannover", "Nürnberg", "Halle (Saale)",
                "Freiburg im Breisgau", "Bad Homburg"],
         "AT": ["Wien", "Graz", "Linz", "Salzburg", "Innsbruck", "Klagenfurt", "St. Pölten"],
         "CH": ["Zürich", "Bern", "Basel", "Genf", "Luzern", "St. Gallen", "Winterthur"],
         "UK": ["London", "Manchester", "Birmingham", "Leeds", "Bristol", "Cardiff", "Edinburgh",
                "Newcastle upon Tyne", "Stoke-on-Trent"],
         "US": ["Springfield", "Portland", "Austin", "Denver", "Boston", "Madison", "Columbus",
                "Salt Lake City", "San Diego", "New York"]}
STATES = ["IL", "OR", "TX", "CO", "MA", "WI", "OH", "UT", "CA", "NY", "PA", "WA"]
COUNTRY_LINES = {"DE": ["Deutschland", "GERMANY"], "AT": ["Österreich", "ÖSTERREICH", "Austria"],
                 "CH": ["Schweiz", "SCHWEIZ", "Switzerland"], "UK": ["United Kingdom", "UK"],
                 "US": ["USA", "United States"]}
DEPARTMENTS = ["Abteilung Einkauf", "Buchhaltung", "Accounts Department", "Purchasing Department"]
MONTHS_DE = ["Januar", "Februar", "März", "April", "Mai", "Juni", "Juli", "August", "September",
             "Oktober", "November", "Dezember"]
MONTHS_EN = ["January", "February", "March", "April", "May", "June", "July", "August",
             "September", "October", "November", "December"]


class Letter:
    def __init__(self, country, layout):
        self.country = country   # DE AT CH UK US
        self.layout = layout     # A, B (DIN 5008 forms), UK, US
        self.blocks = []         # (x_mm, y_mm, size_pt, [lines])
        self.truth = {}

    @property
    def german(self):
        return self.country in ("DE", "AT", "CH")

    @property
    def page_mm(self):
        return (215.9, 279.4) if self.layout == "US" else (210.0, 297.0)

    def add(self, x, y, size, lines):
        self.blocks.append((x, y, size, lines))
        return y + len(lines) * line_pitch_mm(size)


def line_pitch_mm(size):
    return size * 0.3528 * 1.25


def postal_code(rng, country):
    if country == "DE":
        return "%05d" % rng.randint(1067, 99998)
    if country in ("AT", "CH"):
        return "%04d" % rng.randint(1010, 9992)
    if country == "US":
        return "%05d" % rng.randint(10001, 99950) + (("-%04d" % rng.randint(1, 9999)) if rng.random() < 0.2 else "")
    area = rng.choice(["SW", "EC", "M", "B", "LS", "BS", "CF", "EH", "NE", "ST", "W", "N"])
    district = rng.randint(1, 19)
    # A letter may follow a one-digit district only ("W1A", never "W12A").
    outward = area + str(district) + (rng.choice("ABCDEFGHJKMNPRSTUVWXY") if district < 10 and rng.random() < 0.3 else "")
    return outward + " " + str(rng.randint(1, 9)) + "".join(rng.choice("ABDEFGHJLNPQRSTUWXYZ") for _ in range(2))


def house_number(rng):
    n = str(rng.randint(1, 199))
    r = rng.random()
    return n + rng.choice("abc") if r < 0.15 else n + "-" + str(int(n) + 2) if r < 0.2 else n


def address(rng, country, with_person, with_company):
    """The fields and the lines of one postal address."""
    german = country in ("DE", "AT", "CH")
    f = {"name": "", "company": "", "street": "", "houseNumber": "", "postalCode": "", "town": "",
         "country": ""}
    lines = []
    if with_company:
        if german:
            f["company"] = rng.choice([rng.choice(LAST_DE) + " " + rng.choice(TRADES_DE),
                                       rng.choice(WORDS_DE) + rng.choice(TRADES_DE).lower()]) + " " + rng.choice(FORMS[country])
        else:
            f["company"] = rng.choice(WORDS_EN) + " " + rng.choice(TRADES_EN) + " " + rng.choice(FORMS[country])
        lines.append(f["company"])
        if rng.random() < 0.15:
            lines.append(rng.choice(DEPARTMENTS[:2] if german else DEPARTMENTS[2:]))
    if with_person:
        first, last = (rng.choice(FIRST_DE), rng.choice(LAST_DE)) if german else (rng.choice(FIRST_EN), rng.choice(LAST_EN))
        title = rng.choice(["", "", "", "Dr. "])
        f["name"] = title + first + " " + last
        if german:
            female = first in ("Anna", "Lena", "Sophie", "Marie", "Julia", "Katharina", "Ursula", "Sabine", "Hannah")
            salutation = "Frau" if female else "Herrn"
            style = rng.random()
            if with_company:
                lines.append(("z. Hd. " + salutation + " " if style < 0.5 else "") + f["name"])
            elif style < 0.5:
                lines += [salutation, f["name"]]
            else:
                lines.append(salutation + " " + f["name"])
        else:
            salutation = "" if title else rng.choice(["Mr", "Ms", "Mrs", "Mr.", "Ms.", "", ""])
            prefix = "Attn: " if with_company and rng.random() < 0.3 else ""
            lines.append(prefix + (salutation + " " if salutation else "") + f["name"])
    if rng.random() < 0.1:
        f["street"] = "Postfach" if german else "PO Box"
        f["houseNumber"] = (" ".join("%02d" % rng.randint(10, 99) for _ in range(3)) if german
                            else str(rng.randint(100, 9999)))
        lines.append(f["street"] + " " + f["houseNumber"])
    else:
        f["street"] = rng.choice(STREETS_DE if german else STREETS_EN)
        f["houseNumber"] = house_number(rng) if german else str(rng.randint(1, 2999))
        lines.append(f["street"] + " " + f["houseNumber"] if german else f["houseNumber"] + " " + f["street"])
    f["postalCode"] = postal_code(rng, country)
    f["town"] = rng.choice(TOWNS[country])
    if country == "US":
        lines.append("%s, %s %s" % (f["town"], rng.choice(STATES), f["postalCode"]))
    elif country == "UK":
        town = f["town"].upper() if rng.random() < 0.5 else f["town"]
        f["town"] = town
        if rng.random() < 0.6:
            lines += [town, f["postalCode"]]
        else:
            lines.append(town + " " + f["postalCode"])
    else:
        prefix = {"DE": "D-", "AT": "A-", "CH": "CH-"}[country] if rng.random() < 0.1 else ""
        lines.append(prefix + f["postalCode"] + " " + f["town"])
    return f, lines


def contact_lines(rng, letter, company):
    domain = "".join(c for c in company.split(" ")[0].lower() if c.isascii() and c.isalpha()) or "firma"
    tld = {"DE": "de", "AT": "at", "CH": "ch", "UK": "co.uk", "US": "com"}[letter.country]
    if letter.german:
        phone = "+%s %d %d" % ({"DE": "49", "AT": "43", "CH": "41"}[letter.country], rng.randint(20, 899), rng.randint(100000, 9999999))
        return ["Tel. " + phone, "E-Mail: info@%s.%s" % (domain, tld), "www.%s.%s" % (domain, tld)], phone
    phone = "+44 20 %d %d" % (rng.randint(1000, 9999), rng.randint(1000, 9999)) if letter.country == "UK" \
        else "(%d) %d-%04d" % (rng.randint(201, 989), rng.randint(200, 999), rng.randint(0, 9999))
    return ["Phone: " + phone, "Email: office@%s.%s" % (domain, tld), "www.%s.%s" % (domain, tld)], phone


def make_letter(rng):
    country = rng.choice(["DE", "DE", "AT", "CH", "UK", "US"])
    layout = rng.choice(["A", "B"]) if country in ("DE", "AT", "CH") else country
    letter = Letter(country, layout)
    german = letter.german
    sender_country = country
    sender, sender_lines = address(rng, sender_country, False, True)
    sender_lines = [line for line in sender_lines if line not in DEPARTMENTS]
    letterhead = not german or rng.random() < 0.6
    contacts, phone = contact_lines(rng, letter, sender["company"])
    if letterhead:
        x = 19 if layout == "US" else 125
        letter.add(x, 12, 10, sender_lines + contacts)
        letter.truth["sender"] = dict(sender, phone=phone)
    # The recipient, the return address above it in German letters.
    company = rng.random() < 0.6
    recipient, recipient_lines = address(rng, country, not company or rng.random() < 0.6, company)
    if country in ("UK", "US") or rng.random() < 0.3:
        if rng.random() < 0.2:
            recipient_lines.append(rng.choice(COUNTRY_LINES[country]))
            recipient["country"] = recipient_lines[-1]
    elif country in ("AT", "CH"):
        recipient_lines.append(rng.choice(COUNTRY_LINES[country]))
        recipient["country"] = recipient_lines[-1]
    top = {"A": 29, "B": 47, "UK": 45, "US": 50}[layout]
    if german:
        separator = rng.choice([" · ", " | ", " • ", ", ", " - "])
        letter.add(20, top, 7, [separator.join(sender_lines)])
        if not letterhead:
            letter.truth["sender"] = dict(sender, phone="")
        top += 5
    x = 19 if layout == "US" else 20
    letter.truth["recipient"] = recipient
    letter.truth["recipientLines"] = recipient_lines
    end = letter.add(x, top, 10, recipient_lines)
    # Near-misses: the date line, the subject, an invoice table, a footer with bank data.
    day, month, year = rng.randint(1, 28), rng.randint(1, 12), rng.randint(2019, 2026)
    place = sender["town"]
    date = ("%s, %d. %s %d" % (place, day, MONTHS_DE[month - 1], year) if german and rng.random() < 0.5
            else "%s, %02d.%02d.%d" % (place, day, month, year) if german
            else "%d %s %d" % (day, MONTHS_EN[month - 1], year) if layout == "UK"
            else "%s %d, %d" % (MONTHS_EN[month - 1], day, year))
    letter.add(125 if layout in ("A", "B") else x, max(end + 8, 100), 10, [date])
    subject = ("Rechnung Nr. %d vom %02d.%02d.%d" if german else "Invoice No. %d of %02d/%02d/%d") % (
        rng.randint(10000, 99999), day, month, year)
    y = letter.add(x + 5 if layout in ("A", "B") else x, max(end + 8, 100) + 12, 10, [subject])
    body = (["Sehr geehrte Damen und Herren,", "", "wir berechnen Ihnen die folgenden Leistungen:"]
            if german else ["Dear Sir or Madam,", "", "Please find below the services we provided:"])
    y = letter.add(x + 5 if layout in ("A", "B") else x, y + 8, 10, body)
    table = ["Pos. Artikel Menge Preis" if german else "Item Description Qty Price"]
    for i in range(rng.randint(2, 4)):
        table.append("%d %s %d %d,%02d EUR" % (i + 1, rng.choice(TRADES_DE if german else TRADES_EN),
                                                rng.randint(1, 20), rng.randint(1, 999), rng.randint(0, 99)))
    table.append("%05d %s %d,00" % (rng.randint(10000, 99999), "Summe" if german else "Total", rng.randint(100, 9999)))
    y = letter.add(x + 5 if layout in ("A", "B") else x, y + 6, 10, table)
    letter.add(x + 5 if layout in ("A", "B") else x, y + 8, 10,
               ["Mit freundlichen Grüßen" if german else "Yours faithfully", "", sender["company"]])
    footer = ["IBAN DE%02d 3704 0044 0532 %04d 00 · BIC COBADEFFXXX" % (rng.randint(10, 99), rng.randint(0, 9999)),
              "Amtsgericht %s HRB %d" % (place, rng.randint(1000, 99999)) if german else
              "Registered in England No. %d" % rng.randint(1000000, 9999999)]
    letter.add(x, letter.page_mm[1] - 20, 7, footer)
    return letter


DPI = 300


def px(mm):
    return int(round(mm / 25.4 * DPI))


def write_hocr(letter, path):
    """The letter as a clean hOCR page: each word's box from the font size and the text."""
    width, height = px(letter.page_mm[0]), px(letter.page_mm[1])
    out = ['<?xml version="1.0" encoding="UTF-8"?>',
           '<html xmlns="http://www.w3.org/1999/xhtml"><head><title></title>',
           '<meta http-equiv="Content-Type" content="text/html;charset=utf-8"/>',
           "<meta name='ocr-capabilities' content='ocr_page ocr_carea ocr_line ocrx_word'/>",
           '</head><body>',
           "<div class='ocr_page' id='page_1' title='bbox 0 0 %d %d'>" % (width, height)]
    for b, (x, y, size, lines) in enumerate(letter.blocks):
        em = size / 72 * DPI
        out.append("<div class='ocr_carea' id='block_%d'>" % b)
        for i, line in enumerate(lines):
            if not line:
                continue
            top = px(y + i * line_pitch_mm(size))
            left = px(x)
            boxes = []
            for word in line.split(" "):
                w = max(1, int(len(word) * em * 0.55))
                boxes.append((left, word, w))
                left += w + int(em * 0.3)
            out.append("<span class='ocr_line' title='bbox %d %d %d %d'>" % (
                px(x), top, boxes[-1][0] + boxes[-1][2], top + int(em)))
            for left, word, w in boxes:
                out.append("<span class='ocrx_word' title='bbox %d %d %d %d; x_wconf 96'>%s</span>" % (
                    left, top, left + w, top + int(em), html.escape(word)))
            out.append("</span>")
        out.append("</div>")
    out.append("</div></body></html>")
    with open(path, "w", encoding="utf-8") as f:
        f.write("\n".join(out) + "\n")


def render_png(letter, path):
    """The letter as a page image, each block drawn where the layout puts it."""
    width, height = px(letter.page_mm[0]), px(letter.page_mm[1])
    args = ["convert", "-size", "%dx%d" % (width, height), "xc:white", "-font", "DejaVu-Sans",
            "-fill", "black", "-density", str(DPI)]
    for x, y, size, lines in letter.blocks:
        spacing = line_pitch_mm(size) / 25.4 * DPI - size / 72 * DPI * 1.17
        args += ["-pointsize", str(size), "-interline-spacing", "%.1f" % spacing,
                 "-annotate", "+%d+%d" % (px(x), px(y) + int(size / 72 * DPI)), "\n".join(lines)]
    subprocess.run(args + [path], check=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("what", choices=["hocr", "render"])
    parser.add_argument("--out", required=True)
    parser.add_argument("--count", type=int, default=200)
    parser.add_argument("--seed", type=int, default=1)
    args = parser.parse_args()
    os.makedirs(args.out, exist_ok=True)
    rng = random.Random(args.seed)
    truth = {}
    for n in range(1, args.count + 1):
        letter = make_letter(rng)
        name = "letter%03d" % n
        if args.what == "hocr":
            write_hocr(letter, os.path.join(args.out, name + ".hocr"))
        else:
            render_png(letter, os.path.join(args.out, name + ".png"))
        truth[name] = {"country": letter.country, "layout": letter.layout,
                       "recipient": letter.truth["recipient"], "sender": letter.truth["sender"]}
    with open(os.path.join(args.out, "truth.json"), "w", encoding="utf-8") as f:
        json.dump(truth, f, ensure_ascii=False, indent=1, sort_keys=True)
        f.write("\n")


if __name__ == "__main__":
    main()
