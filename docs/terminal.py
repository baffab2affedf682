"""Makes a picture of a terminal, docs/demo.svg, of what script/demo prints.

    script/demo | python3 -B docs/terminal.py > docs/demo.svg
"""

import itertools
import sys
import unicodedata
from xml.sax.saxutils import escape

SHOWN = ("import", "identify", "search ㄱㅁ", "speed-dial list", "group list", "call list")
COLUMN = 8.4
LINE = 19
MARGIN = 18
BAR = 30
HEAD = f"""<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {{width:.0f}} {{height:.0f}}" role="img" \
aria-label="The tool at a terminal">
<style>
text {{{{ font: 14px "DejaVu Sans Mono", "Noto Sans Mono CJK KR", NanumGothicCoding, monospace; fill: #d8dee6 }}}}
.command {{{{ fill: #8fd694; font-weight: bold }}}}
</style>
<rect width="100%" height="100%" rx="8" fill="#16191d"/>
<circle cx="20" cy="16" r="6" fill="#e5655b"/><circle cx="40" cy="16" r="6" fill="#e0b44c"/>\
<circle cx="60" cy="16" r="6" fill="#6cb761"/>"""


def commands_of(lines):
    """The lines of each command that is shown, its own first."""
    shown = False
    for line in lines:
        if line.startswith("$ "):
            shown = line.removeprefix("$ tessera ").startswith(SHOWN)
        if shown:
            yield line


def kind_of(character):
    """Its columns, and whether it is a space."""
    return 2 if unicodedata.east_asian_width(character) in "WF" else 1, character.isspace()


def runs_of(line):
    """Words, and parts of words, of one width a character, each with the column that it begins in."""
    column = 0
    for (width, _), characters in itertools.groupby(line, kind_of):
        text = "".join(characters)
        columns = len(text) * width
        yield column, columns, text
        column += columns


def columns_of(line):
    return max((column + columns for column, columns, _ in runs_of(line)), default=0)


def picture_of(lines):
    width = 2 * MARGIN + COLUMN * max(map(columns_of, lines))
    yield HEAD.format(width=width, height=BAR + LINE * len(lines) + MARGIN)
    for number, line in enumerate(lines):
        y = BAR + LINE * (number + 1)
        style = ' class="command"' if line.startswith("$ ") else ""
        for column, columns, text in runs_of(line):
            if not text.isspace():
                yield (f'<text{style} x="{MARGIN + COLUMN * column:.1f}" y="{y}" '
                       f'textLength="{COLUMN * columns:.1f}">{escape(text)}</text>')
    yield "</svg>"


def main():
    lines = [line.rstrip() for line in commands_of(sys.stdin)]
    while lines and not lines[-1]:
        lines.pop()
    if not lines:
        sys.exit("terminal.py: there is no command of the demo in what it reads")
    print("\n".join(picture_of(lines)))


main()
