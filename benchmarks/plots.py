"""Plain pictures in SVG, readable on light and on dark."""

import math
from xml.sax.saxutils import escape

STYLE = """
text { font: 12px sans-serif; fill: #333 }
.title { font-size: 14px; font-weight: bold }
.small { font-size: 10px }
.paper { fill: #fff }
.grid { stroke: #ddd }
.c0 { stroke: #1b6ec2; fill: #1b6ec2 }
.c1 { stroke: #c2571b; fill: #c2571b }
.c2 { stroke: #6f6f6f; fill: #6f6f6f }
.c3 { stroke: #2a8a4a; fill: #2a8a4a }
.line { fill: none; stroke-width: 2 }
@media (prefers-color-scheme: dark) {
  text { fill: #ddd }
  .paper { fill: #16181c }
  .grid { stroke: #3a3d44 }
  .c0 { stroke: #6cb0f5; fill: #6cb0f5 }
  .c1 { stroke: #f09a5f; fill: #f09a5f }
  .c2 { stroke: #a5a5a5; fill: #a5a5a5 }
  .c3 { stroke: #6fce8d; fill: #6fce8d }
  .line { fill: none }
}
"""
LEGEND_ENTRY = 110
MARGIN = 16


def text(x, y, content, kind="", anchor="start"):
    return f'<text x="{x:.1f}" y="{y:.1f}" class="{kind}" text-anchor="{anchor}">{escape(content)}</text>'


def picture(width, height, title, colours, parts):
    """`colours` are the names in the legend, each with the number of its colour."""
    legend = []
    for place, (name, colour) in enumerate(colours.items()):
        x = MARGIN + place * LEGEND_ENTRY
        legend.append(f'<rect x="{x}" y="34" width="12" height="12" class="c{colour}"/>')
        legend.append(text(x + 18, 44, name))
    body = "\n".join([text(MARGIN, 22, title, "title"), *legend, *parts])
    return (
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" height="{height}" '
        f'role="img" aria-label="{escape(title)}">\n<style>{STYLE}</style>\n'
        f'<rect width="{width}" height="{height}" class="paper"/>\n{body}\n</svg>\n'
    )


def short(count):
    return f"{count // 1_000_000}M" if count >= 1_000_000 else f"{count // 1_000}k"


def coloured(names, shown):
    """The names that are shown, each with the colour that it always has."""
    return {name: colour for colour, name in enumerate(names) if name in shown}


def lines(title, names, panels, value_text):
    """Panels beside one another, each a title and its series (a name's points), both axes logarithmic and the same."""
    columns, width, height, top = 3, 300, 240, 70
    colours = coloured(names, {name for _, series in panels for name, values in series.items() if values})
    points = [point for _, series in panels for values in series.values() for point in values]
    if not points:
        return picture(width, top, title, colours, [])
    xs = sorted({x for x, _ in points})
    low = math.floor(math.log10(min(y for _, y in points)))
    high = math.ceil(math.log10(max(y for _, y in points)))

    def place(left, upper, x, y):
        across = math.log10(x / xs[0]) / (math.log10(xs[-1] / xs[0]) or 1)
        up = (math.log10(y) - low) / ((high - low) or 1)
        return left + 52 + across * (width - 80), upper + height - 32 - up * (height - 62)

    parts = []
    for number, (name, series) in enumerate(panels):
        left, upper = number % columns * width, top + number // columns * height
        parts.append(text(left + 52, upper + 14, name))
        for exponent in range(low, high + 1):
            x, y = place(left, upper, xs[0], 10**exponent)
            end, _ = place(left, upper, xs[-1], 10**exponent)
            parts.append(f'<line x1="{x:.1f}" y1="{y:.1f}" x2="{end:.1f}" y2="{y:.1f}" class="grid"/>')
            parts.append(text(x - 6, y + 4, value_text(10**exponent), "small", "end"))
        for count in xs:
            x, y = place(left, upper, count, 10**low)
            parts.append(text(x, y + 16, short(count), "small", "middle"))
        for series_name, index in colours.items():
            where = [place(left, upper, x, y) for x, y in series.get(series_name, [])]
            path = " ".join(f"{x:.1f},{y:.1f}" for x, y in where)
            if len(where) > 1:
                parts.append(f'<polyline points="{path}" class="c{index} line"/>')
            parts += [f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3" class="c{index}"/>' for x, y in where]
    rows = math.ceil(len(panels) / columns)
    return picture(columns * width, top + rows * height + 6, title, colours, parts)


def bars(title, names, groups, value_text):
    """Groups below one another, each a title and its bars (a name's value), on one linear axis from zero."""
    width, label, bar, top = 900, 260, 16, 66
    colours = coloured(names, {name for _, values in groups for name in values})
    largest = max((value for _, values in groups for value in values.values()), default=1)
    parts = []
    y = top
    for name, values in groups:
        parts.append(text(label - 10, y + 12, name, anchor="end"))
        for series_name, value in values.items():
            length = value / largest * (width - label - 100)
            kind = colours[series_name]
            parts.append(f'<rect x="{label}" y="{y}" width="{length:.1f}" height="{bar - 3}" class="c{kind}"/>')
            parts.append(text(label + length + 6, y + 11, value_text(value), "small"))
            y += bar
        y += 12
    return picture(width, y + 4, title, colours, parts)
