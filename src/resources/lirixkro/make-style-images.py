#!/usr/bin/env python3
"""Draws the recorder control's bezel and button images for every look of
both styles, as SVG rendered to PNG at 1x and 2x with rsvg-convert.

    make-style-images.py OUTPUT_DIRECTORY

A bezel is drawn whole and cut into a left cap, a one-point centre that is
stretched, and a right cap. The clear button points back along the reading
direction, so it has a left-to-right and a right-to-left drawing."""

import os
import subprocess
import sys
import tempfile

# Per style: the bezel's corner radius and height in points, and whether its
# face has a soft gradient.
STYLES = {
    "sr-mojave": {"radius": 5.5, "height": 22, "cap": 7, "gradient": True},
    "sr-yosemite": {"radius": 3.5, "height": 22, "cap": 6, "gradient": False},
}

# The four looks: (light or dark, high contrast) and their colours per bezel
# state: face, border, border width, shadow under the bezel.
LOOKS = {
    "aqua": {
        "normal": ("#FFFFFF", "rgba(0,0,0,0.24)", 1.0),
        "pressed": ("#E3E3E6", "rgba(0,0,0,0.30)", 1.0),
        "recording": ("#EEF5FF", "#3A8EF6", 1.5),
        "disabled": ("#F7F7F7", "rgba(0,0,0,0.12)", 1.0),
        "shadow": "rgba(0,0,0,0.10)",
        "button": ("#8E8E93", "#5E5E63", "#FFFFFF"),
    },
    "darkaqua": {
        "normal": ("#434346", "rgba(255,255,255,0.18)", 1.0),
        "pressed": ("#5A5A5E", "rgba(255,255,255,0.26)", 1.0),
        "recording": ("#1E3350", "#3B95FF", 1.5),
        "disabled": ("#323235", "rgba(255,255,255,0.09)", 1.0),
        "shadow": "rgba(0,0,0,0.35)",
        "button": ("#A1A1A6", "#D4D4D9", "#2A2A2C"),
    },
    "aqua-acc": {
        "normal": ("#FFFFFF", "#000000", 1.5),
        "pressed": ("#CFCFCF", "#000000", 1.5),
        "recording": ("#FFFFFF", "#0036C8", 2.5),
        "disabled": ("#FFFFFF", "#767676", 1.5),
        "shadow": "rgba(0,0,0,0)",
        "button": ("#000000", "#0036C8", "#FFFFFF"),
    },
    "darkaqua-acc": {
        "normal": ("#000000", "#FFFFFF", 1.5),
        "pressed": ("#3C3C3C", "#FFFFFF", 1.5),
        "recording": ("#000000", "#69B4FF", 2.5),
        "disabled": ("#000000", "#8C8C8C", 1.5),
        "shadow": "rgba(0,0,0,0)",
        "button": ("#FFFFFF", "#69B4FF", "#000000"),
    },
}

BUTTON = 14  # points, square


def svg(width, height, view_box, body):
    return (
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
        f'viewBox="{view_box}">{body}</svg>'
    )


def bezel_body(style, look, state):
    face, border, border_width = LOOKS[look][state]
    shadow = LOOKS[look]["shadow"]
    cap, height, radius = style["cap"], style["height"], style["radius"]
    width = 2 * cap + 1
    inset = border_width / 2
    body_height = height - 1  # the last point row holds the shadow
    fill = face
    defs = ""
    if style["gradient"] and not look.endswith("-acc") and state != "disabled":
        defs = (
            '<defs><linearGradient id="face" x1="0" y1="0" x2="0" y2="1">'
            f'<stop offset="0" stop-color="{face}"/>'
            f'<stop offset="1" stop-color="{face}" stop-opacity="0.86"/>'
            "</linearGradient></defs>"
        )
        fill = "url(#face)"
    shadow_rect = (
        f'<rect x="0.5" y="1" width="{width - 1}" height="{body_height}" rx="{radius}" '
        f'fill="{shadow}"/>'
    )
    face_rect = (
        f'<rect x="{inset}" y="{inset}" width="{width - 2 * inset}" '
        f'height="{body_height - 2 * inset}" rx="{radius - inset / 2}" fill="{fill}" '
        f'stroke="{border}" stroke-width="{border_width}"/>'
    )
    return width, height, defs + shadow_rect + face_rect


def cross(cx, cy, half, colour, width):
    return (
        f'<path d="M{cx - half},{cy - half} L{cx + half},{cy + half} '
        f'M{cx + half},{cy - half} L{cx - half},{cy + half}" stroke="{colour}" '
        f'stroke-width="{width}" stroke-linecap="round"/>'
    )


def cancel_body(look, pressed):
    normal, down, mark = LOOKS[look]["button"]
    c = BUTTON / 2
    return (
        f'<circle cx="{c}" cy="{c}" r="{c - 0.5}" fill="{down if pressed else normal}"/>'
        + cross(c, c, 2.6, mark, 1.6)
    )


def clear_body(look, pressed, right_to_left):
    normal, down, mark = LOOKS[look]["button"]
    # A key cap with its point towards where text is deleted to.
    outline = "M1,7 L5,2.5 H12 Q13,2.5 13,3.5 V10.5 Q13,11.5 12,11.5 H5 Z"
    mirror = f' transform="translate({BUTTON},0) scale(-1,1)"' if right_to_left else ""
    return (
        f"<g{mirror}>"
        f'<path d="{outline}" fill="{down if pressed else normal}" stroke-linejoin="round"/>'
        + cross(8.6, 7, 2.1, mark, 1.4)
        + "</g>"
    )


def render(directory, name, width, height, document):
    with tempfile.NamedTemporaryFile("w", suffix=".svg", delete=False) as file:
        file.write(document)
        source = file.name
    try:
        for scale, suffix in ((1, ""), (2, "@2x")):
            subprocess.run(
                [
                    "rsvg-convert",
                    "-w", str(round(width * scale)),
                    "-h", str(round(height * scale)),
                    "-o", os.path.join(directory, f"{name}{suffix}.png"),
                    source,
                ],
                check=True,
            )
    finally:
        os.unlink(source)


def make_style(directory, identifier, style):
    for look in LOOKS:
        for state in ("normal", "pressed", "recording", "disabled"):
            width, height, body = bezel_body(style, look, state)
            cap = style["cap"]
            pieces = {"left": (0, cap), "center": (cap, 1), "right": (cap + 1, cap)}
            for piece, (x, piece_width) in pieces.items():
                view_box = f"{x} 0 {piece_width} {height}"
                render(
                    directory,
                    f"{identifier}-{look}-bezel-{state}-{piece}",
                    piece_width,
                    height,
                    svg(piece_width, height, view_box, body),
                )
        for state in ("normal", "pressed"):
            pressed = state == "pressed"
            render(
                directory,
                f"{identifier}-{look}-button-cancel-{state}",
                BUTTON,
                BUTTON,
                svg(BUTTON, BUTTON, f"0 0 {BUTTON} {BUTTON}", cancel_body(look, pressed)),
            )
            for direction in ("ltr", "rtl"):
                body = clear_body(look, pressed, direction == "rtl")
                render(
                    directory,
                    f"{identifier}-{look}-{direction}-button-clear-{state}",
                    BUTTON,
                    BUTTON,
                    svg(BUTTON, BUTTON, f"0 0 {BUTTON} {BUTTON}", body),
                )


def main():
    directory = sys.argv[1]
    os.makedirs(directory, exist_ok=True)
    for identifier, style in STYLES.items():
        make_style(directory, identifier, style)


if __name__ == "__main__":
    main()
