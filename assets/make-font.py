#!/usr/bin/python3
"""Makes OCRAEXT.TTF, the face in which Strokemind shows its texts.

usage: assets/make-font.py [SOURCE.ttf [OUTPUT.TTF]]

The source is the OCR-A face of Debian's fonts-ocr-a: outlines by Tor Lillqvist and Richard B. Wales, made into a TrueType
font by John Sauter, in the public domain. It holds ASCII and little else. This script adds every other printable character
of code page 1252: accented letters are composed from a base letter and a mark, the rest is drawn with a round pen of the
face's own stroke width. What it adds is in the public domain as well.

Needs python3-fontforge and fonts-ocr-a. The result does not depend on the day it is made: two runs give the same bytes.
"""

import os
import struct
import sys

# FontForge stamps the file with this moment (seconds since 1970) in place of now: 1 January 2024, 00:00 UTC.
os.environ["SOURCE_DATE_EPOCH"] = "1704067200"

import fontforge  # noqa: E402  (reads the variable above)
import psMat  # noqa: E402

SOURCE = "/usr/share/fonts/truetype/ocr-a/OCRA.ttf"
OUTPUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "OCRAEXT.TTF")
FAMILY = "OCR A Extended"
LICENCE = (
    "Public domain. OCR-A outlines: Tor Lillqvist and Richard B. Wales (MetaFont), John Sauter (TrueType). "
    "Accented letters and signs: composed for Strokemind, likewise in the public domain."
)

# All figures below are in units of the source, 1000 to its em.
ADVANCE = 715
CENTRE = 343  # middle of the letters, which lie a little left of the middle of the advance
PEN = 95  # width of the source's strokes
CAPITAL = 740  # height of capitals
SMALL = 538  # height of small letters
ASCENT = 1032  # covers the highest accent on a capital
DESCENT = 208

# The em of the result. The forms were laid out for a face whose advance is 0.602 em; the source's 0.715 would clip texts.
EM = 2048
SCALE = 1233 / ADVANCE

MARK_GAP = 85  # between a letter and the mark above it: a full pixel at 14 pixels to the em
MARK_HEIGHT = 180

# Spacing characters drawn with the pen: SVG-like paths (M, L, C, Z) of the pen's middle, y upwards.
DRAWN = {
    "€": "M 545 640 L 490 693 L 370 693 C 270 693 235 580 235 370 C 235 160 270 47 370 47 L 490 47 L 545 100"
    " M 135 450 L 440 450 M 135 290 L 400 290",
    "‚": "M 373 90 L 305 -70",
    "„": "M 288 90 L 220 -70 M 468 90 L 400 -70",
    "’": "M 373 693 L 305 533",
    "‘": "M 313 533 L 381 693",
    "”": "M 288 693 L 220 533 M 468 693 L 400 533",
    "“": "M 218 533 L 286 693 M 398 533 L 466 693",
    "ƒ": "M 531 640 L 490 693 L 440 693 C 370 693 365 620 355 520 L 315 40 C 305 -70 280 -150 180 -150 M 200 430 L 500 430",
    "†": "M 343 47 L 343 693 M 180 500 L 506 500",
    "‡": "M 343 47 L 343 693 M 180 520 L 506 520 M 180 220 L 506 220",
    "‹": "M 420 540 L 250 343 L 420 146",
    "›": "M 266 540 L 436 343 L 266 146",
    "«": "M 300 540 L 140 343 L 300 146 M 530 540 L 370 343 L 530 146",
    "»": "M 156 540 L 316 343 L 156 146 M 386 540 L 546 343 L 386 146",
    "Œ": "M 545 693 L 290 693 L 140 520 L 140 220 L 290 47 L 545 47 M 343 693 L 343 47 M 343 370 L 500 370",
    "¢": "M 506 420 C 480 510 440 510 343 510 C 200 510 180 460 180 343 C 180 220 200 176 343 176 C 440 176 480 176 506 265"
    " M 343 640 L 343 47",
    "¤": "M 343 500 C 430 500 490 440 490 353 C 490 266 430 206 343 206 C 256 206 196 266 196 353 C 196 440 256 500 343 500 Z"
    " M 154 542 L 230 466 M 532 542 L 456 466 M 154 164 L 230 240 M 532 164 L 456 240",
    "|": "M 343 -80 L 343 800",
    "¦": "M 343 -80 L 343 240 M 343 480 L 343 800",
    "§": "M 500 640 C 490 690 440 693 343 693 C 240 693 200 660 200 590 C 200 530 240 510 300 480 L 400 430"
    " C 480 390 500 360 500 310 C 500 250 450 230 400 215 M 290 520 C 220 490 190 460 190 400 C 190 340 240 315 300 285"
    " L 400 235 C 460 200 490 170 490 120 C 490 60 440 20 343 20 C 250 20 200 30 190 80",
    "¬": "M 154 420 L 531 420 L 531 240",
    "°": "M 343 693 C 410 693 453 650 453 583 C 453 516 410 473 343 473 C 276 473 233 516 233 583 C 233 650 276 693 343 693 Z",
    "±": "M 343 610 L 343 250 M 154 430 L 531 430 M 154 90 L 531 90",
    "µ": "M 160 491 L 160 -154 M 160 250 C 160 100 190 47 300 47 C 420 47 490 110 490 250 M 490 491 L 490 140"
    " C 490 80 510 47 545 47",
    "¶": "M 430 47 L 430 693 M 550 47 L 550 693 M 550 693 L 300 693 C 200 693 154 640 154 560 C 154 470 200 420 300 420"
    " L 430 420 M 300 640 L 300 470 M 230 610 L 230 500 M 370 640 L 370 470",
    "×": "M 190 500 L 496 194 M 190 194 L 496 500",
    "÷": "M 154 370 L 531 370",
    "Þ": "M 160 47 L 160 693 M 160 560 L 370 560 C 480 560 525 500 525 390 C 525 270 480 210 370 210 L 160 210",
    "ß": "M 160 47 L 160 540 C 160 640 210 693 320 693 C 430 693 480 640 480 560 C 480 480 420 440 330 400 L 380 400"
    " C 490 380 531 310 531 220 C 531 100 480 47 380 47 L 310 47",
    "æ": "M 150 491 L 230 491 C 310 491 343 450 343 380 L 343 160 C 343 80 300 47 230 47 C 160 47 120 80 120 150"
    " C 120 220 160 262 230 262 L 566 262 L 566 380 C 566 450 530 491 455 491 C 380 491 343 450 343 380 M 343 160"
    " C 343 80 380 47 455 47 L 560 47",
    "œ": "M 343 160 C 343 80 300 47 231 47 C 160 47 120 80 120 160 L 120 378 C 120 458 160 491 231 491"
    " C 300 491 343 458 343 378 Z M 343 262 L 566 262 L 566 378 C 566 458 530 491 455 491 C 380 491 343 458 343 378"
    " M 343 160 C 343 80 380 47 455 47 L 560 47",
    "ð": "M 200 640 L 470 540 M 250 693 C 430 640 531 500 531 270 C 531 110 470 47 343 47 C 210 47 154 110 154 230"
    " C 154 350 210 410 343 410 C 440 410 500 370 525 310",
    "þ": "M 160 -154 L 160 693 M 160 250 C 160 400 210 491 343 491 C 470 491 531 420 531 270 C 531 120 470 47 343 47"
    " C 210 47 160 130 160 250",
}
# The same with a pen of its own width, for signs that are small or crowded.
DRAWN_THIN = {
    "–": (88, "M 130 350 L 556 350"),
    "—": (88, "M 30 350 L 656 350"),
    "‰": (
        60,
        "M 110 80 L 400 660 M 140 693 C 200 693 225 650 225 590 C 225 530 200 490 140 490 C 85 490 60 530 60 590"
        " C 60 650 85 693 140 693 Z M 360 250 C 420 250 445 210 445 150 C 445 90 420 47 360 47 C 305 47 280 90 280 150"
        " C 280 210 305 250 360 250 Z M 580 250 C 635 250 660 210 660 150 C 660 90 635 47 580 47 C 525 47 500 90 500 150"
        " C 500 210 525 250 580 250 Z",
    ),
    "™": (65, "M 50 700 L 300 700 M 175 700 L 175 420 M 395 420 L 395 700 L 515 550 L 635 700 L 635 420"),
    "©": (
        60,
        "M 357 650 C 530 650 650 540 650 370 C 650 200 530 90 357 90 C 184 90 65 200 65 370 C 65 540 184 650 357 650 Z"
        " M 470 460 C 440 500 410 510 360 510 C 270 510 230 450 230 370 C 230 290 270 230 360 230 C 410 230 440 240 470 280",
    ),
    "®": (
        60,
        "M 357 650 C 530 650 650 540 650 370 C 650 200 530 90 357 90 C 184 90 65 200 65 370 C 65 540 184 650 357 650 Z"
        " M 260 220 L 260 520 L 390 520 C 460 520 480 490 480 440 C 480 390 460 360 390 360 L 260 360 M 370 360 L 480 220",
    ),
}
# Round dots: diameter, then the middles. The full stop of OCR-A stands at this height.
DOTS = {
    "…": (125, [(120, 190), (357, 190), (594, 190)]),
    "•": (260, [(CENTRE, 370)]),
    "·": (150, [(CENTRE, 370)]),
    "÷": (125, [(CENTRE, 560), (CENTRE, 180)]),
}

# Marks, drawn as if they lay on a letter of height 0.
_B = MARK_GAP + PEN // 2
_T = MARK_GAP + MARK_HEIGHT - PEN // 2
MARKS = {
    "acute": f"M {CENTRE - 20} {_B} L {CENTRE + 130} {_T}",
    "grave": f"M {CENTRE + 20} {_B} L {CENTRE - 130} {_T}",
    "circumflex": f"M {CENTRE - 140} {_B - 5} L {CENTRE} {_T + 10} L {CENTRE + 140} {_B - 5}",
    "caron": f"M {CENTRE - 140} {_T + 10} L {CENTRE} {_B} L {CENTRE + 140} {_T + 10}",
    "tilde": f"M {CENTRE - 160} {_B - 5} C {CENTRE - 130} {_T + 40} {CENTRE - 60} {_T + 40} {CENTRE} {(_B + _T) // 2}"
    f" C {CENTRE + 60} {_B - 40} {CENTRE + 130} {_B - 40} {CENTRE + 160} {_T + 5}",
    "macron": f"M {CENTRE - 150} {_B + 30} L {CENTRE + 150} {_B + 30}",
    "ring": f"M {CENTRE} {_B - 20} C {CENTRE + 60} {_B - 20} {CENTRE + 82} {_B + 20} {CENTRE + 82} {_B + 50}"
    f" C {CENTRE + 82} {_T + 10} {CENTRE + 60} {_T + 40} {CENTRE} {_T + 40}"
    f" C {CENTRE - 60} {_T + 40} {CENTRE - 82} {_T + 10} {CENTRE - 82} {_B + 50}"
    f" C {CENTRE - 82} {_B + 20} {CENTRE - 60} {_B - 20} {CENTRE} {_B - 20} Z",
}
MARK_PENS = {"ring": 66, "tilde": 80}
DIERESIS = (125, [(CENTRE - 125, MARK_GAP + 68), (CENTRE + 125, MARK_GAP + 68)])
CEDILLA = f"M {CENTRE + 10} 30 L {CENTRE + 10} -55 C {CENTRE + 120} -55 {CENTRE + 120} -165 {CENTRE + 10} -165 L {CENTRE - 90} -165"
CEDILLA_PEN = 78

ACCENTED = {
    "acute": "ÁáÉéÍíÓóÚúÝý",
    "grave": "ÀàÈèÌìÒòÙù",
    "circumflex": "ÂâÊêÎîÔôÛû",
    "caron": "ŠšŽž",
    "tilde": "ÃãÑñÕõ",
    "ring": "Åå",
    "dieresis": "ÄäËëÏïÖöÜüŸÿ",
    "cedilla": "Çç",
}
SPACING_MARKS = {"´": "acute", "ˆ": "circumflex", "˜": "tilde", "¯": "macron", "¨": "dieresis", "¸": "cedilla"}
# Digits and letters made smaller: (source character, scale, left, bottom).
SUPERIOR = {
    "¹": [("1", 0.56, 175, 330)],
    "²": [("2", 0.56, 175, 330)],
    "³": [("3", 0.56, 175, 330)],
    "ª": [("a", 0.62, 165, 400)],
    "º": [("o", 0.62, 165, 400)],
    "¼": [("1", 0.46, 40, 400), ("4", 0.46, 420, 0)],
    "½": [("1", 0.46, 40, 400), ("2", 0.46, 420, 0)],
    "¾": [("3", 0.46, 40, 400), ("4", 0.46, 420, 0)],
}
UNDERLINED = "ªº"
FRACTION_BAR = (60, "M 110 120 L 600 640")


def printable_cp1252():
    """Every printable character of code page 1252 (five codes are unassigned)."""
    text = ""
    for code in [*range(0x20, 0x7F), *range(0x80, 0x100)]:
        text += bytes([code]).decode("cp1252", "ignore")
    return text


def pen_contours(scratch, path, width):
    """Outlines of `path` drawn with a round pen of `width`.

    Each piece of the path is outlined alone, its round ends being the joints. The overlaps stay: the outlines turn the same
    way, and the non-zero rule fills them. FontForge's removal of overlaps is not up to lines that share an end.
    """
    layer = fontforge.layer()
    words = path.split()
    at = 0
    while at < len(words):
        count = {"M": 2, "L": 2, "C": 6, "Z": 0}[words[at]]
        numbers = [float(w) for w in words[at + 1 : at + 1 + count]]
        points = list(zip(numbers[::2], numbers[1::2]))
        if words[at] == "M":
            start = here = points[0]
        else:
            points = points or [start]
            if points[-1] != here:
                layer += piece_contours(scratch, here, points, width)
            here = points[-1]
        at += 1 + count
    return layer


def piece_contours(scratch, here, points, width):
    """Outline of one straight line (one point) or one curve (three points) from `here`."""
    glyph = scratch.createChar(-1, "scratch")
    glyph.clear()
    pen = glyph.glyphPen()
    pen.moveTo(here)
    if len(points) == 1:
        pen.lineTo(points[0])
    else:
        pen.curveTo(*points)
    pen.endPath()
    pen = None  # the pen writes to the glyph when it goes
    glyph.stroke("circular", width, cap="round", join="round", removeoverlap="none")
    return glyph.foreground.dup()


def dot_contours(diameter, middles):
    layer = fontforge.layer()
    for x, y in middles:
        layer += moved(fontforge.unitShape(0), x, y, diameter / 2)  # a circle of radius 1
    return layer


def mark_contours(scratch, name):
    if name == "dieresis":
        return dot_contours(*DIERESIS)
    if name == "cedilla":
        return pen_contours(scratch, CEDILLA, CEDILLA_PEN)
    return pen_contours(scratch, MARKS[name], MARK_PENS.get(name, PEN))


def moved(layer, dx, dy, scale=1.0):
    layer = layer.dup()
    layer.transform(psMat.compose(psMat.scale(scale), psMat.translate(dx, dy)))
    return layer


def half_turn(layer, height):
    """The contours turned by 180 degrees within a letter of `height`, for the Spanish marks."""
    layer = layer.dup()
    layer.transform((-1, 0, 0, -1, 2 * CENTRE, height))
    return layer


def base_contours(font, letter):
    """The letter that carries a mark; the i without its dot."""
    layer = font[ord(letter)].foreground.dup()
    if letter != "i":
        return layer
    bare = fontforge.layer()
    for contour in layer:
        if contour.boundingBox()[1] < SMALL:
            bare += contour
    return bare


def make_glyphs(font, scratch):
    """Contours of every character that the source lacks or holds in another shape than the others."""
    made = {}
    for sign, path in DRAWN.items():
        made[sign] = pen_contours(scratch, path, PEN)
    for sign, (width, path) in DRAWN_THIN.items():
        made[sign] = pen_contours(scratch, path, width)
    for sign, (diameter, middles) in DOTS.items():
        made[sign] = made.get(sign, fontforge.layer()) + dot_contours(diameter, middles)
    for name, letters in ACCENTED.items():
        mark = mark_contours(scratch, name)
        for letter in letters:
            base = fontforge.unicodeFromName(fontforge.nameFromUnicode(ord(letter))[0])
            height = 0 if name == "cedilla" else CAPITAL if letter.isupper() else SMALL
            made[letter] = base_contours(font, chr(base)) + moved(mark, 0, height)
    for sign, name in SPACING_MARKS.items():
        made[sign] = moved(mark_contours(scratch, name), 0, 0 if name == "cedilla" else SMALL)
    for sign, parts in SUPERIOR.items():
        layer = fontforge.layer()
        for letter, scale, left, bottom in parts:
            box = font[ord(letter)].foreground.boundingBox()
            layer += moved(font[ord(letter)].foreground, left - box[0] * scale, bottom - box[1] * scale, scale)
        if sign in UNDERLINED:
            layer += pen_contours(scratch, f"M {CENTRE - 140} 300 L {CENTRE + 140} 300", 66)
        elif len(parts) > 1:
            layer += pen_contours(scratch, *reversed(FRACTION_BAR))
        made[sign] = layer
    made["¡"] = half_turn(font[ord("!")].foreground, CAPITAL)
    made["¿"] = half_turn(font[ord("?")].foreground, CAPITAL)
    made["Ð"] = font[ord("D")].foreground.dup() + pen_contours(scratch, "M 90 370 L 350 370", PEN)
    made["ø"] = font[ord("o")].foreground.dup() + pen_contours(scratch, "M 110 0 L 576 538", 75)
    made[" "] = made["\u00a0"] = fontforge.layer()  # the source's blank holds a stray point
    made["\u00ad"] = font[ord("-")].foreground.dup()
    return made


def name_font(font):
    font.familyname = FAMILY
    font.fullname = FAMILY
    font.fontname = "OCRAExtended"
    font.weight = "Regular"
    font.version = "1.000"
    font.copyright = LICENCE
    font.sfnt_names = tuple(
        ("English (US)", key, value)
        for key, value in {
            "Copyright": LICENCE,
            "Family": FAMILY,
            "SubFamily": "Regular",
            "UniqueID": "Strokemind: OCR A Extended 1.000",
            "Fullname": FAMILY,
            "Version": "Version 1.000",
            "PostScriptName": "OCRAExtended",
            "License": LICENCE,
        }.items()
    )


def set_metrics(font):
    up, down = round(ASCENT * SCALE), round(DESCENT * SCALE)
    font.ascent, font.descent = EM - down, down
    font.os2_winascent, font.os2_windescent = up, down
    font.os2_typoascent, font.os2_typodescent = up, -down
    font.hhea_ascent, font.hhea_descent = up, -down
    for name in ("os2_winascent", "os2_windescent", "os2_typoascent", "os2_typodescent", "hhea_ascent", "hhea_descent"):
        setattr(font, name + "_add", False)  # absolute figures, not offsets from the outlines' extent
    font.os2_typolinegap = font.hhea_linegap = 0
    font.os2_weight = 400
    font.os2_panose = (2, 1, 5, 9, 2, 1, 2, 1, 3, 3)  # Latin text, monospaced
    font.os2_vendor = "PfEd"


def allow_bold(path):
    """Takes the fixed-pitch mark off the file, where FontForge has set it.

    Qt does not embolden a face that bears it, and the title is bold. Whoever wants to know still finds that all advances
    are equal.
    """
    with open(path, "rb") as file:
        data = bytearray(file.read())
    entries = {}
    for at in range(12, 12 + 16 * struct.unpack_from(">H", data, 4)[0], 16):
        entries[bytes(data[at : at + 4])] = at
    post, head = (struct.unpack_from(">I", data, entries[tag] + 8)[0] for tag in (b"post", b"head"))
    struct.pack_into(">I", data, post + 12, 0)

    def checksum(start, length):
        padded = bytes(data[start : start + length]) + b"\0" * (-length % 4)
        return sum(struct.unpack(f">{len(padded) // 4}I", padded)) & 0xFFFFFFFF

    length = struct.unpack_from(">I", data, entries[b"post"] + 12)[0]
    struct.pack_into(">I", data, entries[b"post"] + 4, checksum(post, length))
    struct.pack_into(">I", data, head + 8, 0)
    struct.pack_into(">I", data, head + 8, (0xB1B0AFBA - checksum(0, len(data))) & 0xFFFFFFFF)
    with open(path, "wb") as file:
        file.write(data)


def main():
    source = sys.argv[1] if len(sys.argv) > 1 else SOURCE
    output = sys.argv[2] if len(sys.argv) > 2 else OUTPUT
    font = fontforge.open(source)
    font.layers[1].is_quadratic = False
    scratch = fontforge.font()
    scratch.em = 1000

    wanted = printable_cp1252()
    for sign, layer in make_glyphs(font, scratch).items():
        glyph = font.createChar(ord(sign))
        glyph.clear()
        glyph.foreground = layer
        glyph.width = ADVANCE  # FontForge drops a blank glyph that was never given one
    for glyph in list(font.glyphs()):
        if glyph.unicode < 0 or chr(glyph.unicode) not in wanted:
            font.removeGlyph(glyph)
    notdef = font.createChar(-1, ".notdef")
    notdef.foreground = pen_contours(scratch, "M 154 47 L 531 47 L 531 693 L 154 693 Z", 60)
    missing = [sign for sign in wanted if ord(sign) not in font]
    if missing:
        sys.exit(f"no glyph for {missing}")

    set_metrics(font)
    for glyph in font.glyphs():
        glyph.transform(psMat.scale(SCALE))
        glyph.round()
        glyph.width = round(ADVANCE * SCALE)
    name_font(font)
    font.generate(output, flags=("opentype", "no-FFTM-table", "short-post"))
    allow_bold(output)


main()
