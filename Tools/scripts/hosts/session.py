"""Edits a session folder of make.lua, which must not be open.

session.py sound DIR LEFT RIGHT SECONDS   puts two mono sound files on the track
session.py chunk DIR FILE                 writes the plug-in's state, a .vstpreset file, to FILE
session.py chunk-only DIR                 removes the values that the host keeps beside the state
session.py damage DIR                     changes bytes in the middle of the state
"""

import base64
import re
import shutil
import sys

# The host counts positions in this part of a second, a multiple of all usual rates.
TICKS = 282240000

CHUNK = re.compile(r"(<chunk>)\s*([^<]*?)\s*(</chunk>)")


def add_sound(text, folder, left, right, seconds):
    name = folder.rstrip("/").split("/")[-1]
    sources = ""
    for i, path in enumerate((left, right)):
        file = "in%%%s.wav" % "LR"[i]
        shutil.copy(path, "%s/interchange/%s/audiofiles/%s" % (folder, name, file))
        sources += (
            '<Source name="%s" take-id="" type="audio" flags="" id="%d" natural-position="a0"'
            ' have-natural-position="0" channel="0" origin="" gain="1"/>' % (file, 90001 + i)
        )
    length = round(float(seconds) * TICKS)
    zeros = "".join(
        ' %s="0"' % attribute
        for attribute in (
            "muted locked video-locked automatic whole-file import external hidden"
            " position-locked valid-transients layering-index envelope-active default-fade-in"
            " default-fade-out fade-in-active fade-out-active"
        ).split()
    )
    region = (
        '<Region name="in" opaque="1" start="a0" length="a%d@a0" sync-position="a0"'
        ' ancestral-start="a0" ancestral-length="a%d@a0" stretch="1" shift="1"'
        ' positional-lock-style="AudioTime" scale-amplitude="1" id="90003" type="audio"'
        ' first-edit="nothing" source-0="90001" source-1="90002" master-source-0="90001"'
        ' master-source-1="90002" channels="2"%s/>' % (length, length, zeros)
    )
    location = (
        '<Location id="90004" name="session" start="a0" end="a%d" flags="IsSessionRange"'
        ' locked="0" timestamp="0"/>' % length
    )
    text = text.replace("<Sources/>", "<Sources>" + sources + "</Sources>")
    text = text.replace("<Locations/>", "<Locations>" + location + "</Locations>")
    text, count = re.subn(
        r'(<Playlist id="\d+" name="T"[^>]*)/>',
        lambda match: match.group(1) + ">" + region + "</Playlist>",
        text,
    )
    assert count == 1, "no empty play list"
    return text


def write_chunk(text, file):
    with open(file, "wb") as out:
        out.write(base64.b64decode(CHUNK.search(text).group(2)))


def drop_values(text):
    def within(match):
        part, count = re.subn(
            r"<(Port|Controllable)\b[^>]*?(/>|>.*?</\1>)", "", match.group(0), flags=re.S
        )
        assert count > 0, "no values beside the state"
        return part

    text, count = re.subn(
        r'<Processor [^>]*type="vst3".*?</Processor>', within, text, flags=re.S
    )
    assert count == 1, "not one plug-in"
    return text


def damage(text):
    def change(match):
        state = bytearray(base64.b64decode(match.group(2)))
        # Behind the header of the preset file, so that the plug-in itself gets to see it.
        for at in range(48, len(state) - 40, 3):
            state[at] ^= 0x5A
        return match.group(1) + base64.b64encode(bytes(state)).decode() + match.group(3)

    text, count = CHUNK.subn(change, text)
    assert count == 1, "not one state"
    return text


def main():
    command, folder, *rest = sys.argv[1:]
    path = folder + "/t.ardour"
    with open(path, encoding="utf-8") as session:
        text = session.read()
    if command == "chunk":
        write_chunk(text, *rest)
        return
    edits = {"chunk-only": drop_values, "damage": damage}
    text = add_sound(text, folder, *rest) if command == "sound" else edits[command](text)
    with open(path, "w", encoding="utf-8") as session:
        session.write(text)


main()
