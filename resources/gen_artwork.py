#!/usr/bin/env python3
"""Draws Quenda's bitmaps and icon as pixel art and writes them to art/.

Every image exists at 16 and 32 pixels, drawn from the same shapes on a
16-unit grid (one unit is one pixel at 16 and two at 32; outlines stay one
pixel wide). Strips are 24-bit BMPs with magenta (255, 0, 255) as the
transparent colour, so no edge is blended. The icon is a 32-bit ICO.

    gen_artwork.py                 writes art/*.bmp and art/quenda.ico
    gen_artwork.py --preview X.png also writes an enlarged contact sheet
"""

import os
import struct
import sys
import zlib

MAGENTA = (255, 0, 255)
WHITE = (255, 255, 255)
BLACK = (0, 0, 0)


def mix(a, b, t):
    return tuple(round(x + (y - x) * t) for x, y in zip(a, b))


class Canvas:
    def __init__(self, width, height, fill=MAGENTA):
        self.width = width
        self.height = height
        self.pixels = [[fill] * width for _ in range(height)]

    def px(self, x, y, color):
        if 0 <= x < self.width and 0 <= y < self.height:
            self.pixels[y][x] = color

    def get(self, x, y):
        return self.pixels[y][x]

    def rect(self, x0, y0, x1, y1, color):
        """Fills [x0, x1) x [y0, y1)."""
        for y in range(y0, y1):
            for x in range(x0, x1):
                self.px(x, y, color)

    def frame(self, x0, y0, x1, y1, color):
        """A one-pixel outline of [x0, x1) x [y0, y1)."""
        for x in range(x0, x1):
            self.px(x, y0, color)
            self.px(x, y1 - 1, color)
        for y in range(y0, y1):
            self.px(x0, y, color)
            self.px(x1 - 1, y, color)

    def line(self, x0, y0, x1, y1, color):
        dx, dy = abs(x1 - x0), -abs(y1 - y0)
        sx, sy = (1 if x0 < x1 else -1), (1 if y0 < y1 else -1)
        err = dx + dy
        while True:
            self.px(x0, y0, color)
            if x0 == x1 and y0 == y1:
                return
            e2 = 2 * err
            if e2 >= dy:
                err += dy
                x0 += sx
            if e2 <= dx:
                err += dx
                y0 += sy

    def polygon(self, points, color):
        """Fills a polygon, sampling pixel centres."""
        ys = [p[1] for p in points]
        for y in range(int(min(ys)), int(max(ys)) + 1):
            cy = y + 0.5
            xs = []
            for (ax, ay), (bx, by) in zip(points, points[1:] + points[:1]):
                if (ay <= cy < by) or (by <= cy < ay):
                    xs.append(ax + (cy - ay) * (bx - ax) / (by - ay))
            xs.sort()
            for left, right in zip(xs[::2], xs[1::2]):
                for x in range(int(left + 0.5), int(right + 0.5)):
                    self.px(x, y, color)

    def disc(self, cx, cy, r, color):
        """Fills the pixels whose centres lie within r of (cx, cy)."""
        for y in range(int(cy - r) - 1, int(cy + r) + 2):
            for x in range(int(cx - r) - 1, int(cx + r) + 2):
                if (x + 0.5 - cx) ** 2 + (y + 0.5 - cy) ** 2 <= r * r:
                    self.px(x, y, color)

    def ring(self, cx, cy, r, color, width=1.0):
        for y in range(int(cy - r) - 1, int(cy + r) + 2):
            for x in range(int(cx - r) - 1, int(cx + r) + 2):
                d = ((x + 0.5 - cx) ** 2 + (y + 0.5 - cy) ** 2) ** 0.5
                if r - width <= d <= r:
                    self.px(x, y, color)

    def blit(self, other, ox, oy):
        for y in range(other.height):
            for x in range(other.width):
                if other.pixels[y][x] != MAGENTA:
                    self.px(ox + x, oy + y, other.pixels[y][x])


# Small fonts: 3x5 for 16-pixel images, 5x7 for 32-pixel ones.
FONT_SMALL = {
    'a': ["...", "##.", "..#", "###", "#.#", "###"],
    'b': ["#..", "#..", "##.", "#.#", "#.#", "##."],
    '0': ["###", "#.#", "#.#", "#.#", "###"],
    '1': [".#.", "##.", ".#.", ".#.", "###"],
    'x': ["...", "#.#", ".#.", "#.#", "..."],
    '?': ["##.", "..#", ".#.", "...", ".#."],
    '%': ["#.#", "..#", ".#.", "#..", "#.#"],
}
FONT_LARGE = {
    'a': [".....", ".....", ".###.", "....#", ".####", "#...#", "#..##", ".##.#"],
    'b': ["#....", "#....", "#.##.", "##..#", "#...#", "#...#", "##..#", "#.##."],
    '0': [".###.", "#...#", "#..##", "#.#.#", "##..#", "#...#", ".###."],
    '1': ["..#..", ".##..", "#.#..", "..#..", "..#..", "..#..", "#####"],
    'x': [".....", ".....", "#...#", ".#.#.", "..#..", ".#.#.", "#...#"],
    '?': [".###.", "#...#", "....#", "...#.", "..#..", ".....", "..#.."],
    '%': ["##..#", "##..#", "...#.", "..#..", ".#...", "#..##", "#..##"],
}


def text(canvas, x, y, string, color, large, scale=1):
    """Draws text with its top-left at (x, y), each font pixel scale x scale."""
    font = FONT_LARGE if large else FONT_SMALL
    for ch in string:
        glyph = font[ch]
        # Glyphs with an ascender or a blank top row are taller; align bottoms.
        top = y - (len(glyph) - (7 if large else 5)) * scale
        for row, bits in enumerate(glyph):
            for col, bit in enumerate(bits):
                if bit == '#':
                    canvas.rect(x + col * scale, top + row * scale, x + (col + 1) * scale, top + (row + 1) * scale,
                                color)
        x += (len(glyph[0]) + 1) * scale


def text_width(string, large, scale=1):
    font = FONT_LARGE if large else FONT_SMALL
    return (sum(len(font[ch][0]) + 1 for ch in string) - 1) * scale


class Pen:
    """Draws on a size x size cell at (ox, oy) in units of a 16-grid."""

    def __init__(self, canvas, ox, oy, size):
        self.c = canvas
        self.ox = ox
        self.oy = oy
        self.u = size // 16
        self.large = size >= 32

    def p(self, v):
        return v * self.u

    def rect(self, x0, y0, x1, y1, color):
        self.c.rect(self.ox + self.p(x0), self.oy + self.p(y0), self.ox + self.p(x1), self.oy + self.p(y1), color)

    def frame(self, x0, y0, x1, y1, color):
        self.c.frame(self.ox + self.p(x0), self.oy + self.p(y0), self.ox + self.p(x1), self.oy + self.p(y1), color)

    def box(self, x0, y0, x1, y1, fill, outline):
        self.rect(x0, y0, x1, y1, fill)
        self.frame(x0, y0, x1, y1, outline)

    def polygon(self, points, color):
        self.c.polygon([(self.ox + self.p(x), self.oy + self.p(y)) for x, y in points], color)

    def line(self, x0, y0, x1, y1, color):
        """A line through unit cells, one pixel wide at any size."""
        h = (self.u - 1) // 2
        self.c.line(self.ox + self.p(x0) + h, self.oy + self.p(y0) + h, self.ox + self.p(x1) + h,
                    self.oy + self.p(y1) + h, color)

    def thick_line(self, x0, y0, x1, y1, color):
        """A line as wide as one unit."""
        for dx in range(self.u):
            for dy in range(self.u):
                self.c.line(self.ox + self.p(x0) + dx, self.oy + self.p(y0) + dy, self.ox + self.p(x1) + dx,
                            self.oy + self.p(y1) + dy, color)

    def disc(self, cx, cy, r, color):
        self.c.disc(self.ox + cx * self.u, self.oy + cy * self.u, r * self.u, color)

    def ring(self, cx, cy, r, color, width=1.0):
        self.c.ring(self.ox + cx * self.u, self.oy + cy * self.u, r * self.u, color, width * self.u)

    def text_centered(self, cx, y, string, color, scale=1):
        """Text centred on cx, its top at y (in units); scale enlarges the font."""
        w = text_width(string, self.large, scale)
        x = self.ox + round(cx * self.u - w / 2)
        text(self.c, x, self.oy + round(y * self.u), string, color, self.large, scale)

    def corner_round(self, x0, y0, x1, y1):
        """Takes the four corner pixels off a box, for a softer tile."""
        for x, y in ((x0, y0), (x1 - 1, y0), (x0, y1 - 1), (x1 - 1, y1 - 1)):
            self.c.px(self.ox + self.p(x) + (0 if x == x0 else self.u - 1),
                      self.oy + self.p(y) + (0 if y == y0 else self.u - 1), MAGENTA)


# --- Shapes shared by several strips --------------------------------------------------

FOLDER = (240, 196, 72)
FOLDER_DARK = (176, 128, 24)
FOLDER_LIGHT = (255, 228, 140)
PAGE = (255, 255, 255)
PAGE_EDGE = (120, 128, 140)
INK_RED = (200, 40, 40)
INK_BLUE = (30, 80, 170)
INK_TEAL = (20, 120, 120)
GREY_EDGE = (110, 110, 110)


def folder_closed(pen):
    pen.box(1, 3, 7, 5, FOLDER, FOLDER_DARK)          # tab
    pen.box(1, 4, 15, 14, FOLDER, FOLDER_DARK)         # body
    pen.rect(2, 5, 14, 6, FOLDER_LIGHT)                # top highlight


def folder_open(pen):
    pen.box(1, 3, 7, 5, FOLDER, FOLDER_DARK)
    pen.box(1, 4, 13, 14, FOLDER_DARK, FOLDER_DARK)    # back of the folder
    pen.rect(2, 5, 12, 13, (200, 150, 40))
    pen.box(3, 6, 13, 10, PAGE, PAGE_EDGE)             # a sheet inside
    pen.polygon([(1, 14), (4, 8), (16, 8), (13, 14)], FOLDER)   # front flap
    pen.line(4, 8, 15, 8, FOLDER_DARK)
    pen.line(1, 13, 13, 13, FOLDER_DARK)
    pen.line(15, 8, 13, 13, FOLDER_DARK)
    pen.line(4, 8, 1, 13, FOLDER_DARK)


def value_tile(pen, fill, edge):
    pen.box(1, 2, 15, 14, fill, edge)
    pen.corner_round(1, 2, 15, 14)


def glyph_label(pen, string, color, y=None):
    """The label of a value tile; at 32 pixels the 5x7 font at double size."""
    if y is None:
        y = 4.5 if pen.large else 5
    pen.text_centered(8, y, string, color, 2 if pen.large else 1)


def paint_value(pen, kind):
    if kind == 'sz':
        value_tile(pen, PAGE, (170, 90, 90))
        glyph_label(pen, 'ab', INK_RED)
    elif kind == 'expand':
        value_tile(pen, (255, 244, 214), (190, 130, 60))
        if pen.large:
            # "ab" with a "%" badge over the corner.
            pen.text_centered(8, 3.5, 'ab', INK_RED, 2)
            pen.c.rect(pen.ox + 21, pen.oy + 18, pen.ox + 30, pen.oy + 28, (200, 110, 10))
            text(pen.c, pen.ox + 23, pen.oy + 20, '%', WHITE, True)
        else:
            glyph_label(pen, 'ab', INK_RED, y=4)
            pen.text_centered(12, 9, '%', (190, 100, 0))
    elif kind == 'multi':
        pen.box(4, 1, 15, 11, (236, 236, 236), (170, 90, 90))
        pen.box(1, 4, 12, 15, PAGE, (170, 90, 90))
        pen.rect(3, 7, 10, 8, INK_RED)
        pen.rect(3, 9, 10, 10, INK_RED)
        pen.rect(3, 11, 8, 12, INK_RED)
    elif kind == 'dword':
        value_tile(pen, (222, 234, 252), (70, 110, 180))
        glyph_label(pen, '0x', INK_BLUE)
    elif kind == 'binary':
        value_tile(pen, (216, 244, 236), (60, 140, 130))
        glyph_label(pen, '01', INK_TEAL)
    elif kind == 'none':
        value_tile(pen, (238, 238, 238), GREY_EDGE)
        pen.ring(8, 8, 4, (120, 120, 120), 1.0 if pen.large else 1.2)
        pen.line(5, 11, 11, 5, (120, 120, 120))
    elif kind == 'other':
        value_tile(pen, (240, 230, 250), (130, 90, 170))
        glyph_label(pen, '?', (110, 50, 160))


def fade(canvas, ox, size, toward=(246, 246, 246), amount=0.6):
    """The cut look: washed-out colours."""
    for y in range(size):
        for x in range(ox, ox + size):
            c = canvas.get(x, y)
            if c != MAGENTA:
                canvas.px(x, y, mix(c, toward, amount))


def grey(canvas, ox, size):
    """The disabled look: light greys by brightness."""
    for y in range(size):
        for x in range(ox, ox + size):
            c = canvas.get(x, y)
            if c != MAGENTA:
                lum = (0.3 * c[0] + 0.59 * c[1] + 0.11 * c[2]) / 255
                v = round(140 + 90 * lum)
                canvas.px(x, y, (v, v, v))


def paint_hive(pen, open_):
    body = (120, 150, 200) if not open_ else (150, 190, 240)
    edge = (50, 70, 120)
    for i, top in enumerate((2, 6, 10)):
        pen.box(2, top, 14, top + 4, body, edge)
        pen.rect(3, top + 1, 13, top + 2, mix(body, WHITE, 0.5))
    if open_:
        pen.disc(12.5, 12.5, 2.5, (60, 170, 70))


def paint_device(pen):
    body = (54, 62, 76)
    pen.box(3, 1, 13, 15, body, (24, 28, 36))
    pen.corner_round(3, 1, 13, 15)
    pen.box(4, 2, 12, 10, (170, 210, 250), (20, 40, 70))     # screen
    pen.rect(5, 3, 11, 4, (220, 238, 255))
    pen.rect(5, 5, 9, 6, (100, 150, 210))
    pen.rect(5, 7, 10, 8, (100, 150, 210))
    pen.rect(5, 11, 7, 13, (120, 130, 150))                   # buttons
    pen.rect(9, 11, 11, 13, (120, 130, 150))
    pen.rect(7, 13, 9, 14, (200, 60, 60))


def paint_nothing_found(pen):
    pen.ring(6.5, 6.5, 5, (80, 80, 90), 1.0 if pen.large else 1.3)
    pen.disc(6.5, 6.5, 3.9, (232, 240, 250))
    pen.thick_line(10, 10, 14, 14, (80, 80, 90))
    pen.thick_line(10, 11, 13, 14, (80, 80, 90))
    pen.line(4, 6, 9, 6, (150, 150, 160))


def paint_cancel(pen):
    pen.disc(8, 8, 7, (196, 40, 40))
    pen.ring(8, 8, 7, (130, 20, 20), 0.6)
    for d in (0, 1) if pen.large else (0,):
        pen.c.line(pen.ox + pen.p(5) + d, pen.oy + pen.p(5), pen.ox + pen.p(11) + d - 1, pen.oy + pen.p(11) - 1, WHITE)
        pen.c.line(pen.ox + pen.p(11) + d - 1, pen.oy + pen.p(5), pen.ox + pen.p(5) + d, pen.oy + pen.p(11) - 1, WHITE)
    if not pen.large:
        pen.line(5, 4, 11, 10, WHITE)
        pen.line(4, 10, 10, 4, WHITE)


def play(pen, color):
    pen.polygon([(4, 2), (14, 8), (4, 14)], color)


def paint_toolbar(pen, kind):
    if kind == 'resume':
        play(pen, (40, 150, 60))
        pen.polygon([(5, 4), (11, 8), (5, 8)], (110, 200, 120))
    elif kind == 'stop':
        pen.box(3, 3, 13, 13, (200, 44, 44), (130, 20, 20))
        pen.rect(4, 4, 12, 6, (232, 110, 110))
    elif kind == 'pause':
        pen.box(3, 2, 7, 14, (50, 100, 190), (20, 50, 120))
        pen.box(9, 2, 13, 14, (50, 100, 190), (20, 50, 120))
        pen.rect(4, 3, 6, 5, (130, 170, 230))
        pen.rect(10, 3, 12, 5, (130, 170, 230))
    elif kind == 'hide':
        pen.box(1, 4, 15, 10, (214, 214, 214), GREY_EDGE)   # a small toolbar
        pen.rect(2, 5, 4, 9, (150, 150, 150))
        pen.rect(5, 6, 8, 8, (60, 130, 200))
        pen.rect(9, 6, 12, 8, (60, 130, 200))
        pen.polygon([(5, 11), (11, 11), (8, 15)], (40, 40, 48))   # down: out of sight
    elif kind == 'switch':
        pen.box(1, 1, 11, 10, WHITE, (40, 70, 130))          # results list
        pen.rect(2, 2, 10, 3, (40, 90, 170))
        pen.rect(3, 5, 9, 6, (120, 120, 120))
        pen.rect(3, 7, 8, 8, (120, 120, 120))
        pen.box(5, 6, 15, 15, WHITE, (40, 70, 130))          # main window
        pen.rect(6, 7, 14, 8, (40, 90, 170))
        pen.rect(6, 8, 9, 14, (240, 196, 72))
        pen.rect(10, 9, 14, 10, (120, 120, 120))
        pen.rect(10, 11, 13, 12, (120, 120, 120))


def paint_page(pen, reg=False):
    pen.polygon([(3, 1), (10, 1), (13, 4), (13, 15), (3, 15)], PAGE)
    pen.line(3, 1, 10, 1, PAGE_EDGE)
    pen.line(3, 1, 3, 15, PAGE_EDGE)
    pen.line(3, 15, 13, 15, PAGE_EDGE)
    pen.line(13, 4, 13, 15, PAGE_EDGE)
    pen.line(10, 1, 13, 4, PAGE_EDGE)
    pen.box(10, 1, 13, 4, (224, 228, 234), PAGE_EDGE)
    if reg:
        # Registry entries: coloured blocks on the page.
        for row, color in enumerate(((200, 40, 40), (40, 90, 170), (20, 130, 120))):
            pen.rect(5, 6 + row * 3, 7, 8 + row * 3, color)
            pen.rect(8, 6 + row * 3 + (0 if pen.large else 1), 12, 7 + row * 3 + (1 if pen.large else 1),
                     (150, 150, 150))
    else:
        for row in range(4):
            pen.rect(5, 6 + row * 2, 12 if row % 2 == 0 else 10, 7 + row * 2, (170, 176, 186))


def paint_up_folder(pen):
    folder_closed(pen)
    pen.polygon([(8, 5), (12, 9), (10, 9), (10, 13), (6, 13), (6, 9), (4, 9)], (40, 150, 60))


def paint_card(pen):
    pen.polygon([(3, 1), (11, 1), (14, 4), (14, 15), (3, 15)], (44, 70, 130))
    pen.line(3, 1, 11, 1, (20, 34, 70))
    pen.line(3, 1, 3, 15, (20, 34, 70))
    pen.line(3, 15, 14, 15, (20, 34, 70))
    pen.line(14, 4, 14, 15, (20, 34, 70))
    pen.line(11, 1, 14, 4, (20, 34, 70))
    for i in range(4):
        pen.rect(4 + 2 * i, 2, 5 + 2 * i, 5, (230, 190, 60))
    pen.box(5, 8, 12, 13, (236, 236, 240), (20, 34, 70))


# --- Strips -------------------------------------------------------------------------------

VALUE_KINDS = ['sz', 'binary', 'dword', 'multi', 'expand', 'none', 'other']


def values_strip(size):
    # Cut forms at 0-6, normal forms at 7-13: REG_SZ, REG_BINARY, REG_DWORD,
    # REG_MULTI_SZ, REG_EXPAND_SZ, REG_NONE, other.
    canvas = Canvas(size * 14, size)
    for i, kind in enumerate(VALUE_KINDS):
        paint_value(Pen(canvas, (i + 7) * size, 0, size), kind)
        paint_value(Pen(canvas, i * size, 0, size), kind)
        fade(canvas, i * size, size)
    return canvas


def tree_strip(size):
    canvas = Canvas(size * 5, size)
    paint_hive(Pen(canvas, 0, 0, size), False)
    paint_hive(Pen(canvas, size, 0, size), True)
    folder_closed(Pen(canvas, 2 * size, 0, size))
    folder_open(Pen(canvas, 3 * size, 0, size))
    paint_device(Pen(canvas, 4 * size, 0, size))
    return canvas


def results_strip(size):
    canvas = Canvas(size * 4, size)
    paint_nothing_found(Pen(canvas, 0, 0, size))
    paint_cancel(Pen(canvas, size, 0, size))
    folder_closed(Pen(canvas, 2 * size, 0, size))
    paint_value(Pen(canvas, 3 * size, 0, size), 'sz')
    return canvas


def toolbar_strip(size):
    canvas = Canvas(size * 10, size)
    for i, kind in enumerate(['resume', 'stop', 'pause', 'hide', 'switch']):
        paint_toolbar(Pen(canvas, 2 * i * size, 0, size), kind)
        paint_toolbar(Pen(canvas, (2 * i + 1) * size, 0, size), kind)
        grey(canvas, (2 * i + 1) * size, size)
    return canvas


def files_strip(size):
    canvas = Canvas(size * 5, size)
    paint_page(Pen(canvas, 0, 0, size))
    folder_closed(Pen(canvas, size, 0, size))
    paint_up_folder(Pen(canvas, 2 * size, 0, size))
    paint_page(Pen(canvas, 3 * size, 0, size), reg=True)
    paint_card(Pen(canvas, 4 * size, 0, size))
    return canvas


def icon_image(size):
    """The program icon: a handheld showing a key tree."""
    canvas = Canvas(size, size)
    u = size / 16.0
    body = (40, 64, 110)
    edge = (16, 28, 52)

    def r(x0, y0, x1, y1, color):
        canvas.rect(round(x0 * u), round(y0 * u), round(x1 * u), round(y1 * u), color)

    r(2, 0, 14, 16, edge)
    r(2.5 if size > 16 else 3, 0.5 if size > 16 else 1, 13.5 if size > 16 else 13, 15.5 if size > 16 else 15, body)
    for x, y in ((2, 0), (13, 0), (2, 15), (13, 15)):
        canvas.rect(round(x * u), round(y * u), round(x * u) + max(1, round(u / 2)), round(y * u) + max(1, round(u / 2)),
                    MAGENTA)
    r(3.5 if size > 16 else 4, 2, 12.5 if size > 16 else 12, 12, (236, 244, 255))     # screen
    trunk = (90, 100, 120)
    r(5, 4, 5 + max(1 / u, 0.5), 10.5, trunk)
    r(5, 6.5, 8, 6.5 + max(1 / u, 0.5), trunk)
    r(5, 10, 8, 10 + max(1 / u, 0.5), trunk)
    for x, y in ((4, 3), (7.5, 5.5), (7.5, 9)):
        r(x, y, x + 3, y + 2, FOLDER)
        canvas.frame(round(x * u), round(y * u), round((x + 3) * u), round((y + 2) * u), FOLDER_DARK)
    r(6.5, 13, 9.5, 14.5, (120, 140, 180))                                               # button
    return canvas


# --- Files --------------------------------------------------------------------------------

def write_bmp(path, canvas):
    row_bytes = (canvas.width * 3 + 3) & ~3
    image = bytearray()
    for y in range(canvas.height - 1, -1, -1):
        row = bytearray()
        for r_, g, b in canvas.pixels[y]:
            row += bytes((b, g, r_))
        row += bytes(row_bytes - len(row))
        image += row
    header = struct.pack('<2sIHHI', b'BM', 14 + 40 + len(image), 0, 0, 14 + 40)
    info = struct.pack('<IiiHHIIiiII', 40, canvas.width, canvas.height, 1, 24, 0, len(image), 2835, 2835, 0, 0)
    with open(path, 'wb') as f:
        f.write(header + info + image)


def write_ico(path, canvases):
    images = []
    for canvas in canvases:
        size = canvas.width
        pixels = bytearray()
        for y in range(size - 1, -1, -1):
            for c in canvas.pixels[y]:
                pixels += bytes((0, 0, 0, 0)) if c == MAGENTA else bytes((c[2], c[1], c[0], 255))
        mask_row = ((size + 31) // 32) * 4
        mask = bytearray()
        for y in range(size - 1, -1, -1):
            bits = bytearray(mask_row)
            for x, c in enumerate(canvas.pixels[y]):
                if c == MAGENTA:
                    bits[x // 8] |= 0x80 >> (x % 8)
            mask += bits
        info = struct.pack('<IiiHHIIiiII', 40, size, size * 2, 1, 32, 0, len(pixels) + len(mask), 0, 0, 0, 0)
        images.append((size, info + pixels + mask))
    directory = struct.pack('<HHH', 0, 1, len(images))
    offset = 6 + 16 * len(images)
    entries = b''
    for size, data in images:
        entries += struct.pack('<BBBBHHII', size % 256, size % 256, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    with open(path, 'wb') as f:
        f.write(directory + entries + b''.join(data for _, data in images))


def write_png(path, canvas):
    raw = bytearray()
    for row in canvas.pixels:
        raw.append(0)
        for c in row:
            raw += bytes(c)

    def chunk(kind, data):
        body = kind + data
        return struct.pack('>I', len(data)) + body + struct.pack('>I', zlib.crc32(body) & 0xFFFFFFFF)

    png = b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', canvas.width, canvas.height, 8, 2, 0, 0, 0))
    png += chunk(b'IDAT', zlib.compress(bytes(raw), 9)) + chunk(b'IEND', b'')
    with open(path, 'wb') as f:
        f.write(png)


def preview(strips, path, zoom=4):
    """Every strip at 1x on white and grey and enlarged, for a look."""
    gap = 8
    width = max(s.width for s in strips) * zoom + 2 * gap
    height = sum(s.height * (zoom + 2) + 3 * gap for s in strips) + gap
    sheet = Canvas(width, height, (255, 255, 255))
    y = gap
    for strip in strips:
        for x0, background in ((gap, (255, 255, 255)), (gap + strip.width + gap, (212, 208, 200))):
            sheet.rect(x0, y, x0 + strip.width, y + strip.height, background)
            sheet.blit(strip, x0, y)
        y += strip.height + gap
        for sy in range(strip.height):
            for sx in range(strip.width):
                c = strip.pixels[sy][sx]
                sheet.rect(gap + sx * zoom, y + sy * zoom, gap + (sx + 1) * zoom, y + (sy + 1) * zoom,
                           (224, 224, 224) if c == MAGENTA else c)
        y += strip.height * zoom + 2 * gap
    write_png(path, sheet)


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    art = os.path.join(here, 'art')
    os.makedirs(art, exist_ok=True)
    strips = []
    for name, make in (('values', values_strip), ('tree', tree_strip), ('results', results_strip),
                       ('toolbar', toolbar_strip), ('files', files_strip)):
        for size in (16, 32):
            canvas = make(size)
            write_bmp(os.path.join(art, '%s%d.bmp' % (name, size)), canvas)
            strips.append(canvas)
    icons = [icon_image(size) for size in (16, 32, 48)]
    write_ico(os.path.join(art, 'quenda.ico'), icons)
    if len(sys.argv) == 3 and sys.argv[1] == '--preview':
        preview(strips + icons, sys.argv[2])


if __name__ == '__main__':
    main()
