"""Reads an XML profile with expat and writes its tree as xml_forms_test describes one, in UTF-16.

read_with_expat.py PROFILE DESCRIPTION
"""
import sys
import xml.parsers.expat

pieces = []


def begin(tag, attributes):
    if tag == "item" and attributes["xml:space"] != "preserve":
        sys.exit("the DTD's default is missing")
    if tag != "profile":
        pieces.append(attributes["name"] + {"item": "=", "list": "{"}[tag])


def end(tag):
    pieces.append({"item": ";", "list": "}", "profile": ""}[tag])


def text(characters):
    if inside_item():
        pieces.append(characters)


def inside_item():
    return open_tags and open_tags[-1] == "item"


open_tags = []
parser = xml.parsers.expat.ParserCreate()
parser.StartElementHandler = lambda tag, attributes: (open_tags.append(tag), begin(tag, attributes))
parser.EndElementHandler = lambda tag: (open_tags.pop(), end(tag))
parser.CharacterDataHandler = text
with open(sys.argv[1], "rb") as profile:
    parser.ParseFile(profile)
with open(sys.argv[2], "wb") as description:
    description.write("".join(pieces).encode("utf-16-le"))
