"""The sample library itself: which documents there are, when they were written, how they are tagged."""

import os
import random
import unicodedata
from datetime import datetime, timedelta, timezone
from pathlib import Path

import pictures
import prose
import writers

TOWERS = ["Grey Skerry", "North Mole", "South Point", "West Bank", "Seal Rock"]


class Library:
    """Makes documents below a folder. A name may be bytes, as file names are."""

    def __init__(self, root):
        self.root = Path(root)
        self.dates = []

    def path(self, name, date):
        """The place of a new document; its time is set when everything is written."""
        raw = name if isinstance(name, bytes) else name.encode()
        path = Path(os.fsdecode(os.path.join(os.fsencode(self.root), raw)))
        path.parent.mkdir(parents=True, exist_ok=True)
        self.dates.append((path, date))
        return str(path)

    def text(self, name, date, content, encoding="utf-8"):
        with open(self.path(name, date), "wb") as file:
            file.write(content.encode(encoding))

    def photo(self, name, date, image):
        image.save(self.path(name, date), quality=86, optimize=True)

    def set_times(self):
        for path, date in self.dates:
            at = datetime.strptime(date, "%Y-%m-%d").replace(hour=10, minute=20, tzinfo=timezone.utc)
            os.utime(path, (at.timestamp(), at.timestamp()))


def invoice(library, vendor, number, date):
    trade, items = prose.VENDORS[vendor]
    net = sum(price for _, price in items)
    rows = [["Item", "Amount"]] + [[name, f"{price:.2f} EUR"] for name, price in items]
    rows += [["Net", f"{net:.2f} EUR"], ["VAT 19 %", f"{net * 0.19:.2f} EUR"],
             ["Total", f"{net * 1.19:.2f} EUR"]]
    due = datetime.strptime(date, "%Y-%m-%d") + timedelta(days=14)
    writers.pdf(library.path(f"Invoices/{date[:4]}/{date} {vendor}.pdf", date), f"Invoice {number}", [
        f"<b>{vendor.replace('&', '&amp;')}</b>, {trade}, 24103 Nordhafen",
        f"To: Nora Lindqvist, Lindenallee 12, 24105 Nordhafen<br/>Date: {date}",
        writers.table(rows, [320, 110]),
        f"Please pay by {due:%d.%m.%Y} to the account DE00 0000 0000 0000 0000 00, "
        f"quoting invoice {number}. Thank you."], author=vendor)
    return [date, vendor, trade, round(net * 1.19, 2)]


def invoices(library):
    rows, vendors = [["Date", "From", "What for", "Amount"]], list(prose.VENDORS)
    for place, month in enumerate([(2023, 9), (2023, 11), (2024, 1), (2024, 2), (2024, 3), (2024, 4),
                                   (2024, 6), (2024, 7), (2024, 9), (2024, 10), (2024, 12), (2025, 1),
                                   (2025, 2), (2025, 3), (2025, 5), (2025, 6)]):
        date = f"{month[0]}-{month[1]:02d}-{3 + place * 7 % 24:02d}"
        rows.append(invoice(library, vendors[place * 3 % len(vendors)], f"{month[0]}-{1040 + place}", date))
    writers.sheet(library.path("Invoices/Overview.xlsx", "2025-06-30"), "Invoices", rows, "D")
    library.text("Invoices/Overview.csv", "2025-06-30",
                 "\r\n".join(";".join(str(cell) for cell in row) for row in rows) + "\r\n")
    totals = {}
    for _, _, trade, amount in rows[1:]:
        totals[trade] = totals.get(trade, 0) + amount
    top = sorted(totals.items(), key=lambda item: -item[1])[:6]
    library.photo("Invoices/Where the money went.png", "2025-06-30",
                  pictures.pie("Where the money went", top))
    receipt = pictures.receipt(["Papeterie Brandt", "Hafenstr. 4, Nordhafen", "", "Notebook A5      4,90",
                                "Pencil 2B  x3     3,60", "Eraser            1,20", "-" * 24,
                                "TOTAL EUR         9,70", "", "Thank you!   14.02.2025"])
    writers.pdf(library.path("Invoices/Receipts/scan_0001.pdf", "2025-02-14"), "Receipt",
                [writers.picture(receipt, 330)])
    library.photo("Invoices/Receipts/IMG_2214.jpg", "2025-02-14", receipt)


def travel(library):
    writers.word(library.path("Travel/Lisbon 2024/Itinerary.docx", "2024-04-18"),
                 "Four days in Lisbon", prose.LISBON)
    library.text("Travel/Lisbon 2024/Packing list.md", "2024-04-20",
                 "# Packing list\n\n- [x] Passport\n- [x] Tickets\n- [ ] Jacket for Sintra\n"
                 "- [ ] Adapter? (no: same plugs)\n- [ ] Sun hat\n- [ ] Book about lighthouses\n")
    writers.mail(library.path("Travel/Lisbon 2024/Booking confirmation.eml", "2024-03-02"),
                 "Casa da Rosa <stay@casa.example>", "Nora Lindqvist <nora@lindqvist.example>",
                 "Your stay 25 to 29 April: confirmed", "Sat, 02 Mar 2024 18:22:07 +0000",
                 "Dear Nora,\n\nwe look forward to seeing you. The flat is on the third floor; the key lies\n"
                 "at the bakery next door. Four nights, two guests: 412 euros, paid.\n\nAté breve\nInês\n")
    writers.pdf(library.path("Travel/Lisbon 2024/Boarding pass.pdf", "2024-04-24"), "Boarding pass", [
        writers.table([["Passenger", "LINDQVIST / NORA"], ["Flight", "MX 1862 Hamburg - Lisboa"],
                       ["Date", "25 APR 2024, boarding 10:10"], ["Seat", "17A"], ["Gate", "B 31"]], [160, 260]),
        "Gates close fifteen minutes before departure. One cabin bag, 55 x 40 x 23 cm."])
    for name, date, image in (
            ("Lisbon 2024/Sunset over the Tejo.jpg", "2024-04-25", pictures.sea(11)),
            ("Lisbon 2024/" + unicodedata.normalize("NFD", "Belém by night") + ".jpg", "2024-04-26",
             pictures.city(12)),
            ("Lisbon 2024/Serra de Sintra.jpg", "2024-04-27",
             pictures.forest(13, light=(236, 226, 196), dark=(58, 64, 34))),
            ("Norway/Lyngen Alps.jpg", "2023-10-03", pictures.mountains(21)),
            ("Norway/Blue hour.jpg", "2023-10-04", pictures.mountains(
                22, ((16, 30, 70), (130, 170, 210)), (120, 150, 190), (10, 20, 44))),
            ("Norway/Nordlys over Tromsø.jpg", "2023-10-05", pictures.northern_lights(23)),
            ("Norway/Taiga.jpg", "2023-10-06", pictures.forest(24)),
            ("Holland/Keukenhof.jpg", "2025-04-19", pictures.tulips(25)),
            ("Holland/Rotterdam.jpg", "2025-04-20", pictures.city(26))):
        library.photo("Travel/" + name, date, image)
    library.text("Travel/Norway/Ferry timetable.html", "2023-09-20",
                 "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>Ferry timetable"
                 "</title></head>\n<body><h1>Tromsø – Lyngen, winter</h1>\n<table><tr><th>Day</th><th>Leaves"
                 "</th><th>Arrives</th></tr>\n<tr><td>Mon–Fri</td><td>07:10</td><td>09:25</td></tr>\n<tr><td>"
                 "Saturday</td><td>09:40</td><td>11:55</td></tr>\n</table><p>No ferry in strong wind.</p>"
                 "</body></html>\n")
    writers.sheet(library.path("Travel/Costs.xlsx", "2025-04-24"), "Costs", [
        ["Journey", "What", "Days", "Euro"], ["Norway", "Flights", 1, 318], ["Norway", "Hut", 4, 420],
        ["Lisbon", "Flights", 1, 214], ["Lisbon", "Flat", 4, 412], ["Holland", "Train", 2, 96]], "D")


def recipe(library, name, kind, ingredients, method, date):
    path = f"Recipes/{name}.{kind}"
    listed = [f"- {item}" for item in ingredients]
    if kind == "pdf":
        writers.pdf(library.path(path, date), name, ["# Ingredients", "<br/>".join(ingredients),
                                                     "# Method", method])
    elif kind == "odt":
        writers.odt(library.path(path, date), name, listed + [method])
    elif kind == "docx":
        writers.word(library.path(path, date), name, listed + [method])
    elif kind == "html":
        items = "".join(f"<li>{item}</li>" for item in ingredients)
        library.text(path, date, f'<!DOCTYPE html>\n<html><head><meta charset="utf-8"><title>{name}</title>'
                                 f"</head><body><h1>{name}</h1>\n<ul>{items}</ul>\n<p>{method}</p></body></html>\n")
    else:
        mark = "# " if kind == "md" else ""
        library.text(path, date, f"{mark}{name}\n\n" + "\n".join(listed) + f"\n\n{method}\n")


def recipes(library):
    for place, (name, (kind, ingredients, method)) in enumerate(prose.RECIPES.items()):
        recipe(library, name, kind, ingredients, method, f"2024-{place + 1:02d}-{12 + place}")
    for name, date, image in (
            ("Ratatouille.jpg", "2024-08-14", pictures.dish(31, (190, 70, 48), (90, 130, 50))),
            ("Köttbullar.jpg", "2024-06-17", pictures.dish(32, (140, 84, 46), (180, 40, 50))),
            ("Tom Yum 🍲.jpg", "2024-08-19", pictures.dish(33, (226, 132, 70), (70, 140, 60), (60, 80, 84)))):
        library.photo("Recipes/Pictures/" + name, date, image)


def work(library):
    at = "Work/Lighthouse project/"
    writers.word(library.path(at + "Proposal.docx", "2023-12-04"), "Monitoring eleven lamps", prose.PROPOSAL)
    writers.slides(library.path(at + "Kick-off.pptx", "2024-01-16"), [
        ("Eleven lamps, one view", ["Project kick-off, 16 January 2024", "Nora Lindqvist"]),
        ("Where we stand", ["Paper logs in eleven towers", "Two failures last winter, found by a fisherman"]),
        ("What comes", ["Trial on Grey Skerry in February", "Installation from April to July",
                        "First report in October"])])
    writers.sheet(library.path(at + "Budget.xlsx", "2024-04-09"), "Budget", [
        ["Post", "Planned", "Spent", "Rest"], ["Sensors", 12400, 11870, 530], ["Housings", 506, 506, 0],
        ["Installation", 9700, 7350, 2350], ["Travel", 3200, 4400, -1200]], "C")
    for date, title, present, points, todo in prose.MINUTES:
        library.text(f"{at}Minutes/{date} {title}.md", date, f"# {title}\n\n*{date}. Present: {present}*\n\n"
                     + "".join(f"- {point}\n" for point in points) + f"\n**To do:** {todo}\n")
    currents = [("Q4 23", 212), ("Q1 24", 218), ("Q2 24", 216), ("Q3 24", 231), ("Q4 24", 236), ("Q1 25", 224)]
    chart = pictures.bars("Mean current, mA", currents)
    series = pictures.curves("Humidity in the lantern rooms", TOWERS[:4], 5)
    library.photo(at + "Charts/Current.png", "2024-10-07", chart)
    library.photo(at + "Charts/Humidity.png", "2024-10-07", series)
    for quarter, date in (("2024 Q3", "2024-10-07"), ("2024 Q4", "2025-01-09"), ("2025 Q1", "2025-04-08")):
        writers.pdf(library.path(f"{at}Reports/Report {quarter}.pdf", date), f"Lamp monitoring, {quarter}",
                    prose.REPORT[:2] + [writers.picture(chart)] + ["---"] + prose.REPORT[2:4]
                    + [writers.picture(series)] + ["---"] + prose.REPORT[4:])
    rng = random.Random(8)
    rows = [f"2024-09-{day:02d},{tower},{210 + 3 * place + day * (place < 2) * 0.4 + rng.gauss(0, 2):.1f}"
            for day in range(1, 31) for place, tower in enumerate(TOWERS)]
    readings = "day,tower,current_ma\n" + "\n".join(rows) + "\n"
    library.text(at + "Analysis/readings.csv", "2024-10-01", readings)
    library.text(at + "Analysis/rank_lamps.py", "2024-10-02", prose.ANALYSIS)
    library.text(at + "Analysis/towers.sql", "2024-10-02", prose.QUERY)
    library.text(at + "Analysis/housing.cpp", "2024-02-22", prose.HOUSING)
    writers.mail(library.path(at + "Readings for September.eml", "2024-10-01"),
                 "Tomasz Wójcik <tomasz@towers.example>", "Nora Lindqvist <nora@lindqvist.example>",
                 "Readings for September", "Tue, 01 Oct 2024 08:03:44 +0000",
                 "Hello Nora,\n\nattached is September. Look at North Mole from the 12th on: the current rises\n"
                 "every day. I would order the lamp now.\n\nTomasz\n", ("readings.csv", readings.encode()))
    writers.archive(library.path("Work/Archive 2024.zip", "2024-11-03"), {
        "readings.csv": readings, "rank_lamps.py": prose.ANALYSIS, "README.txt": "Everything of 2024.\n"})
    writers.word(library.path("Work/Curriculum vitae.docx", "2025-01-20"), "Nora Lindqvist", [
        "# Experience", "- 2019 to now: engineer for coastal installations, Nordhafen",
        "- 2014 to 2019: instrument maker, Kiel", "# Languages", "Swedish, German, English, a little Portuguese"])


def letters_and_papers(library):
    writers.pdf(library.path("Contracts/Rental agreement.pdf", "2021-05-01"), "Rental agreement", prose.RENT)
    writers.odt(library.path("Letters/Brief an das Finanzamt.odt", "2025-05-12"), "Einspruch", [
        "Sehr geehrte Damen und Herren,",
        "gegen den Steuerbescheid vom 29. April 2025 lege ich Einspruch ein. Die Fahrtkosten zu den "
        "Leuchttürmen wurden nicht berücksichtigt; die Belege liegen bei.",
        "Mit freundlichen Grüßen", "Nora Lindqvist"])
    library.text("Letters/Letter to Grandma.txt", "2025-03-09", "\n\n".join(prose.LETTER) + "\n")
    library.text("Letters/Notiz für Jürgen (Latin-1).txt", "2019-02-11",
                 "Grüße aus Kiel! Die Schlüssel hängen im Flur, der Müll geht dienstags.\n", "latin-1")
    writers.pdf(library.path("Reading/On the habits of bees.pdf", "2022-03-15"), "On the habits of bees",
                prose.BEES, author="Henrik Aalto")
    writers.pdf(library.path("Reading/A short history of lighthouses.pdf", "2020-11-27"),
                "A short history of lighthouses", prose.LIGHTHOUSES, author="Aylin Demir")
    library.text("Reading/Books to read.md", "2025-07-01", "# Books to read\n\n1. Sea charts for beginners\n"
                 "2. The lamp and the lens\n3. Bread in thirty lessons\n4. Portuguese in the tram\n")
    for name, date, image in (
            ("Evening at sea.jpg", "2025-06-21", pictures.sea(41)),
            ("Morning fog.jpg", "2024-11-02", pictures.mountains(
                42, ((190, 206, 220), (240, 236, 226)), (226, 228, 230), (90, 104, 118))),
            ("Red ridge.jpg", "2022-08-30", pictures.mountains(
                43, ((90, 30, 60), (255, 170, 90)), (220, 120, 90), (50, 14, 30))),
            ("Wallpaper teal.png", "2023-01-05", pictures.gradient((47, 143, 157), (16, 40, 66)))):
        library.photo("Pictures/" + name, date, image)


def odd_names(library):
    """Names that a file system takes and careless programs do not."""
    at = "Odd names/"
    for name, content in (
            (at + unicodedata.normalize("NFC", "Résumé (composed).txt"), "One code point for each é."),
            (at + unicodedata.normalize("NFD", "Résumé (decomposed).txt"), "Two code points for each é."),
            (at + unicodedata.normalize("NFC", "Ångström.txt"), "The composed one of two twins."),
            (at + unicodedata.normalize("NFD", "Ångström.txt"), "The decomposed one of two twins."),
            (at.encode() + b"Entr\xe9e (Latin-1 bytes).txt", "The name of this file is not UTF-8."),
            (at + "-rf looks like an option.txt", "It begins with a dash."),
            (at + "  blanks around  .txt", "Two before, two behind."),
            (at + "Percent 100%25 & \"quoted\" 'twice' #1?.txt", "Nothing here needs escaping on disk."),
            (at + "Shell $(date) `date` ; * [a-z].txt", "A shell would like this one."),
            (at + "back\\slash.txt", "One name, not two."),
            (at + "Emoji 🦑🌊 squid 👩‍👩‍👧.txt", "Emoji, one of them made of five code points."),
            (at + "日本語のメモ.txt", "灯台の鍵は引き出しの中。"),
            (at + "مذكرة.txt", "المفتاح في الدرج."),
            (at + "straße STRASSE ﬁne.txt", "A sharp s and a ligature."),
            (at + "no extension", "Type unknown until somebody looks inside."),
            (at + "archive.tar.gz.txt", "Only the last extension counts."),
            (at + ("long " * 50) + ".txt", "254 bytes, one short of what the file system takes.")):
        library.text(name, "2024-05-05", content + "\n")


# What was tagged and rated: (tags, stars or None, patterns below the library).
MARKS = [
    (["invoice"], None, ["Invoices/*/*.pdf"]),
    (["2024"], None, ["Invoices/2024/*.pdf", "Travel/Lisbon 2024/*"]),
    (["paid"], None, ["Invoices/2023/*.pdf", "Invoices/2024/*.pdf"]),
    (["to pay"], None, ["Invoices/2025/2025-05*.pdf", "Invoices/2025/2025-06*.pdf"]),
    (["tax"], None, ["Invoices/2024/*Papeterie*", "Invoices/2024/*Ferries*", "Letters/*Finanzamt*"]),
    (["travel", "Lisbon"], None, ["Travel/Lisbon 2024/*"]),
    (["travel", "Norway"], None, ["Travel/Norway/*"]),
    (["photo"], None, ["Travel/*/*.jpg", "Pictures/*.jpg", "Recipes/Pictures/*.jpg"]),
    (["recipe"], None, ["Recipes/*.*", "Recipes/Pictures/*.jpg"]),
    (["vegetarian"], None, ["Recipes/Ratatouille*", "Recipes/Sour*", "Recipes/Pictures/Rata*"]),
    (["dessert", "süß"], None, ["Recipes/Cr*", "Recipes/Apfel*", "Recipes/Grand*"]),
    (["lighthouse project"], None, ["Work/Lighthouse project/*.*", "Work/Lighthouse project/*/*"]),
    (["report"], None, ["Work/Lighthouse project/Reports/*"]),
    (["important"], None, ["Contracts/*", "Work/*/Proposal.docx", "Travel/*/Boarding*"]),
    (["to read"], None, ["Reading/*"]),
    (["odd"], None, ["Odd names/*"]),
    ([], 5, ["Travel/Norway/Nordlys*", "Pictures/Evening*", "Recipes/Cr*", "Reading/*lighthouses*"]),
    ([], 4, ["Travel/Lisbon 2024/Sunset*", "Travel/Norway/Lyngen*", "Recipes/Pictures/*", "Reading/*bees*",
             "Work/*/Reports/*Q1*", "Travel/Holland/*"]),
    ([], 3, ["Pictures/Morning*", "Recipes/Sour*", "Travel/Norway/Taiga*", "Work/*/Charts/*"]),
    ([], 2, ["Travel/Lisbon 2024/*Sintra*", "Recipes/K*"]),
    ([], 1, ["Odd names/no extension"]),
]


def make(root):
    library = Library(root)
    for part in (invoices, travel, recipes, work, letters_and_papers, odd_names):
        part(library)
    library.set_times()
    return len(library.dates)
