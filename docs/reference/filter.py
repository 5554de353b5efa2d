"""Prepares the header for Doxygen: filter.py FILE >FILTERED

Texts of reports stand in double quotes in the comments, letter by letter. Here they become code, so that Doxygen neither
reads commands in them nor links words of them.
"""
import re
import sys

COMMENT = re.compile(r"/\*\*.*?\*/", re.S)
QUOTED = re.compile(r'"([^"\n]*(?:\n \* +[^"\n]+)*)"')


def code_of(match):
    text = re.sub(r"\n \* +", " ", match.group(1))
    text = text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")
    text = re.sub(r"([\\@%])", r"\\\1", text)
    text = text.replace(". ", "&#46; ")  # a full stop would end the brief description
    return "\n * " * match.group(1).count("\n") + "<code>" + text + "</code>"


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        text = file.read()
    sys.stdout.write(COMMENT.sub(lambda comment: QUOTED.sub(code_of, comment.group(0)), text))


main()
