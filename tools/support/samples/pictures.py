"""Pictures for the sample library, drawn: landscapes in the manner of photographs, charts, a receipt."""

import math
import random

from PIL import Image, ImageChops, ImageDraw, ImageFilter, ImageFont

SIZE = (1440, 960)
FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"


def font(size):
    try:
        return ImageFont.truetype(FONT, size)
    except OSError:
        return ImageFont.load_default()


def mix(a, b, part):
    return tuple(round(x + (y - x) * part) for x, y in zip(a, b))


def gradient(top, bottom, size=SIZE):
    """From one colour at the top to another at the bottom."""
    mask = Image.linear_gradient("L").resize(size)
    return Image.composite(Image.new("RGB", size, bottom), Image.new("RGB", size, top), mask)


def glow(image, centre, radius, colour):
    """Light around a point, brightest in the middle."""
    light = Image.new("RGB", image.size)
    disc = Image.radial_gradient("L").point(lambda v: int(255 * max(0, 1 - v / 178) ** 2))
    disc = disc.resize((2 * radius, 2 * radius))
    light.paste(Image.new("RGB", disc.size, colour), (centre[0] - radius, centre[1] - radius), disc)
    return ImageChops.screen(image, light)


def grain(image, strength=9):
    """The fine noise of a camera."""
    noise = Image.effect_noise(image.size, strength).convert("RGB")
    return ImageChops.overlay(image, noise)


def ridge(rng, width, level, height, roughness=0.55):
    """The outline of a mountain range, by midpoint displacement."""
    points = [0.0, 0.0]
    spread = height
    while len(points) < 257:
        finer = []
        for a, b in zip(points, points[1:]):
            finer += [a, (a + b) / 2 + rng.uniform(-spread, spread)]
        points = finer + points[-1:]
        spread *= roughness
    return [(x * width / 256, level - abs(y)) for x, y in enumerate(points)]


def mountains(seed, sky=((38, 66, 120), (250, 188, 130)), haze=(214, 170, 160), front=(24, 32, 58)):
    rng = random.Random(seed)
    width, height = SIZE
    image = gradient(*sky)
    image = glow(image, (rng.randrange(300, 1100), 430), 420, (255, 214, 150))
    for layer in range(6):
        part = layer / 5
        outline = ridge(rng, width, 470 + 90 * layer, 250 - 24 * layer)
        draw = ImageDraw.Draw(image)
        draw.polygon(outline + [(width, height), (0, height)], fill=mix(haze, front, part))
        if layer < 4:
            image = image.filter(ImageFilter.GaussianBlur(1.4 - 0.3 * layer))
    return grain(image)


def sea(seed, sky=((40, 44, 96), (255, 150, 92)), water=((196, 110, 92), (18, 28, 60))):
    rng = random.Random(seed)
    width, height = SIZE
    image = gradient(*sky)
    sun = (rng.randrange(500, 940), 500)
    image = glow(image, sun, 480, (255, 190, 110))
    ImageDraw.Draw(image).ellipse([sun[0] - 62, 438, sun[0] + 62, 562], fill=(255, 240, 200))
    image.paste(gradient(*water, size=(width, height - 540)), (0, 540))
    draw = ImageDraw.Draw(image)
    for _ in range(900):
        depth = rng.random() ** 1.6
        y = 544 + depth * (height - 544)
        x = rng.gauss(sun[0], 60 + 330 * depth)
        length = 8 + 70 * depth
        draw.line([x - length, y, x + length, y], width=1 + int(3 * depth),
                  fill=mix((255, 214, 150), water[1], min(1, 0.25 + depth * 0.7)))
    return grain(image.filter(ImageFilter.GaussianBlur(0.8)))


def forest(seed, light=(226, 236, 214), dark=(22, 46, 40)):
    rng = random.Random(seed)
    width, height = SIZE
    image = gradient((206, 224, 232), light)
    for layer in range(6):
        part = layer / 5
        draw = ImageDraw.Draw(image)
        for _ in range(46 - 5 * layer):
            x, foot = rng.randrange(-40, width + 40), 520 + 95 * layer + rng.randrange(-20, 40)
            tall, wide = rng.randrange(170, 260) * (0.7 + part), 44 + 50 * part
            colour = mix(light, dark, 0.25 + 0.75 * part)
            for step in range(5):
                y = foot - tall * (5 - step) / 5
                reach = wide * (step + 1.4) / 6
                draw.polygon([(x, y), (x - reach, y + tall * 0.34), (x + reach, y + tall * 0.34)],
                             fill=colour)
        draw.rectangle([0, 540 + 95 * layer, width, height], fill=mix(light, dark, 0.3 + 0.7 * part))
        image = image.filter(ImageFilter.GaussianBlur(1.8 - 0.3 * layer))
    return grain(image)


def city(seed):
    rng = random.Random(seed)
    width, height = SIZE
    image = gradient((12, 14, 40), (122, 70, 110))
    image = glow(image, (rng.randrange(300, 1100), 620), 520, (160, 96, 90))
    for layer in range(3):
        draw = ImageDraw.Draw(image)
        wall = mix((70, 52, 92), (10, 12, 26), layer / 2)
        x = -20
        while x < width:
            wide, top = rng.randrange(60, 130), rng.randrange(250, 560) + 90 * layer
            draw.rectangle([x, top, x + wide, height], fill=wall)
            for wx in range(x + 8, x + wide - 10, 15):
                for wy in range(top + 12, height - 60, 22):
                    if rng.random() < 0.16 + 0.12 * layer:
                        draw.rectangle([wx, wy, wx + 7, wy + 10],
                                       fill=rng.choice([(255, 214, 130), (255, 236, 180), (168, 190, 230)]))
            x += wide + rng.randrange(2, 16)
    return grain(image)


def tulips(seed):
    rng = random.Random(seed)
    width, height = SIZE
    image = gradient((120, 176, 224), (232, 240, 246))
    draw = ImageDraw.Draw(image)
    draw.rectangle([0, 430, width, height], fill=(70, 120, 60))
    colours = [(214, 50, 60), (250, 190, 40), (236, 110, 160), (150, 70, 160), (250, 240, 226)]
    for _ in range(9000):
        depth = rng.random() ** 1.8
        y = 436 + depth * (height - 436)
        x = rng.uniform(-0.5, 0.5)
        colour = colours[int((x + 0.5) * 14) % 5]
        size = 2 + 13 * depth
        at = width / 2 + x * width * (0.9 + 2.2 * depth)
        shade = mix(colour, (40, 70, 40), rng.random() * 0.35)
        draw.ellipse([at - size * 0.7, y - size, at + size * 0.7, y + size], fill=shade)
    return grain(image.filter(ImageFilter.GaussianBlur(0.7)))


def northern_lights(seed):
    rng = random.Random(seed)
    width, height = SIZE
    image = gradient((4, 8, 26), (14, 40, 60))
    draw = ImageDraw.Draw(image)
    for _ in range(420):
        x, y, bright = rng.randrange(width), rng.randrange(620), rng.randrange(90, 230)
        draw.ellipse([x, y, x + rng.choice([1, 2]), y + 1], fill=(bright, bright, bright))
    for curtain in range(3):
        lights = Image.new("RGB", SIZE)
        pen = ImageDraw.Draw(lights)
        phase, base = rng.uniform(0, 6), 380 + 70 * curtain
        for x in range(0, width, 3):
            foot = base + 90 * math.sin(x / 210 + phase) + 30 * math.sin(x / 57 + phase)
            tall = 190 + 90 * math.sin(x / 37 + 2 * phase)
            for part in range(12):
                colour = mix((70, 240, 150), (70, 30, 120), part / 11)
                pen.line([x, foot - tall * part / 12, x, foot - tall * (part + 1) / 12], width=3,
                         fill=mix(colour, (0, 0, 0), 0.25 + 0.6 * part / 11))
        image = ImageChops.screen(image, lights.filter(ImageFilter.GaussianBlur(9)))
    outline = ridge(rng, width, 800, 150)
    ImageDraw.Draw(image).polygon(outline + [(width, height), (0, height)], fill=(4, 8, 16))
    return grain(image)


def dish(seed, food=(196, 120, 52), garnish=(70, 130, 50), table=(96, 66, 48)):
    """A plate from above."""
    rng = random.Random(seed)
    image = gradient(mix(table, (255, 255, 255), 0.18), table)
    draw = ImageDraw.Draw(image)
    for y in range(0, SIZE[1], 120):
        draw.line([0, y, SIZE[0], y + rng.randrange(-6, 6)], fill=mix(table, (0, 0, 0), 0.3), width=3)
    shadow = Image.new("L", SIZE)
    ImageDraw.Draw(shadow).ellipse([330, 130, 1150, 950], fill=150)
    image.paste((20, 14, 10), (0, 0), shadow.filter(ImageFilter.GaussianBlur(28)))
    draw = ImageDraw.Draw(image)
    for inset, colour in ((0, (246, 244, 238)), (26, (224, 220, 212)), (34, (250, 249, 245)),
                          (120, (236, 232, 224))):
        draw.ellipse([320 + inset, 80 + inset, 1120 - inset, 880 - inset], fill=colour)
    for amount, colour, least, most in ((420, food, 18, 52), (90, garnish, 5, 16)):
        for _ in range(amount):
            angle, far = rng.uniform(0, 6.283), 215 * math.sqrt(rng.random())
            x, y, size = 720 + far * math.cos(angle), 480 + far * math.sin(angle), rng.randrange(least, most)
            shade = mix(colour, rng.choice([(255, 240, 200), (30, 16, 8)]), rng.random() * 0.35)
            draw.ellipse([x - size, y - size * 0.7, x + size, y + size * 0.7], fill=shade)
    return grain(image.filter(ImageFilter.GaussianBlur(1.2)))


def bars(title, values, colour=(47, 143, 157)):
    """A bar chart: values is a list of (label, number)."""
    image = Image.new("RGB", (1200, 760), (252, 252, 250))
    draw = ImageDraw.Draw(image)
    draw.text((60, 36), title, font=font(38), fill=(36, 44, 56))
    most = max(number for _, number in values)
    step = 1080 / len(values)
    for line in range(5):
        y = 660 - line * 130
        draw.line([60, y, 1140, y], fill=(222, 224, 228), width=2)
        draw.text((64, y - 26), f"{most * line / 4:.0f}", font=font(18), fill=(140, 146, 156))
    for place, (label, number) in enumerate(values):
        x, top = 60 + step * place, 660 - 520 * number / most
        draw.rectangle([x + step * 0.2, top, x + step * 0.8, 660],
                       fill=mix(colour, (255, 255, 255), 0.35 * (place % 2)))
        draw.text((x + step / 2, 684), label, font=font(22), fill=(70, 78, 92), anchor="mt")
    return image


def curves(title, names, seed):
    """Measured series over a year."""
    rng = random.Random(seed)
    image = Image.new("RGB", (1200, 760), (252, 252, 250))
    draw = ImageDraw.Draw(image)
    draw.text((60, 36), title, font=font(38), fill=(36, 44, 56))
    colours = [(217, 95, 72), (47, 143, 157), (240, 178, 66), (106, 90, 160)]
    for line in range(6):
        draw.line([60, 140 + 104 * line, 1140, 140 + 104 * line], fill=(226, 228, 232), width=2)
    for name, colour, at in zip(names, colours, range(len(names))):
        phase, level = rng.uniform(0, 6), rng.uniform(300, 500)
        points = [(60 + 3 * x, level + 100 * math.sin(x / 62 + phase) + 18 * math.sin(x / 9 + phase)
                   + rng.uniform(-5, 5)) for x in range(361)]
        draw.line(points, fill=colour, width=5, joint="curve")
        draw.ellipse([64 + 250 * at, 700, 84 + 250 * at, 720], fill=colour)
        draw.text((94 + 250 * at, 696), name, font=font(24), fill=(70, 78, 92))
    return image


def pie(title, values):
    image = Image.new("RGB", (1140, 760), (252, 252, 250))
    draw = ImageDraw.Draw(image)
    draw.text((60, 36), title, font=font(38), fill=(36, 44, 56))
    colours = [(47, 143, 157), (240, 178, 66), (217, 95, 72), (106, 90, 160), (120, 160, 90), (150, 156, 166)]
    total, angle = sum(number for _, number in values), -90.0
    for place, (label, number) in enumerate(values):
        turn = 360 * number / total
        draw.pieslice([70, 140, 630, 700], angle, angle + turn, fill=colours[place % 6],
                      outline=(252, 252, 250), width=4)
        draw.rectangle([680, 180 + 64 * place, 708, 208 + 64 * place], fill=colours[place % 6])
        draw.text((724, 178 + 64 * place), f"{label}  {number:.0f} €", font=font(24), fill=(70, 78, 92))
        angle += turn
    return image


def receipt(lines):
    """A till receipt as a phone would photograph it."""
    paper = Image.new("RGB", (560, 120 + 40 * len(lines)), (250, 248, 240))
    draw = ImageDraw.Draw(paper)
    for place, line in enumerate(lines):
        draw.text((40, 50 + 40 * place), line, font=font(24), fill=(52, 52, 60))
    image = gradient((120, 96, 78), (84, 62, 50), (900, paper.size[1] + 240))
    turned = paper.rotate(3, expand=True, resample=Image.BICUBIC)
    mask = Image.new("L", paper.size, 255).rotate(3, expand=True)
    image.paste(turned, (150, 90), mask)
    return grain(image.filter(ImageFilter.GaussianBlur(0.6)))
