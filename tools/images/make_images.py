#!/usr/bin/env python3
"""Draw Tarvelo's bitmap resources.

Dependency: Pillow (Debian package python3-pil: `apt-get install python3-pil`)
and the Roboto Condensed fonts kept in resources/Fonts.

Run from anywhere (use the Debian interpreter if another python3 comes first
in PATH and lacks Pillow):

    /usr/bin/python3 tools/images/make_images.py

It (re)writes:
    resources/Images/stims/*.png   stimulus lamps, sounds and the two pedals (64x64)
    resources/tarvelo-splash.png   splash screen (600x360)

The build does not run this script; its output is committed. Everything is
drawn at SS times the final size and scaled down, which gives smooth edges.
"""

import math
import sys
from pathlib import Path

from PIL import Image, ImageChops, ImageDraw, ImageFilter, ImageFont, ImageOps

REPO = Path(__file__).resolve().parents[2]
RES = REPO / "resources"
STIMS = RES / "Images" / "stims"
FONT_BOLD = RES / "Fonts" / "RobotoCondensed-Bold.ttf"
FONT_REGULAR = RES / "Fonts" / "RobotoCondensed-Regular.ttf"

SS = 4  # supersampling factor

LAMP_COLOURS = {
    "red": "#CC3300",
    "green": "#66BB22",
    "blue": "#0077CC",
    "white": "#EEEEEE",
    "yellow": "#EECC00",
}
WHITE_OUTLINE = "#999999"
INK = "#333333"

# Lamps of the box, by row, left to right.
TOP_ROW = ["green", "white", "blue", "red", "yellow"]
MIDDLE_ROW = ["blue", "red", "yellow", "white", "green"]


# ---------------------------------------------------------------- helpers


def rgb(colour):
    colour = colour.lstrip("#")
    return tuple(int(colour[i : i + 2], 16) for i in (0, 2, 4))


def mix(a, b, t):
    """Blend colour a towards colour b by t (0..1)."""
    return tuple(round(x + (y - x) * t) for x, y in zip(a, b))


def font(path, size_px):
    return ImageFont.truetype(str(path), round(size_px * SS))


class Canvas:
    """An RGBA picture drawn at SS times its final size, in final-size units."""

    def __init__(self, width, height, background=(0, 0, 0, 0)):
        self.width = width
        self.height = height
        self.img = Image.new("RGBA", (width * SS, height * SS), background)

    @staticmethod
    def s(v):
        return v * SS

    def box(self, x0, y0, x1, y1):
        return [x0 * SS, y0 * SS, x1 * SS, y1 * SS]

    def circle(self, cx, cy, r):
        return self.box(cx - r, cy - r, cx + r, cy + r)

    def pts(self, points):
        return [(x * SS, y * SS) for x, y in points]

    def layer(self):
        return Image.new("RGBA", self.img.size, (0, 0, 0, 0))

    def put(self, layer):
        self.img.alpha_composite(layer)

    def draw(self):
        return ImageDraw.Draw(self.img)

    def result(self):
        return self.img.resize((self.width, self.height), Image.LANCZOS)


def clip_alpha(layer, mask):
    """Keep only the part of layer that lies inside mask (an L image)."""
    layer.putalpha(ImageChops.multiply(layer.getchannel("A"), mask))
    return layer


def round_line(draw, c, points, colour, width):
    """A polyline with round joints and caps."""
    draw.line(c.pts(points), fill=colour, width=round(c.s(width)), joint="curve")
    for x, y in (points[0], points[-1]):
        draw.ellipse(c.circle(x, y, width / 2), fill=colour)


def round_arc(draw, c, cx, cy, r, start, end, colour, width):
    """An arc (degrees, clockwise from 3 o'clock) with round caps."""
    # PIL draws the stroke inside the bounding box; centre it on radius r.
    ro = r + width / 2
    draw.arc(c.circle(cx, cy, ro), start, end, fill=colour, width=round(c.s(width)))
    for a in (start, end):
        x = cx + r * math.cos(math.radians(a))
        y = cy + r * math.sin(math.radians(a))
        draw.ellipse(c.circle(x, y, width / 2), fill=colour)


# ---------------------------------------------------------------- lamps


def draw_lamp(c, cx, cy, r, name, glow=0.0):
    """A round signal lamp: bezel, coloured lens, shading and a highlight."""
    base = rgb(LAMP_COLOURS[name])
    is_white = name == "white"
    bezel = rgb(WHITE_OUTLINE) if is_white else mix(base, (0, 0, 0), 0.35)
    rim = max(1.5, r * 0.09)

    if glow > 0:
        halo = c.layer()
        ImageDraw.Draw(halo).ellipse(c.circle(cx, cy, r * 1.25), fill=base + (round(150 * glow),))
        c.put(halo.filter(ImageFilter.GaussianBlur(c.s(r * 0.3))))

    d = c.draw()
    d.ellipse(c.circle(cx, cy, r), fill=bezel)
    lens_r = r - rim
    d.ellipse(c.circle(cx, cy, lens_r), fill=base)

    lens = Image.new("L", c.img.size, 0)
    ImageDraw.Draw(lens).ellipse(c.circle(cx, cy, lens_r), fill=255)

    # Darker lower edge gives the lens some depth.
    shade = c.layer()
    dark = mix(base, (0, 0, 0), 0.25 if is_white else 0.3)
    sd = ImageDraw.Draw(shade)
    sd.ellipse(c.circle(cx, cy, lens_r), fill=dark + (150,))
    sd.ellipse(c.circle(cx - lens_r * 0.08, cy - lens_r * 0.12, lens_r * 0.92), fill=dark + (0,))
    shade = shade.filter(ImageFilter.GaussianBlur(c.s(lens_r * 0.12)))
    c.put(clip_alpha(shade, lens))

    # Soft highlight, upper left.
    hl = c.layer()
    ImageDraw.Draw(hl).ellipse(
        c.circle(cx - lens_r * 0.32, cy - lens_r * 0.36, lens_r * 0.38), fill=(255, 255, 255, 190)
    )
    hl = hl.filter(ImageFilter.GaussianBlur(c.s(lens_r * 0.14)))
    c.put(clip_alpha(hl, lens))


def draw_badge(c, cx, cy, r, text):
    """A small dark disc with a white character, ringed in white."""
    d = c.draw()
    d.ellipse(c.circle(cx, cy, r + 1.5), fill=(255, 255, 255, 255))
    d.ellipse(c.circle(cx, cy, r), fill=rgb(INK))
    f = font(FONT_BOLD, r * 1.55)
    d.text((c.s(cx), c.s(cy + r * 0.05)), text, fill=(255, 255, 255), font=f, anchor="mm")


def lamp_picture(name, mark):
    c = Canvas(64, 64)
    draw_lamp(c, 29, 29, 26, name)
    draw_badge(c, 51, 51, 10.5, mark)
    return c.result()


def side_lamp_picture(side):
    """White bottom lamp tied to a pedal: arrow towards its side and L/R badge."""
    c = Canvas(64, 64)
    draw_lamp(c, 32, 29, 26, "white")
    arrow = [(18, 29), (29, 18), (29, 25), (45, 25), (45, 33), (29, 33), (29, 40)]
    if side == "R":
        arrow = [(64 - x, y) for x, y in arrow]
    c.draw().polygon(c.pts(arrow), fill=rgb("#666666"))
    draw_badge(c, 51 if side == "L" else 13, 51, 10.5, side)
    return c.result()


# ---------------------------------------------------------------- sounds


def draw_speaker_side(c, x, cy, colour):
    """Loudspeaker seen from the side, sounding to the right, back at x."""
    d = c.draw()
    d.rounded_rectangle(c.box(x, cy - 8, x + 9, cy + 8), radius=c.s(1.5), fill=colour)
    d.polygon(c.pts([(x + 8, cy - 8), (x + 21, cy - 19), (x + 21, cy + 19), (x + 8, cy + 8)]), fill=colour)


def draw_speaker_front(c, cx, cy, colour):
    """Loudspeaker box seen from the front."""
    d = c.draw()
    d.rounded_rectangle(c.box(cx - 10, cy - 17, cx + 10, cy + 17), radius=c.s(3), fill=colour)
    light = rgb("#DDDDDD")
    d.ellipse(c.circle(cx, cy + 6, 7.5), fill=light)
    d.ellipse(c.circle(cx, cy + 6, 5.5), fill=colour)
    d.ellipse(c.circle(cx, cy + 6, 2.2), fill=light)
    d.ellipse(c.circle(cx, cy - 9, 3.5), fill=light)
    d.ellipse(c.circle(cx, cy - 9, 1.8), fill=colour)


def draw_waves(c, cx, cy, high, side, r0):
    """Sound waves around (cx, cy): one wide wave for a low tone, three close
    ones for a high tone. side is 'right' or 'left'."""
    d = c.draw()
    colour = rgb(INK)
    if high:
        radii, width, half = [r0, r0 + 6, r0 + 12], 2.6, 40
    else:
        radii, width, half = [r0 + 6], 4.2, 50
    centre = 0 if side == "right" else 180
    for r in radii:
        round_arc(d, c, cx, cy, r, centre - half, centre + half, colour, width)


def audio_picture(where, high):
    c = Canvas(64, 64)
    ink = rgb(INK)
    if where == "Both":
        draw_speaker_front(c, 32, 32, ink)
        draw_waves(c, 32, 32, high, "left", 14)
        draw_waves(c, 32, 32, high, "right", 14)
        return c.result()
    # drawn sounding to the right, mirrored for the left
    draw_speaker_side(c, 5, 32, ink)
    draw_waves(c, 22, 32, high, "right", 10)
    img = c.result()
    return ImageOps.mirror(img) if where == "Left" else img


# ---------------------------------------------------------------- pedals


def pedal_picture(side):
    """Foot pedal from the side: base, hinged plate with grip ridges, spring.
    Drawn for the right foot (toe to the right), mirrored for the left."""
    c = Canvas(64, 64)
    d = c.draw()
    base = rgb("#3A3A3A")
    plate = rgb("#505050")
    top = rgb("#8A8A8A")
    angle = math.radians(-21)
    hx, hy = 10, 49  # hinge at the heel
    length, thick = 50, 7

    def at(u, v):
        """Point u along the plate from the hinge, v across it (down is +)."""
        return (
            hx + u * math.cos(angle) - v * math.sin(angle),
            hy + u * math.sin(angle) + v * math.cos(angle),
        )

    # base
    d.rounded_rectangle(c.box(3, 52, 61, 60), radius=c.s(3), fill=base)
    # spring between base and the underside of the plate near the toe
    sx, sy = at(38, thick / 2)
    turns = 6
    spring = [(sx, 52)]
    for i in range(1, turns):
        spring.append((sx + (-4 if i % 2 else 4), 52 - (52 - sy) * i / turns))
    spring.append((sx, sy))
    round_line(d, c, spring, rgb("#9A9A9A"), 1.7)
    # hinge post
    d.polygon(c.pts([(4, 53), (7, 47), (13, 47), (16, 53)]), fill=base)
    # plate with a rounded toe
    d.polygon(c.pts([at(0, -thick / 2), at(length, -thick / 2), at(length, thick / 2), at(0, thick / 2)]), fill=plate)
    d.ellipse(c.circle(*at(length, 0), thick / 2), fill=plate)
    # grip ridges on top of the plate
    for u in range(10, length - 2, 7):
        round_line(d, c, [at(u, -thick / 2), at(u + 3.5, -thick / 2)], top, 2.4)
    # hinge pin
    d.ellipse(c.circle(hx, hy, 5.5), fill=base)
    d.ellipse(c.circle(hx, hy, 2.2), fill=rgb("#AAAAAA"))
    img = c.result()
    return ImageOps.mirror(img) if side == "left" else img


# ---------------------------------------------------------------- splash


def vertical_gradient(c, top, bottom):
    grad = Image.new("RGBA", (1, 256))
    for y in range(256):
        grad.putpixel((0, y), mix(top, bottom, y / 255) + (255,))
    c.img = grad.resize(c.img.size, Image.BILINEAR)


def splash_picture():
    w, h = 600, 360
    c = Canvas(w, h)
    vertical_gradient(c, rgb("#1E3447"), rgb("#0E1A25"))
    d = c.draw()

    # the box's front panel: two rows of five lamps on a dark plate
    px0, py0, px1, py1 = 40, 28, 560, 154
    d.rounded_rectangle(c.box(px0, py0, px1, py1), radius=c.s(14), fill=rgb("#0A131B"))
    d.rounded_rectangle(
        c.box(px0, py0, px1, py1), radius=c.s(14), outline=rgb("#2D4A63"), width=c.s(2)
    )
    step = (px1 - px0) / 5
    lit = {(0, 3), (1, 0)}  # a couple of lamps are on
    for row, names in enumerate((TOP_ROW, MIDDLE_ROW)):
        for i, name in enumerate(names):
            cx = px0 + step * (i + 0.5)
            cy = py0 + 34 + row * 58
            draw_lamp(c, cx, cy, 21, name, glow=1.0 if (row, i) in lit else 0.0)
    # dim the lamps that are off
    shade = c.layer()
    sd = ImageDraw.Draw(shade)
    for row, names in enumerate((TOP_ROW, MIDDLE_ROW)):
        for i, _ in enumerate(names):
            if (row, i) not in lit:
                cx = px0 + step * (i + 0.5)
                cy = py0 + 34 + row * 58
                sd.ellipse(c.circle(cx, cy, 19.5), fill=(10, 19, 27, 110))
    c.put(shade)

    d = c.draw()
    # title and subtitle, left
    d.text((c.s(36), c.s(256)), "Tarvelo", fill=rgb("#FFFFFF"), font=font(FONT_BOLD, 104), anchor="ls")
    d.text((c.s(42), c.s(296)), "stimulus & reaction", fill=rgb("#9FC3DD"), font=font(FONT_REGULAR, 30), anchor="ls")
    # a thin accent line in the lamp colours
    x = 44
    for name in TOP_ROW:
        d.rounded_rectangle(c.box(x, 312, x + 44, 316), radius=c.s(2), fill=rgb(LAMP_COLOURS[name]))
        x += 50
    # The lower right (about 260 x 90) stays plain: the program writes its
    # version there.
    return c.result().convert("RGB")


# ---------------------------------------------------------------- main


def save(img, path):
    path.parent.mkdir(parents=True, exist_ok=True)
    img.save(path, optimize=True)
    print("%-40s %6d bytes" % (path.relative_to(REPO), path.stat().st_size))


def main():
    for mark, row in (("1", TOP_ROW), ("2", MIDDLE_ROW)):
        for name in row:
            save(lamp_picture(name, mark), STIMS / ("%s%s.png" % (name, mark)))
    for side in ("L", "R"):
        save(side_lamp_picture(side), STIMS / ("white%s.png" % side))
    for where in ("Left", "Right", "Both"):
        for tone, high in (("Lo", False), ("Hi", True)):
            save(audio_picture(where, high), STIMS / ("audio%s%s.png" % (where, tone)))
    for side in ("left", "right"):
        save(pedal_picture(side), STIMS / ("pedal-%s.png" % side))
    save(splash_picture(), RES / "tarvelo-splash.png")
    return 0


if __name__ == "__main__":
    sys.exit(main())
