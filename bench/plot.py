"""Draws what a person costs, over the number of people, as a picture in SVG."""

import html
import math

from report import per_person

WIDTH, HEIGHT = 860, 460
LEFT, RIGHT, TOP, BOTTOM = 70, 250, 20, 50
COLOURS = ("#444444", "#999999", "#0a7f3f", "#1f6feb", "#8250df", "#c2410c", "#b08800", "#d1247f", "#0e7490")
FONT = 'font-family="sans-serif" font-size="12"'


class Scale:
    """Maps a range of positive numbers to a range of the picture, by their logarithms."""

    def __init__(self, lowest, highest, begin, end):
        self.lowest, self.highest = math.log10(lowest), math.log10(highest)
        self.begin, self.end = begin, end

    def at(self, value):
        span = (self.highest - self.lowest) or 1
        return self.begin + (math.log10(value) - self.lowest) / span * (self.end - self.begin)

    def powers(self):
        return [10.0 ** power for power in range(math.ceil(self.lowest), math.floor(self.highest) + 1)]


def plot(table, runs):
    """The picture with a line for each of these runs."""
    lines = {run: [(row.people, per_person(row)) for row in table.of(run)] for run in runs if table.of(run)}
    points = [point for line in lines.values() for point in line]
    costs = [cost for _, cost in points]
    x = Scale(min(people for people, _ in points), max(people for people, _ in points), LEFT, WIDTH - RIGHT)
    lowest, highest = 10.0 ** math.floor(math.log10(min(costs))), 10.0 ** math.ceil(math.log10(max(costs)))
    y = Scale(lowest, highest, HEIGHT - BOTTOM, TOP)
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{WIDTH}" height="{HEIGHT}" '
             f'viewBox="0 0 {WIDTH} {HEIGHT}" {FONT}>', f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>']
    parts += axes(x, y)
    # The names are at their lines' ends, far enough from each other to be read.
    lowest_free = HEIGHT
    ends = sorted(lines.items(), key=lambda item: -y.at(item[1][-1][1]))
    colour_of = dict(zip(lines, (COLOURS[i % len(COLOURS)] for i in range(len(lines)))))
    for run, line in reversed(ends):
        colour = colour_of[run]
        path = " ".join(f"{x.at(people):.1f},{y.at(cost):.1f}" for people, cost in line)
        parts.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>')
        parts += [f'<circle cx="{x.at(people):.1f}" cy="{y.at(cost):.1f}" r="3" fill="{colour}"/>'
                  for people, cost in line]
    for run, line in ends:
        name_at = min(y.at(line[-1][1]) + 4, lowest_free - 15)
        lowest_free = name_at
        parts.append(f'<text x="{WIDTH - RIGHT + 12}" y="{name_at:.1f}" fill="{colour_of[run]}">'
                     f'{html.escape(run.replace("`", ""))}</text>')
    return "\n".join([*parts, "</svg>\n"])


def axes(x, y):
    parts = []
    for value in x.powers():
        parts.append(f'<path d="M{x.at(value):.1f} {TOP}V{HEIGHT - BOTTOM}" stroke="#dddddd"/>')
        parts.append(f'<text x="{x.at(value):.1f}" y="{HEIGHT - BOTTOM + 18}" text-anchor="middle">{value:,.0f}</text>')
    for value in y.powers():
        parts.append(f'<path d="M{LEFT} {y.at(value):.1f}H{WIDTH - RIGHT}" stroke="#dddddd"/>')
        parts.append(f'<text x="{LEFT - 8}" y="{y.at(value) + 4:.1f}" text-anchor="end">{value:g}</text>')
    middle = (TOP + HEIGHT - BOTTOM) / 2
    parts.append(f'<text x="{(LEFT + WIDTH - RIGHT) / 2:.1f}" y="{HEIGHT - 10}" text-anchor="middle">people</text>')
    parts.append(f'<text x="18" y="{middle:.1f}" text-anchor="middle" transform="rotate(-90 18 {middle:.1f})">'
                 'microseconds of processor time a person</text>')
    return parts
