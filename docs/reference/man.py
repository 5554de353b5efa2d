# SPDX-License-Identifier: BSD-2-Clause
"""Makes manual pages from Doxygen's XML: man.py XML FOLDER VERSION

One page a function in section 3, one a family in section 3, whose general rules the functions' pages refer to.
"""
import os
import re
import sys
import textwrap
import xml.etree.ElementTree as ElementTree


def escaped(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return re.sub(r"(?m)^([.'])", r"\\&\1", text)


class Page:
    """Text of a page, in the order it is read."""

    def __init__(self, name, title, version):
        self.lines = [f'.TH {name} 3 "" "pxk {version}" "pxk"', ".nh", ".ad l"]
        self.section("NAME")
        self.lines.append(f"{escaped(name)} \\- {escaped(title)}")

    def section(self, name):
        self.lines.append(f".SH {name}")

    def plain(self, text):
        """Lines as they stand."""
        self.lines += [".PP", ".nf", ".RS 2", *(escaped(line) or "\\&" for line in text.split("\n")), ".RE", ".fi"]

    def block(self, element):
        """The paragraphs, lists, tables and codes of a description."""
        for child in element:
            if child.tag == "para":
                self.paragraph(child)
            elif child.tag in ("sect1", "sect2"):
                self.block(child)

    def paragraph(self, para):
        words = para.text or ""
        for child in para:
            if child.tag in ("itemizedlist", "orderedlist", "table", "simplesect", "verbatim", "programlisting", "preformatted"):
                self.flow(words)
                words = ""
                self.special(child)
            elif child.tag == "computeroutput":
                words += '"' + "".join(child.itertext()) + '"'
            elif child.tag != "image":
                words += "".join(child.itertext())
            words += child.tail or ""
        self.flow(words)

    def flow(self, words):
        words = " ".join(words.split())
        if words:
            self.lines += [".PP", escaped(words)]

    def special(self, element):
        if element.tag in ("itemizedlist", "orderedlist"):
            for item in element:
                self.lines.append(".IP \\(bu 2")
                self.lines.append(escaped(" ".join("".join(item.itertext()).split())))
        elif element.tag == "table":
            self.plain(table_text(element))
        elif element.tag == "simplesect":
            title = element.find("title")
            if title is not None:
                self.lines += [".SS " + escaped("".join(title.itertext()))]
            self.block([child for child in element if child.tag == "para"])
        elif element.tag == "programlisting":
            self.plain("\n".join(code_text(line) for line in element.iter("codeline")))
        else:
            self.plain("".join(element.itertext()).strip("\n"))

    def write(self, folder, name):
        with open(os.path.join(folder, name + ".3"), "w", encoding="utf-8") as file:
            file.write("\n".join(self.lines) + "\n")


def code_text(element):
    """The text of a line of code, in which blanks are elements."""
    text = element.text or ""
    for child in element:
        text += (" " if child.tag == "sp" else code_text(child)) + (child.tail or "")
    return text


def table_text(table):
    """A table as a list: one entry a row, since a line of a manual page holds no eleven columns."""
    rows = [[" ".join("".join(entry.itertext()).split()) for entry in row.findall("entry")] for row in table.findall("row")]
    head, lines = rows[0], []
    for row in rows[1:]:
        lines.append(f"{head[0]} {row[0]}:")
        told = {}
        for name, value in zip(head[1:], row[1:]):
            if value not in ("-", "–", "—"):
                told.setdefault(value, []).append(name)
        for value, names in told.items():
            lines += textwrap.wrap(f"{value}: {', '.join(names)}", 70, initial_indent="    ", subsequent_indent="        ")
    return "\n".join(lines)


def text_of(element, path):
    found = element.find(path)
    return " ".join("".join(found.itertext()).split()) if found is not None else ""


def title_of(member):
    brief = text_of(member, "briefdescription")
    if not brief:
        brief = text_of(member, "detaileddescription/para")
    return brief.split(". ")[0].rstrip(".")


def synopsis_of(member):
    parameters = ", ".join(
        re.sub(r"\* (?=\w)", "*", f"{text_of(p, 'type')} {text_of(p, 'declname')}{text_of(p, 'array')}".strip())
        for p in member.findall("param"))
    call = f"{text_of(member, 'type')} {text_of(member, 'name')}({parameters or 'void'});".replace("* pxk", "*pxk")
    return textwrap.fill(call, 76, subsequent_indent="    ")


def write_family(group, folder, version):
    name, title = text_of(group, "compoundname"), text_of(group, "title")
    page = Page(name, title, version)
    page.section("SYNOPSIS")
    page.plain("#include <pxk/pxk.h>")
    functions = [member for member in group.iter("memberdef") if member.get("kind") == "function"]
    for member in functions:
        page.plain(synopsis_of(member))
    page.section("DESCRIPTION")
    page.block(group.find("detaileddescription"))
    constants = [member for member in group.iter("memberdef") if member.get("kind") == "define"]
    if constants:
        page.section("CONSTANTS")
        for member in constants:
            page.lines += [".TP", escaped(text_of(member, "name")) + " " + escaped(text_of(member, "initializer")),
                           escaped(text_of(member, "briefdescription")) or "\\&"]
    page.section("SEE ALSO")
    page.flow(", ".join(f"{text_of(member, 'name')}(3)" for member in functions) or "pxk_image(3)")
    page.write(folder, name)
    for member in functions:
        write_function(member, functions, name, folder, version)
    return len(functions)


def write_function(member, family, family_name, folder, version):
    name = text_of(member, "name")
    page = Page(name, title_of(member), version)
    page.section("SYNOPSIS")
    page.plain("#include <pxk/pxk.h>\n\n" + synopsis_of(member))
    page.section("DESCRIPTION")
    page.block(member.find("briefdescription"))
    page.block(member.find("detaileddescription"))
    page.flow(f"What the functions of this family have in common stands in {family_name}(3).")
    page.section("SEE ALSO")
    others = [text_of(other, "name") for other in family if other is not member]
    page.flow(", ".join(f"{other}(3)" for other in [family_name, "pxk_rules", "pxk_image", "pxkGetErrStatus"] + others[:12]
                        if other != name))
    page.write(folder, name)


def write_record(path, folder, version):
    record = ElementTree.parse(path).getroot().find("compounddef")
    name = text_of(record, "compoundname")
    page = Page(name, title_of(record), version)
    page.section("SYNOPSIS")
    page.plain("#include <pxk/pxk.h>")
    page.section("DESCRIPTION")
    page.block(record.find("briefdescription"))
    page.block(record.find("detaileddescription"))
    for member in record.iter("memberdef"):
        page.lines += [".TP", escaped(f"{text_of(member, 'type')} {text_of(member, 'name')}{text_of(member, 'argsstring')}"),
                       escaped(text_of(member, "briefdescription")) or "\\&"]
    page.section("SEE ALSO")
    page.flow("pxk_image(3), pxk_rules(3)")
    page.write(folder, name)


def main():
    xml, folder, version = sys.argv[1:]
    os.makedirs(folder, exist_ok=True)
    functions = 0
    for file in sorted(os.listdir(xml)):
        if file.startswith("group__"):
            group = ElementTree.parse(os.path.join(xml, file)).getroot().find("compounddef")
            functions += write_family(group, folder, version)
        elif file.startswith("struct"):
            write_record(os.path.join(xml, file), folder, version)
    print(f"{functions} functions, {len(os.listdir(folder))} manual pages in {folder}")


main()
