#!/usr/bin/env python3
"""Reads a Word 97 document from its bytes, after [MS-CFB], [MS-DOC] and [MS-ODRAW], and prints what is in it,
one paragraph a line. The first structure that is not as published ends it with exit code 1.

Usage: check_word_file.py FILE
"""

import hashlib
import struct
import sys

import olefile

FREE, END, FAT, DIFAT = 0xFFFFFFFF, 0xFFFFFFFE, 0xFFFFFFFD, 0xFFFFFFFC
OPERAND_SIZE = {0: 1, 1: 1, 2: 2, 3: 4, 4: 2, 5: 2, 7: 3}  # by the three highest bits of a property
NAMES = {
    0x0835: "bold", 0x0836: "italic", 0x0855: "special", 0x085C: "bold complex", 0x085D: "italic complex",
    0x2403: "physical alignment", 0x2407: "break", 0x2461: "alignment", 0x2640: "level", 0x2A3E: "underline",
    0x2A42: "color", 0x4A43: "size", 0x4A4F: "font", 0x4A50: "font 1", 0x4A51: "font 2", 0x4A5E: "font complex",
    0x4A61: "size complex", 0x6A03: "picture", 0x9023: "top", 0x9024: "bottom", 0xB017: "header",
    0xB018: "footer", 0xB01F: "width", 0xB020: "height", 0xB021: "left", 0xB022: "right",
}  # fmt: skip
TABLES = {1: "styles", 6: "sections", 12: "characters", 13: "paragraphs", 15: "fonts", 31: "settings",
          32: "strings", 33: "pieces"}  # fmt: skip


def check(condition, what):
    if not condition:
        sys.exit(f"not as published: {what}")


def numbers(data, at, count, form="I"):
    return struct.unpack_from(f"<{count}{form}", data, at)


class Compound:
    """Every sector of the file belongs to exactly one chain; the directory is a red-black tree."""

    def __init__(self, data):
        self.data = data
        check(len(data) % 512 == 0 and data[:8].hex() == "d0cf11e0a1b11ae1" and not any(data[8:24]), "signature")
        check(numbers(data, 24, 5, "H") == (0x3E, 3, 0xFFFE, 9, 6) and not any(data[34:44]), "version")
        fats, directory, _, limit, mini_first, mini_count, difat, difats = numbers(data, 44, 8)
        self.owner = [None] * (len(data) // 512 - 1)
        sectors = list(numbers(data, 76, 109))
        for _ in range(difats):
            self.own(difat, "difat")
            sectors += numbers(self.sector(difat), 0, 127)
            (difat,) = numbers(self.sector(difat), 508, 1)
        check(difat == END and set(sectors[fats:]) <= {FREE}, "end of the difat")
        for sector in sectors[:fats]:
            self.own(sector, "fat")
        self.fat = [n for sector in sectors[:fats] for n in numbers(self.sector(sector), 0, 128)]
        entries = self.chain(directory, "directory")
        self.entries = [entries[i : i + 128] for i in range(0, len(entries), 128)]
        start, size, high = numbers(entries, 116, 3)
        check(entries[66] == 5 and high == 0 and self.name(0) == "Root Entry", "root")
        check(entries[80:96].hex() == "0609020000000000c000000000000046", "class of a Word document")
        self.mini = self.chain(start, "mini stream", size)
        links = self.chain(mini_first, "mini fat")
        check(len(links) == 512 * mini_count and limit == 4096, "mini fat")
        self.mini_fat = numbers(links, 0, len(links) // 4)
        self.mini_owner = [None] * (size // 64)
        self.streams, self.visited = {}, []
        self.walk(numbers(entries, 76, 1)[0], black_parent=False)
        ordered = [(len(name), name.upper()) for name in self.visited]
        check(ordered == sorted(set(ordered)), "order of the directory")
        unused = self.entries.count(bytes(68) + b"\xff" * 12 + bytes(48))
        check(unused + len(self.visited) + 1 == len(self.entries), "lost directory entry")
        for sector, owner in enumerate(self.owner):
            expected = {"fat": FAT, "difat": DIFAT}.get(owner)
            check(owner and (expected is None or self.fat[sector] == expected), f"sector {sector} is of nobody")
        check(set(self.fat[len(self.owner) :]) <= {FREE}, "fat beyond the file")
        check(all(self.mini_owner) and set(self.mini_fat[len(self.mini_owner) :]) <= {FREE}, "lost mini sector")

    def sector(self, number):
        return self.data[512 * (number + 1) : 512 * (number + 2)]

    def own(self, sector, owner, owners=None):
        owners = self.owner if owners is None else owners
        check(sector < len(owners) and owners[sector] is None, f"sector {sector} of {owner}")
        owners[sector] = owner

    def chain(self, sector, owner, size=None, mini=False):
        found, unit = [], 64 if mini else 512
        while sector != END:
            self.own(sector, owner, self.mini_owner if mini else self.owner)
            found.append(self.mini[64 * sector : 64 * (sector + 1)] if mini else self.sector(sector))
            sector = (self.mini_fat if mini else self.fat)[sector]
        content = b"".join(found)
        check(size is None or (-(-size // unit) == len(found) and not any(content[size:])), f"length of {owner}")
        return content[:size]

    def name(self, number):
        (length,) = numbers(self.entries[number], 64, 1, "H")
        check(not any(self.entries[number][length - 2 : 64]), "end of a name")
        return self.entries[number][: length - 2].decode("utf-16-le")

    def walk(self, number, black_parent):
        """How many black entries are below, the same on all ways."""
        if number == FREE:
            return 0
        entry, name = self.entries[number], self.name(number)
        left, right, child, first, size, high = numbers(entry, 68, 3) + numbers(entry, 116, 3)
        check(entry[66] == 2 and child == FREE and high == 0 and not any(entry[80:116]), f"entry of {name!r}")
        check(entry[67] == 1 or (entry[67] == 0 and black_parent), "red entry")
        black = self.walk(left, entry[67] == 1)
        self.visited.append(name)
        self.streams[name] = self.chain(first, name, size, mini=size < 4096)
        check(self.walk(right, entry[67] == 1) == black, "balance of the directory")
        return black + entry[67]


def properties(data):
    found, at = {}, 0
    while at < len(data):
        (number,) = numbers(data, at, 1, "H")
        size = OPERAND_SIZE[number >> 13]
        check(number in NAMES and at + 2 + size <= len(data), f"property {number:#x}")
        check(NAMES[number] not in found, f"property {NAMES[number]} twice")
        found[NAMES[number]] = int.from_bytes(data[at + 2 : at + 2 + size], "little")
        at += 2 + size
    return found


def styles(table):
    """Name and properties of each style; those of its base are in it."""
    size, count, base_size, written, last, fixed, version, *fonts = numbers(table, 0, 10, "H")
    check((size, count, base_size, written, fixed, version, fonts) == (18, 15, 10, 1, 15, 0, [0] * 3), "style sheet")
    at, found = 20, []
    for place in range(count):
        (length,) = numbers(table, at, 1, "H")
        style, at = table[at + 2 : at + 2 + length], at + 2 + length
        if not length:
            check(place > 10, f"style {place} is missing")
            continue
        identifier, base, following, end, flags, letters = numbers(style, 0, 6, "H")
        check(identifier == (place if place < 10 else 65) < last and (end, flags) == (length, 0), f"style {place}")
        kind, parent, lists_and_next = (1, 0 if place else 0xFFF, 2) if place < 10 else (2, 0xFFF, 10 << 4 | 1)
        check((base, following) == (kind | parent << 4, lists_and_next), f"kind and neighbours of {place}")
        name, inner = style[12 : 14 + 2 * letters].decode("utf-16-le"), 14 + 2 * letters
        expected = "Default Paragraph Font" if place == 10 else f"heading {place}" if place else "Normal"
        check(name == expected + "\0", f"name of style {place}")
        own = dict(found[0][1]) if parent == 0 else {}
        for number in range(following & 15):
            (length,) = numbers(style, inner, 1, "H")
            content = style[inner + 2 : inner + 2 + length]
            if kind == 1 and number == 0:
                check(numbers(content, 0, 1, "H") == (place,), f"own number of style {place}")
                content = content[2:]
            own |= properties(content)
            inner += 2 + length + length % 2
        check(inner == len(style) and own.get("level") == (place - 1 if parent == 0 else None), f"end of style {place}")
        found.append((expected, own))
    check(at == len(table), "end of the style sheet")
    return found


def fonts_of(table):
    count, extra = numbers(table, 0, 2, "H")
    at, found = 4, []
    while at < len(table):
        entry, at = table[at + 1 : at + 1 + table[at]], at + 1 + table[at]
        name = entry[39:].decode("utf-16-le")
        check(entry[4] == 0 and name.endswith("\0") and 1 < len(name) <= 32 and "\0" not in name[:-1], "font")
        found.append(name[:-1])
    check(extra == 0 and len(found) == count and at == len(table), "fonts")
    return found


def formatted_pages(main, table, begin, end, entry_size, parse):
    """(first, end, formatting) of all runs; they cover the text without gaps."""
    count = (len(table) - 4) // 8
    bounds, pages = numbers(table, 0, count + 1), numbers(table, 4 * count + 4, count)
    check(len(table) == 8 * count + 4 and bounds[0] == begin and bounds[-1] == end, "bounds of the formatting")
    found = []
    for number, page in enumerate(pages):
        data = main[512 * page : 512 * (page + 1)]
        runs = data[511]
        edges, front = numbers(data, 0, runs + 1), 4 * (runs + 1) + entry_size * runs
        check(runs > 0 and edges[0] == bounds[number] and edges[-1] == bounds[number + 1], "bounds of a page")
        for i in range(runs):
            place = 2 * data[4 * (runs + 1) + entry_size * i]
            check(edges[i] < edges[i + 1] and front <= place < 511, "run in a page")
            found.append((edges[i], edges[i + 1], parse(data[place:511])))
    return found


def paragraph_run(data):
    size, at = (2 * data[0] - 1, 1) if data[0] else (2 * data[1], 2)
    check(at + size <= len(data), "length of paragraph formatting")
    return numbers(data, at, 1, "H")[0], properties(data[at + 2 : at + size])


def records(data):
    at = 0
    while at < len(data):
        head, kind, size = struct.unpack_from("<HHI", data, at)
        check(at + 8 + size <= len(data), f"length of record {kind:#x}")
        yield kind, head & 15, head >> 4, data[at + 8 : at + 8 + size]
        at += 8 + size


def picture(data):
    size, header, form = struct.unpack_from("<IHH", data)
    width, height, *scale = numbers(data, 28, 4, "H")
    check((size, header, form, scale) == (len(data), 68, 100, [1000, 1000]), "header of a picture")
    check(not any(data[8:28] + data[36:68]) and min(width, height) >= 15, "values in a picture's header")
    shape, entry = records(data[68:])
    check((shape[:3], entry[0], entry[1]) == ((0xF004, 15, 0), 0xF007, 2), "records of a picture")
    identity, options, anchor = records(shape[3])
    check(identity[:3] == (0xF00A, 2, 75) and numbers(identity[3], 4, 1) == (0xA00,), "shape")
    check(options[:2] == (0xF00B, 3) and anchor[::3] == (0xF010, bytes.fromhex("00000080")), "shape's place")
    found = dict(struct.unpack_from("<HI", options[3], 6 * i) for i in range(options[2]))
    check([n & 0x3FFF for n in found] == sorted(n & 0x3FFF for n in found), "order of a shape's values")
    text = options[3][6 * options[2] :]
    check(len(text) == found.pop(0x8381, 0), "alternative text")
    check(found == {0x7F: 0x800080, 0x4104: 1, 0x1BF: 0x100000, 0x1FF: 0x80000}, "shape's values")
    body = entry[3]
    length, references = numbers(body, 20, 2)
    ((kind, version, instance, blip),) = records(body[36:])
    check(body[0] == body[1] == entry[2] and length == len(body) - 36 and references == 1, "picture entry")
    check((kind, version, instance) in {(0xF01E, 0, 0x6E0), (0xF01D, 0, 0x46A)}, "kind of picture")
    check(entry[2] == (6 if kind == 0xF01E else 5) and body[2:18] == blip[:16] and blip[16] == 255, "digest")
    words = "png" if kind == 0xF01E else "jpeg", f"{width}x{height}", hashlib.sha1(blip[17:]).hexdigest()
    return numbers(identity[3], 0, 1)[0], f"{{{' '.join(words)} {text.decode('utf-16-le')[:-1]}}}"


def look(run, style, fonts):
    """The formatting as words; that of complex scripts is the same."""
    effective = style | run
    for name in ("bold", "italic", "size", "font"):
        check(effective.get(name) == effective.get(f"{name} complex"), f"{name} of complex scripts")
    check(effective["font"] == effective["font 1"] == effective["font 2"], "fonts")
    words = [fonts[effective["font"]], f"{effective['size'] / 2:g}"]
    words += [name for name in ("bold", "italic", "underline") if effective.get(name)]
    words += [f"color{effective['color']}"] if "color" in effective else []
    return " ".join(words)


def main(path):
    with open(path, "rb") as file:
        compound = Compound(file.read())
    other = olefile.OleFileIO(path)
    check(not other.parsing_issues and len(other.listdir()) == len(compound.streams), "what olefile says")
    check(all(other.openstream(n).read() == data for n, data in compound.streams.items()), "streams in olefile")
    document, table, data = (compound.streams.get(n, b"") for n in ("WordDocument", "1Table", "Data"))

    flags = numbers(document, 10, 1, "H")[0]
    check(numbers(document, 0, 2, "H") == (0xA5EC, 0xC1) and numbers(document, 12, 1, "H") == (0xBF,), "version")
    check(flags & ~8 == 0x1200 and bool(flags & 8) == bool(data) and not any(document[14:24]), "flags")
    check(numbers(document, 32, 1, "H") + numbers(document, 62, 1, "H") == (14, 22), "sizes in the block")
    size, *counts = numbers(document, 64, 22)
    characters = counts[2]
    check(sum(counts) == characters and len(document) >= max(size, 4096) and not any(document[size:]), "counts")
    check(numbers(document, 152, 1, "H") == (93,) and not any(document[898:0x800]), "tables in the block")
    ranges = {i: numbers(document, 154 + 8 * i, 2) for i in range(93)}
    used = sorted((first, first + length, i) for i, (first, length) in ranges.items() if length)
    check({i for _, _, i in used} == set(TABLES), "which tables there are")
    check([0] + [end for _, end, _ in used] == [first for first, _, _ in used] + [len(table)], "tables overlap")
    tables = {name: table[ranges[i][0] : sum(ranges[i])] for i, name in TABLES.items()}
    check(len(tables["settings"]) == 500 and numbers(tables["settings"], 10, 1, "H") == (720,), "settings")
    check(tables["strings"] == struct.pack("<3H36x", 0xFFFF, 18, 0), "associated strings")

    kind, length, first, end, _, begin, modifier = struct.unpack("<BIIIHIH", tables["pieces"])
    check((kind, length, first, end, begin, modifier) == (2, 16, 0, characters, 0x800, 0), "pieces")
    stop = begin + 2 * characters
    text = document[begin:stop]
    first, end, _, section, _, _ = struct.unpack("<IIHIHI", tables["sections"])
    check((first, end) == (0, characters) and stop <= section < size, "section")
    page = properties(document[section + 2 : section + 2 + numbers(document, section, 1, "H")[0]])
    print("page", *(page[n] for n in ("width", "height", "left", "right", "top", "bottom")))
    print("title", other.get_metadata().title.decode(), "by", other.get_metadata().creating_application.decode())

    sheet, fonts = styles(tables["styles"]), fonts_of(tables["fonts"])
    runs = formatted_pages(document, tables["characters"], begin, stop, 1, lambda run: properties(run[1 : 1 + run[0]]))
    paragraphs = formatted_pages(document, tables["paragraphs"], begin, stop, 13, paragraph_run)
    next_run, data_end, shapes = 0, 0, set()
    for first, end, (place, own) in paragraphs:
        content = text[first - begin : end - begin].decode("utf-16-le")
        check(content.find("\r") == len(content) - 1, "end of a paragraph")
        (line, style), at, shown = sheet[place], first, None
        check(own.get("alignment") == own.get("physical alignment"), "alignment")
        line += ", " + ("left", "center", "right")[own.get("alignment", 0)] + ", break" * own.get("break", 0)
        while at < end:
            run_first, run_end, run = runs[next_run]
            check(run_first <= at < run_end, "run")
            piece = text[at - begin : min(run_end, end) - begin].decode("utf-16-le")
            now = look(run, style, fonts)
            line += f" | {now} | " if now != shown else ""
            check(("special" in run) == ("picture" in run) == (piece == "\1"), "mark of a picture")
            if piece == "\1":
                check(run["picture"] == data_end, "place of a picture")
                length = numbers(data, data_end, 1)[0]
                shape, piece = picture(data[data_end : data_end + length])
                check(shape not in shapes, "shape's number twice")
                shapes.add(shape)
                data_end += length
            line, shown, at = line + piece.rstrip("\r"), now, min(run_end, end)
            next_run += run_end <= end
        print(line)
    check(data_end == len(data), "end of the pictures")


main(sys.argv[1])
