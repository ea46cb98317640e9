"""The words of the sample library: what one person might have written and kept."""

BEES = [
    "# The dance",
    "A forager that has found a rich meadow runs a figure of eight on the comb. The angle of its "
    "straight part to the vertical is the angle of the flowers to the sun; the longer the waggle, the "
    "farther the flight. In the dark of the hive the others follow with their antennae.",
    "On cloudy days the bees read the polarised light of the smallest patch of blue. We measured "
    "forty flights to a dish of sugar water behind the barn, and thirty-six arrived within ten metres.",
    "# Winter",
    "In November the cluster closes around the queen and the last honey. The bees in the middle shiver "
    "without moving their wings and hold thirty degrees, while frost stands on the landing board. They "
    "change places, so that nobody stays at the cold edge for long.",
    "A colony needs some fifteen kilograms of honey until the willow blossoms. Lifting the hive by its "
    "back edge tells more than any thermometer: a light hive in February must be fed at once.",
    "---",
    "# Swarming",
    "A swarm leaves on a warm forenoon in May. Scouts have looked at hollow trees for days and argue "
    "by dancing; the quorum is reached when twenty stand at one entrance. Then the whole cloud lifts "
    "off and flies there, a queen and ten thousand workers, at the pace of a cyclist.",
    "# Notes for the coming year",
    "Move the two hives from the orchard to the lime trees by the tenth of June. Treat against the "
    "varroa mite only after the last harvest. Ask Henrik whether he still wants a nucleus colony.",
]

LIGHTHOUSES = [
    "# Fires on the hill",
    "Before there were towers there were fires. A watchman burned a cord of wood in a windy night, and "
    "a ship saw the glow at perhaps six miles. Coal lasted longer and smoked more; the first enclosed "
    "lantern needed glass that was washed of soot every hour.",
    "# The lens",
    "In 1822 an engineer cut a lens into rings, so that a lamp no stronger than a bicycle's was seen at "
    "twenty miles. The rings stand free of each other in a brass frame; a first-order lens weighs five "
    "tonnes and turns, on a bath of mercury, with the push of one finger.",
    "---",
    "# Keepers",
    "A keeper trimmed the wick at ten, at one and at four. The log book names every ship, every storm "
    "and every visitor: on 3 March 1887 the keeper of Grey Skerry wrote only 'wind', and the next day "
    "'wind again, lost the hen house'.",
    "# Silence",
    "The last keeper of our coast went ashore in 1998. A lamp the size of an egg burns there now, and a "
    "telephone reports when it does not. The tower is painted every seventh year, because sailors want "
    "to see by day what they steered by at night.",
    "---",
    "# Literature",
    "The keepers' log books lie in the harbour archive, shelf 14, in the order of the years. The drawings "
    "of the lantern rooms were photographed in 2019 and can be had on request.",
]

RENT = [
    "# 1 The flat",
    "The landlord lets to the tenant the flat on the second floor of Lindenallee 12, consisting of three "
    "rooms, kitchen, bath and a cellar compartment (number 7). The living space is 74.5 square metres.",
    "# 2 Rent and running costs",
    "The monthly rent is 890.00 euros without heating. An advance of 165.00 euros is paid for running "
    "costs, settled once a year by the end of September. Rent is due on the third working day of a month.",
    "# 3 Deposit",
    "The tenant pays a deposit of three monthly rents, which the landlord keeps in a separate savings "
    "account and returns with its interest within six months after the end of the tenancy.",
    "---",
    "# 4 Repairs",
    "Small repairs up to 80.00 euros each and 240.00 euros a year are borne by the tenant. Damage to "
    "pipes, windows and the boiler is to be reported without delay.",
    "# 5 Pets",
    "Small animals are allowed. A cat lives in the flat with the landlord's consent; her name is Ada.",
    "# 6 Notice",
    "Notice is given in writing, three months to the end of a month.",
    "---",
    "# 7 Handing over",
    "Two keys to the house, two to the flat and one to the letter box were handed over on 1 May 2021. "
    "Meter readings: electricity 18 402 kWh, water 311 cubic metres.",
    "Signed in two copies by both parties.",
]

PROPOSAL = [
    "# Why",
    "The harbour authority replaces the lamps of eleven lighthouses by 2027. The old log of each lamp is "
    "on paper, and nobody can say today which lamp fails next.",
    "# What we offer",
    "- A sensor for current, temperature and humidity in each lantern room",
    "- A reading every ten minutes over the existing radio link",
    "- A report each quarter, and a warning thirty days before a lamp is likely to fail",
    "# Cost",
    "Hardware comes to 18,400 euros, installation to 9,700 euros, and operation to 310 euros a month. "
    "Travel to the islands is charged as it arises.",
    "# Risk",
    "Salt. The first sensors corroded within a winter; the new housing was sprayed with brine for sixty "
    "days without a mark.",
]

REPORT = [
    "# Summary",
    "All eleven lamps were measured without interruption. Two of them, Grey Skerry and North Mole, draw "
    "more current than a year ago, and their lamps should be replaced before the autumn storms.",
    "# Measurements",
    "Humidity in the lantern rooms followed the weather with a delay of about nine hours. The warmest "
    "room was that of South Point, with 41 degrees on a still afternoon.",
    "# What we did",
    "The radio at West Bank was raised by two metres and has lost no reading since. A gull's nest on the "
    "antenna of Seal Rock was left alone until the young had flown.",
]

MINUTES = [
    ("2024-01-16", "Kick-off", "Nora, Henrik, Aylin, Tomasz",
     ["Scope: eleven towers, not twelve; Holm is being sold.", "Henrik orders sensors for a trial on Grey Skerry.",
      "Weekly call on Tuesdays at half past nine."], "Aylin asks the ferry company about winter passages."),
    ("2024-02-20", "Trial on Grey Skerry", "Nora, Henrik, Tomasz",
     ["The first sensor ran for eighteen days and stopped: salt on the contacts.",
      "A sealed housing costs 46 euros more for each tower. Agreed."], "Tomasz draws the housing by Friday."),
    ("2024-04-09", "Budget", "Nora, Aylin",
     ["Travel is 1,200 euros over plan because of the storm in March.",
      "The reserve covers it. No change of the total."], "Nora tells the harbour authority."),
    ("2024-06-11", "Installation", "Nora, Henrik, Aylin, Tomasz",
     ["Seven towers done, four to go.", "The radio at West Bank loses one reading in five; raise the mast."],
     "Henrik climbs, weather permitting."),
    ("2024-10-01", "First quarter of operation", "Nora, Aylin, Tomasz",
     ["No reading lost since August.", "Grey Skerry and North Mole draw more current: order lamps.",
      "The customer likes the report and wants it on one page."], "Aylin shortens the report."),
]

RECIPES = {
    "Crème brûlée": ("md", ["5 egg yolks", "90 g sugar", "400 ml cream", "100 ml milk", "1 vanilla pod"],
        "Warm cream, milk and the scraped vanilla. Stir into yolks and sugar, strain, pour into flat dishes "
        "and bake in a water bath at 100 °C for fifty minutes. Chill. Burn the sugar just before serving."),
    "Apfelstrudel": ("odt", ["250 g flour", "1 egg", "2 tbsp oil", "1.2 kg tart apples", "80 g raisins",
        "100 g breadcrumbs", "cinnamon"],
        "Stretch the rested dough over a cloth until a newspaper can be read through it. Spread butter, "
        "breadcrumbs and apples, roll with the cloth, bake at 190 °C for forty minutes."),
    "Ratatouille": ("pdf", ["2 aubergines", "3 courgettes", "2 red peppers", "6 tomatoes", "2 onions",
        "thyme, bay leaf, olive oil"],
        "Fry each vegetable by itself until it has colour, then let them simmer together with the tomatoes "
        "and herbs for half an hour. Better on the second day, and good cold."),
    "Sourdough bread": ("md", ["150 g starter", "500 g wheat flour", "330 ml water", "11 g salt"],
        "Mix, rest thirty minutes, add salt. Fold four times in two hours, shape, leave in the refrigerator "
        "over night. Bake in a covered pot at 250 °C for twenty-five minutes, uncovered for twenty."),
    "Phở gà": ("md", ["1 chicken", "2 onions, charred", "60 g ginger", "star anise, cinnamon, cloves",
        "rice noodles", "lime, coriander, chilli"],
        "Simmer the chicken with the charred onions and spices for ninety minutes and never let it boil. "
        "Pour over noodles; everybody adds herbs and lime at the table."),
    "Köttbullar": ("txt", ["500 g minced meat", "1 onion", "100 ml cream", "50 g breadcrumbs", "allspice"],
        "Soak the breadcrumbs in cream, knead with meat, fried onion and allspice. Form small balls, fry in "
        "butter, serve with lingonberries and mashed potatoes."),
    "Pão de queijo": ("html", ["500 g sour tapioca starch", "250 ml milk", "100 ml oil", "2 eggs",
        "200 g grated cheese"],
        "Boil milk and oil, pour over the starch, let it cool, work in eggs and cheese. Walnut-sized balls, "
        "200 °C, twenty minutes. They must be eaten warm."),
    "Tom Yum 🍲": ("md", ["400 g prawns", "lemongrass", "galangal", "kaffir lime leaves", "fish sauce",
        "chilli paste"],
        "Boil the shells for stock. Add lemongrass, galangal and lime leaves, five minutes; then prawns, "
        "chilli paste, fish sauce. Lime juice only off the fire."),
    "Grandmother's plum jam": ("docx", ["3 kg plums", "500 g sugar", "1 cinnamon stick"],
        "Stone the plums, leave them with the sugar over night, and let them simmer in the oven at 150 °C for "
        "four hours. Do not stir. Fill into hot jars."),
}

VENDORS = {
    "Stadtwerke Nordhafen": ("Electricity and water", [("Electricity, 212 kWh", 68.90), ("Water, 9 m³", 31.50),
        ("Basic charge", 12.00)]),
    "Müller & Söhne": ("Joinery", [("Bookshelf, oak, oiled", 640.00), ("Fitting, 3 hours", 174.00)]),
    "Café Éclair": ("Catering", [("Buffet for 24 guests", 432.00), ("Coffee and cake", 118.80)]),
    "Papeterie Brandt": ("Office supplies", [("Paper A4, 5 boxes", 98.75), ("Ink", 43.20), ("Folders, 40", 27.60)]),
    "Nordic Ferries": ("Travel", [("Passage Nordhafen - Grey Skerry, return", 84.00), ("Bicycle", 12.00)]),
    "Funkhaus Telekom": ("Telephone and network", [("Fibre 250", 39.95), ("Calls abroad", 4.12)]),
    "Zahnärztin Dr. Öztürk": ("Dentist", [("Examination", 42.30), ("Filling, one surface", 96.10)]),
    "Hübner Fahrräder": ("Bicycles", [("Inspection", 65.00), ("Brake pads, pair", 18.90), ("Chain", 32.50)]),
}

LISBON = [
    "# Thursday: arrival",
    "Flight at 10:45, landing 13:20. Metro to Baixa-Chiado, then uphill on foot: the flat is in Rua da "
    "Rosa 112, the key lies at the bakery next door. Evening walk to the Miradouro de São Pedro.",
    "# Friday: Belém",
    "Tram 15 to the tower before the queues, then the monastery. Pastéis at the old bakery; stand at the "
    "counter, it is faster. Back along the river by bicycle.",
    "# Saturday: Sintra",
    "Train from Rossio at 8:41. Pena first, then down through the park to the Moorish castle. Take jackets: "
    "fog comes up from the sea in the afternoon.",
    "# Sunday: Alfama",
    "Tram 28 early. Flea market is only Tuesdays and Saturdays, so a long breakfast instead, and the tile "
    "museum. Fado at nine, table for two under Lindqvist.",
]

LETTER = [
    "Dear Grandma,",
    "the jam arrived whole, wrapped in three pullovers, and two jars are gone already. Ada the cat sleeps on "
    "the pullovers and must not be disturbed.",
    "Here the storms are over. From the kitchen we see the lighthouse of North Mole again, and on Sundays "
    "Henrik takes me out to count seals. I counted nineteen, he counted twenty-two, we agreed on twenty.",
    "In June we come by train and stay a week. Please do not clean anything.",
    "Your Nora",
]

ANALYSIS = '''"""Which lamp fails next? Reads the quarter's readings and ranks the towers."""
import csv
from collections import defaultdict


def load(path):
    readings = defaultdict(list)
    with open(path, newline="", encoding="utf-8") as file:
        for row in csv.DictReader(file):
            readings[row["tower"]].append(float(row["current_ma"]))
    return readings


def trend(values):
    """Least squares: milliampere for each reading."""
    n = len(values)
    mean_x, mean_y = (n - 1) / 2, sum(values) / n
    above = sum((x - mean_x) * (y - mean_y) for x, y in enumerate(values))
    below = sum((x - mean_x) ** 2 for x in range(n))
    return above / below if below else 0.0


if __name__ == "__main__":
    towers = load("readings.csv")
    for tower in sorted(towers, key=lambda name: -trend(towers[name])):
        print(f"{tower:<14}{trend(towers[tower]):+.4f}")
'''

HOUSING = '''// Wall thickness of the sensor housing from pressure and radius.
#include <cstdio>

static double wallMillimetres(double pressureBar, double radiusMm, double strengthMpa)
{
    return pressureBar * 0.1 * radiusMm / (strengthMpa - 0.6 * pressureBar * 0.1);
}

int main()
{
    for (double depth = 0; depth <= 30; depth += 5)
        std::printf("%4.0f m  %.2f mm\\n", depth, wallMillimetres(depth / 10 + 1, 38, 24));
}
'''

QUERY = """-- Towers whose lamp drew more current this quarter than in the last one.
SELECT t.name, AVG(r.current_ma) AS now, t.last_quarter_ma AS before
FROM readings r JOIN towers t ON t.id = r.tower_id
WHERE r.taken_at >= DATE('2024-07-01') AND r.taken_at < DATE('2024-10-01')
GROUP BY t.id
HAVING now > before * 1.05
ORDER BY now / before DESC;
"""
