// From the text of the files of exhibits to titles, sentences and code.
#include "gallery.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>

#include "exhibitlist.h"

namespace gallery {

// A piece of a file at its outermost level: a comment, and the lines below it up to a closing brace, if any.
struct Block {
    std::vector<std::string> comment, lines;
};

static bool startsWith(const std::string& text, const char* start)
{
    return text.rfind(start, 0) == 0;
}

static std::vector<Block> blocksOf(const char* text)
{
    std::vector<Block> blocks(1);
    std::istringstream in(text);
    bool isOpen = false; // inside braces
    for (std::string line; std::getline(in, line);) {
        if (startsWith(line, "// SPDX-")) continue;
        Block& block = blocks.back();
        if (!isOpen && block.lines.empty() && startsWith(line, "//"))
            block.comment.push_back(line.substr(std::min<size_t>(3, line.size())));
        else if (isOpen || !line.empty())
            block.lines.push_back(line);
        if (startsWith(line, "{") || startsWith(line, "typedef struct")) isOpen = true;
        if (isOpen ? startsWith(line, "}") : line.empty() && !block.lines.empty()) {
            isOpen = false;
            blocks.emplace_back();
        }
    }
    return blocks;
}

static std::string joined(std::vector<std::string>::const_iterator from, std::vector<std::string>::const_iterator to)
{
    std::string text;
    for (; from != to; ++from) text += (text.empty() ? "" : " ") + *from;
    return text;
}

static bool isWordLetter(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

static bool mentions(const std::vector<std::string>& lines, const std::string& word)
{
    for (const std::string& line : lines)
        for (size_t at = line.find(word); at != std::string::npos; at = line.find(word, at + 1)) {
            const size_t end = at + word.size();
            if ((at == 0 || !isWordLetter(line[at - 1])) && (end == line.size() || !isWordLetter(line[end])))
                return true;
        }
    return false;
}

// The word that ends before the bracket of a function's head, or is named by #define or typedef struct.
static std::string nameOfHelper(const std::string& head)
{
    for (const char* start : { "#define ", "typedef struct " })
        if (startsWith(head, start)) {
            const size_t from = std::string(start).size();
            return head.substr(from, head.find(' ', from) - from);
        }
    const size_t end = head.find('(');
    size_t from = end;
    while (from != std::string::npos && from > 0 && isWordLetter(head[from - 1])) --from;
    return head.substr(from, end - from);
}

// Adds lines without the marks round the timed ones.
static void addCode(std::vector<Line>& code, const std::vector<std::string>& lines, size_t indent)
{
    bool isTimed = false;
    for (const std::string& line : lines) {
        const size_t first = line.find_first_not_of(' ');
        const std::string word = first == std::string::npos ? "" : line.substr(first);
        if (word == "START;" || word == "STOP;")
            isTimed = word == "START;";
        else
            code.push_back({ line.substr(std::min(indent, line.size())), isTimed });
    }
}

// The helpers above that a block mentions, and those that they mention, in the order of the file.
static std::vector<const Block*> helpersOf(const Block& exhibit, const std::vector<Block>& helpers)
{
    std::vector<const Block*> used;
    for (size_t i = helpers.size(); i-- > 0;) {
        const std::string name = nameOfHelper(helpers[i].lines.front());
        const bool isUsed = mentions(exhibit.lines, name)
            || std::any_of(used.begin(), used.end(), [&](const Block* other) { return mentions(other->lines, name); });
        if (isUsed) used.insert(used.begin(), &helpers[i]);
    }
    return used;
}

static void readCode(Exhibit& exhibit, const Block& block, const std::vector<const Block*>& helpers)
{
    exhibit.program = "#include \"try.h\"\n\n";
    for (const Block* helper : helpers) {
        if (!exhibit.helpers.empty()) exhibit.helpers.push_back({ "", false });
        exhibit.helperNames.push_back(nameOfHelper(helper->lines.front()));
        for (const std::string& line : helper->comment) exhibit.helpers.push_back({ "// " + line, false });
        addCode(exhibit.helpers, helper->lines, 0);
    }
    for (const Line& line : exhibit.helpers) exhibit.program += line.text + '\n';
    if (!helpers.empty()) exhibit.program += '\n';
    exhibit.program += "void show(void)\n{\n";
    addCode(exhibit.code, { block.lines.begin() + 2, block.lines.end() - 1 }, 4);
    for (const Line& line : exhibit.code) exhibit.program += (line.text.empty() ? "" : "    ") + line.text + '\n';
    exhibit.program += "}\n";
}

// EXHIBIT(name, VIEW) or EXHIBIT(name, PAIR(before))
static void readHead(Exhibit& exhibit, const std::string& head)
{
    const size_t name = head.find('(') + 1, comma = head.find(','), view = comma + 2, end = head.rfind(')');
    exhibit.name = head.substr(name, comma - name);
    std::string word = head.substr(view, end - view);
    const size_t bracket = word.find('(');
    if (bracket != std::string::npos) {
        exhibit.before = word.substr(bracket + 1, word.size() - bracket - 2);
        word.resize(bracket);
    }
    const std::map<std::string, View> views = { { "PICTURE", View::picture },
                                                { "DETAIL", View::detail },
                                                { "PAIR", View::pair },
                                                { "TEXT", View::text },
                                                { "REPORTS", View::reports } };
    exhibit.view = views.at(word);
}

static void (*functionOf(const std::string& name))()
{
    for (const auto& entry : exhibitFunctions)
        if (name == entry.name) return entry.run;
    std::fprintf(stderr, "gallery: no function %s\n", name.c_str());
    std::exit(1);
}

static Family readFamily(const char* name, const char* text)
{
    const std::vector<Block> blocks = blocksOf(text);
    Family family = {
        name, blocks[0].comment.at(0), joined(blocks[0].comment.begin() + 1, blocks[0].comment.end()), {}
    };
    std::vector<Block> helpers;
    for (size_t i = 1; i < blocks.size(); ++i) {
        const Block& block = blocks[i];
        if (block.lines.empty()) continue;
        if (!startsWith(block.lines.front(), "EXHIBIT(")) {
            helpers.push_back(block);
            continue;
        }
        Exhibit exhibit = {};
        readHead(exhibit, block.lines.front());
        exhibit.title = block.comment.at(0);
        exhibit.sentence = joined(block.comment.begin() + 1, block.comment.end());
        exhibit.run = functionOf(exhibit.name);
        readCode(exhibit, block, helpersOf(block, helpers));
        family.exhibits.push_back(std::move(exhibit));
    }
    return family;
}

const char* tryHeader()
{
    return exhibitHeader;
}

std::vector<Family> readFamilies()
{
    std::vector<Family> families;
    for (const auto& entry : exhibitTexts) families.push_back(readFamily(entry.name, entry.text));
    return families;
}

} // namespace gallery
