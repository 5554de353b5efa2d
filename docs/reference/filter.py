"""Prepares the header for Doxygen: filter.py FILE >FILTERED

Texts of reports stand in double quotes in the comments, letter by letter. Here they become code, so that Doxygen neither
reads commands in them nor links words of them. Names of functions and constants become links.
"""
import re
import sys

COMMENT = re.compile(r"/\*\*.*?\*/", re.S)
QUOTED = re.compile(r'"([^"\n]*(?:\n \* +[^"\n]+)*)"')
UNLINKED = re.compile(r"<code>.*?</code>|`[^`]*`|\n \*     [^\n]*|@\w+ +\w+|(?P<name>\b(?:pxk[A-Za-z0-9]+|PXK_\w+)\b)")


def code_of(match):
    text = re.sub(r"\n \* +", " ", match.group(1))
    text = text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")
    text = re.sub(r"([\\@%])", r"\\\1", text)
    text = text.replace(". ", ".\\ ")  # a full stop and a blank would end the brief description
    return "\n * " * match.group(1).count("\n") + "<code>" + text + "</code>"


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        text = file.read()
    names = set(re.findall(r"\bpxk[A-Za-z0-9]+(?=\()", text)) | set(re.findall(r"#define (PXK_\w+)", text))

    def link_of(match):
        return "#" + match.group() if match.group("name") in names else match.group()

    def comment_of(match):
        return UNLINKED.sub(link_of, QUOTED.sub(code_of, match.group()))

    sys.stdout.write(COMMENT.sub(comment_of, text))


main()
