#!/usr/bin/env python3
"""Draws packaging/raveloutils.svg (its rectangles with round corners, lines
and circles, which is all the icon uses) into a Windows icon of 16, 32, 48
and 256 pixels: packaging/raveloutils.ico, for the Windows build's resource.
Usage: make_ico.py SVG ICO"""
import re, struct, sys, xml.etree.ElementTree as ET

def colour(text, opacity=1.0):
    text = text.lstrip('#')
    return (int(text[0:2], 16), int(text[2:4], 16), int(text[4:6], 16), opacity)

def shapes(svg):
    """(kind, geometry, fill, stroke, stroke width) in drawing order, inherited group styles applied."""
    out = []
    def walk(node, style):
        tag = node.tag.split('}')[-1]
        style = dict(style, **{k: v for k, v in node.attrib.items() if k in ('fill', 'stroke', 'stroke-width', 'fill-opacity')})
        g = {k: float(v) for k, v in node.attrib.items() if re.fullmatch(r'-?[\d.]+', v)}
        if tag in ('rect', 'line', 'circle'):
            out.append((tag, g, style))
        for child in node:
            walk(child, style)
    walk(ET.parse(svg).getroot(), {})
    return out

def inside(kind, g, style, x, y):
    """(fill hit, stroke hit) of one point."""
    w = float(style.get('stroke-width', 0)) / 2
    if kind == 'circle':
        d = ((x - g['cx']) ** 2 + (y - g['cy']) ** 2) ** 0.5
        return d <= g['r'], abs(d - g['r']) <= w
    if kind == 'line':
        ax, ay, bx, by = g['x1'], g['y1'], g['x2'], g['y2']
        t = max(0, min(1, ((x - ax) * (bx - ax) + (y - ay) * (by - ay)) / ((bx - ax) ** 2 + (by - ay) ** 2)))
        return False, ((x - ax - t * (bx - ax)) ** 2 + (y - ay - t * (by - ay)) ** 2) ** 0.5 <= w
    r = g.get('rx', 0)
    cx = min(max(x, g['x'] + r), g['x'] + g['width'] - r)
    cy = min(max(y, g['y'] + r), g['y'] + g['height'] - r)
    d = ((x - cx) ** 2 + (y - cy) ** 2) ** 0.5
    return d <= r if r else (g['x'] <= x <= g['x'] + g['width'] and g['y'] <= y <= g['y'] + g['height']), abs(d - r) <= w

def render(items, size, view=64, samples=4):
    pixels = []
    for py in range(size - 1, -1, -1):   # BMP rows go bottom-up
        for px in range(size):
            acc = [0.0, 0.0, 0.0, 0.0]
            for sy in range(samples):
                for sx in range(samples):
                    x = (px + (sx + 0.5) / samples) * view / size
                    y = (py + (sy + 0.5) / samples) * view / size
                    r = g_ = b = a = 0.0
                    for kind, geo, style in items:
                        fill, stroke = inside(kind, geo, style, x, y)
                        for hit, key in ((fill, 'fill'), (stroke, 'stroke')):
                            if hit and style.get(key, 'none') != 'none':
                                cr, cg, cb, co = colour(style[key], float(style.get('fill-opacity', 1)) if key == 'fill' else 1)
                                r, g_, b = r * (1 - co) + cr * co, g_ * (1 - co) + cg * co, b * (1 - co) + cb * co
                                a = a + co * (1 - a)
                    acc = [acc[0] + r, acc[1] + g_, acc[2] + b, acc[3] + a]
            n = samples * samples
            pixels.append(struct.pack('BBBB', int(acc[2] / n), int(acc[1] / n), int(acc[0] / n), int(255 * acc[3] / n)))
    mask = b'\0' * (((size + 31) // 32) * 4 * size)
    header = struct.pack('<IiiHHIIiiII', 40, size, size * 2, 1, 32, 0, 0, 0, 0, 0, 0)
    return header + b''.join(pixels) + mask

def main(svg, ico):
    items = shapes(svg)
    images = [(s, render(items, s)) for s in (16, 32, 48, 256)]
    out = struct.pack('<HHH', 0, 1, len(images))
    offset = 6 + 16 * len(images)
    for size, data in images:
        out += struct.pack('<BBBBHHII', size % 256, size % 256, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    open(ico, 'wb').write(out + b''.join(d for _, d in images))

if __name__ == '__main__':
    main(*sys.argv[1:3])
