#include "page.h"

#include <cstdio>
#include <fstream>
#include <sstream>

namespace gallery {

static const char* const style = R"css(
:root { color-scheme: light dark; --back: #f4f4f2; --card: #fff; --ink: #1d1f21; --soft: #5d6166; --line: #dcdcd8;
    --mark: #0b63a5; --code: #f0f2f4; }
@media (prefers-color-scheme: dark) {
:root { --back: #191a1c; --card: #232527; --ink: #e6e6e3; --soft: #a0a4a8; --line: #36393c; --mark: #74b8ee;
        --code: #1b1d1f; }
}
* { box-sizing: border-box; }
body { margin: 0; background: var(--back); color: var(--ink); font: 15px/1.5 system-ui, sans-serif; }
header, main, footer { max-width: 1320px; margin: 0 auto; padding: 0 24px; }
header { display: flex; gap: 32px; align-items: flex-end; padding-top: 40px; padding-bottom: 24px; flex-wrap: wrap; }
header > div { flex: 1 1 420px; }
header img { width: auto; height: auto; max-width: 240px; max-height: 240px; border-radius: 8px; }
h1 { margin: 0 0 6px; font-size: 34px; line-height: 1.15; letter-spacing: -0.01em; }
header p { margin: 0 0 8px; max-width: 68ch; color: var(--soft); }
dl { display: grid; grid-template-columns: max-content 1fr; gap: 2px 16px; margin: 14px 0 0; }
dt { color: var(--soft); } dd { margin: 0; }
nav { position: sticky; top: 0; z-index: 1; background: var(--back); border-bottom: 1px solid var(--line); }
nav div { max-width: 1320px; margin: 0 auto; padding: 8px 24px; display: flex; gap: 6px 18px; flex-wrap: wrap; }
a { color: var(--mark); text-decoration: none; } a:hover { text-decoration: underline; }
nav span { color: var(--soft); font-size: 13px; }
section { padding-top: 28px; scroll-margin-top: 44px; }
h2 { margin: 0 0 2px; font-size: 22px; } h3 { margin: 0; font-size: 15px; }
section > p { margin: 0 0 14px; max-width: 80ch; color: var(--soft); }
.grid { display: grid; grid-template-columns: repeat(auto-fill, minmax(280px, 1fr)); gap: 18px; align-items: start; }
.small { grid-template-columns: repeat(auto-fill, minmax(150px, 1fr)); gap: 14px; }
figure { margin: 0; background: var(--card); border: 1px solid var(--line); border-radius: 8px; overflow: hidden;
     scroll-margin-top: 60px; }
figure > a { display: block; background: var(--code); cursor: zoom-in; }
figure img { display: block; width: 100%; height: auto; max-height: 560px; object-fit: contain; }
figcaption { padding: 10px 12px 12px; }
figcaption p { margin: 2px 0 8px; color: var(--soft); font-size: 14px; }
.small figcaption { padding: 7px 10px 9px; } .small p { margin: 0; font-size: 13px; line-height: 1.35; }
pre { margin: 0; padding: 8px 10px; background: var(--code); border-radius: 5px; white-space: pre-wrap;
  overflow-wrap: anywhere;
  font: 11.5px/1.5 ui-monospace, "DejaVu Sans Mono", Consolas, monospace; }
.time { display: flex; justify-content: space-between; margin-top: 7px; color: var(--soft); font-size: 13px;
    font-variant-numeric: tabular-nums; }
.wide { grid-column: span 2; }
.words { margin-top: 8px; background: none; border: 1px solid var(--line); color: var(--soft); }
.failed { border-color: #c33; }
.box { display: none; position: fixed; inset: 0; z-index: 2; background: rgba(12, 13, 14, .93); color: #eee; }
.box:target { display: grid; grid-template-rows: 1fr auto; }
.box > a { display: flex; align-items: center; justify-content: center; min-height: 0; padding: 20px; cursor: zoom-out; }
.box img { max-width: 100%; max-height: 100%; object-fit: contain; }
.box div { padding: 0 20px 18px; text-align: center; }
.box div a { color: #8cc8f5; margin: 0 10px; }
.box code { font: 13px ui-monospace, "DejaVu Sans Mono", monospace; color: #bbb; }
footer { padding-top: 34px; padding-bottom: 48px; color: var(--soft); font-size: 13.5px; }
@media (max-width: 640px) { .wide { grid-column: auto; } }
)css";

static std::string escape(const std::string& text)
{
    std::string out;
    for (const char c : text) {
        if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else if (c == '>')
            out += "&gt;";
        else if (c == '"')
            out += "&quot;";
        else
            out += c;
    }
    return out;
}

// Code as it came from the preprocessor is one line. Statements get lines of their own and blocks are indented; a
// loop's head and an initialiser stay together.
static std::string breakLines(const std::string& code)
{
    std::string out;
    int round = 0, blocks = 0, lists = 0;
    const auto newLine = [&] {
        while (!out.empty() && out.back() == ' ') out.pop_back();
        out += '\n' + std::string(static_cast<size_t>(4 * blocks), ' ');
    };
    for (size_t i = 0; i < code.size(); ++i) {
        const char c = code[i];
        if (c == ' ' && !out.empty() && (out.back() == ' ' || out.back() == '\n')) continue;
        const bool opensBlock = c == '{' && round == 0 && out.size() > 1 && out[out.size() - 2] == ')';
        if (c == '}' && lists == 0) {
            --blocks;
            newLine();
        }
        out += c;
        round += c == '(' ? 1 : c == ')' ? -1 : 0;
        blocks += opensBlock;
        lists += c == '{' && !opensBlock ? 1 : c == '}' && lists > 0 ? -1 : 0;
        const size_t next = code.find_first_not_of(' ', i + 1);
        const bool ends = c == ';' && round == 0 && next != std::string::npos && code[next] != '}';
        if (opensBlock || ends) newLine();
    }
    return out.empty() || out.back() == ';' || out.back() == '}' ? out : out + ';';
}

static std::string number(const char* format, double value)
{
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

static std::string timeOf(const Result& result)
{
    const double ms = result.milliseconds;
    return number(ms < 0.1 ? "%.4f" : ms < 10 ? "%.3f" : "%.1f", ms) + " ms";
}

static std::string rateOf(const Result& result)
{
    const double rate = result.milliseconds > 0 ? result.pixels / result.milliseconds / 1000 : 0;
    return number(rate < 10 ? "%.1f" : "%.0f", rate) + " Mpixel/s";
}

static void writeImage(std::ostream& out, const Shot& shot, const std::string& title)
{
    out << "<img loading=\"lazy\" src=\"" << escape(shot.file) << "\" width=\"" << shot.width << "\" height=\""
        << shot.height << "\" alt=\"" << escape(title) << "\">";
}

static std::string idOf(const Section& section, size_t i)
{
    return section.family->name + ("-" + std::to_string(i + 1));
}

static void writeCard(std::ostream& out, const Section& section, size_t i)
{
    const Card& card = section.cards[i];
    const std::string id = idOf(section, i);
    const bool failed = !card.result.reports.empty();
    const bool isWide = card.shot.file.empty() || card.shot.width >= 3 * card.shot.height;
    out << "<figure id=\"" << id << "\" class=\"" << (isWide ? "wide" : "") << (failed ? " failed" : "") << "\">";
    if (!card.shot.file.empty()) {
        out << "<a href=\"#" << id << "-large\">";
        writeImage(out, card.shot, card.title);
        out << "</a>";
    }
    if (failed) out << "<pre class=\"words\">Failed: " << escape(card.result.reports) << "</pre>";
    out << "<figcaption><h3>" << escape(card.title) << "</h3><p>" << escape(card.sentence) << "</p><pre><code>"
        << escape(breakLines(card.result.code)) << "</code></pre>";
    if (!card.result.text.empty()) out << "<pre class=\"words\">" << escape(card.result.text) << "</pre>";
    if (!card.shot.file.empty())
        out << "<div class=\"time\"><span>" << timeOf(card.result) << "</span><span>" << rateOf(card.result)
            << "</span></div>";
    out << "</figcaption></figure>\n";
}

// The enlarged picture, shown while the address names it: a click on the picture goes back to the card.
static void writeLarge(std::ostream& out, const Section& section, size_t i)
{
    const Card& card = section.cards[i];
    if (card.shot.file.empty()) return;
    const std::string id = idOf(section, i);
    out << "<div class=\"box\" id=\"" << id << "-large\"><a href=\"#" << id << "\">";
    writeImage(out, card.shot, card.title);
    out << "</a><div>";
    if (i > 0 && !section.cards[i - 1].shot.file.empty())
        out << "<a href=\"#" << idOf(section, i - 1) << "-large\">&larr; back</a>";
    out << "<b>" << escape(card.title) << "</b>";
    if (i + 1 < section.cards.size() && !section.cards[i + 1].shot.file.empty())
        out << "<a href=\"#" << idOf(section, i + 1) << "-large\">next &rarr;</a>";
    out << "<br><code>" << escape(card.result.code) << "</code></div></div>\n";
}

static void writeHeader(std::ostream& out, const Page& page, size_t nExhibits)
{
    const PxkLibVersion* const version = pxkGetLibVersion();
    out << "<header><div><h1>What pxk does to a picture</h1>"
           "<p>Each picture below was made by the code under it, run by the program that wrote this page. The "
           "names in "
           "the code are those of the pictures to start from; <code>out</code> is a new image, black before the "
           "call, "
           "or a copy of the picture to be changed; <code>w</code> and <code>h</code> are a width and a height. "
           "Border modes are "
           "<code>PXK_EDGE_CLAMP</code> where nothing else is said. Click a picture to enlarge it.</p><dl>"
        << "<dt>Library</dt><dd>pxk " << version->major << '.' << version->minor << '.' << version->build
        << "</dd><dt>Picture</dt><dd>" << escape(page.input) << ", " << page.size << "</dd><dt>Exhibits</dt><dd>"
        << nExhibits << " in " << page.sections.size() << " families</dd>"
        << "<dt>Times</dt><dd>of the code shown, the shortest of several runs, one thread, on this machine</dd>"
        << "</dl></div>";
    writeImage(out, page.starts.front().shot, page.input);
    out << "</header>\n";
}

static void writeStarts(std::ostream& out, const Page& page)
{
    out << "<section id=\"start\"><h2>The pictures to start from</h2><div class=\"grid small\">\n";
    for (const Start& start : page.starts) {
        out << "<figure id=\"start-" << start.name << "\"><a href=\"#start-" << start.name << "-large\">";
        writeImage(out, start.shot, start.name);
        out << "</a><figcaption><h3><code>" << start.name << "</code></h3><p>" << escape(start.sentence)
            << "</p></figcaption></figure>\n";
    }
    out << "</div></section>\n";
    for (const Start& start : page.starts) {
        out << "<div class=\"box\" id=\"start-" << start.name << "-large\"><a href=\"#start-" << start.name << "\">";
        writeImage(out, start.shot, start.name);
        out << "</a><div><b>" << start.name << "</b></div></div>\n";
    }
}

bool writePage(const Page& page, const std::string& path)
{
    size_t nExhibits = 0;
    for (const Section& section : page.sections) nExhibits += section.cards.size();

    std::ostringstream out;
    out << "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
        << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"><title>pxk: " << escape(page.input)
        << "</title><style>" << style << "</style></head><body>\n";
    writeHeader(out, page, nExhibits);
    out << "<nav><div><a href=\"#start\">Pictures</a>";
    for (const Section& section : page.sections)
        out << "<a href=\"#" << section.family->name << "\">" << escape(section.family->title) << " <span>"
            << section.cards.size() << "</span></a>";
    out << "</div></nav><main>\n";
    writeStarts(out, page);
    for (const Section& section : page.sections) {
        out << "<section id=\"" << section.family->name << "\"><h2>" << escape(section.family->title) << "</h2><p>"
            << escape(section.family->sentence) << "</p><div class=\"grid\">\n";
        for (size_t i = 0; i < section.cards.size(); ++i) writeCard(out, section, i);
        out << "</div></section>\n";
    }
    for (const Section& section : page.sections)
        for (size_t i = 0; i < section.cards.size(); ++i) writeLarge(out, section, i);
    out << "</main><footer>Written by <code>gallery</code>. The photographs that come with pxk are in the public "
           "domain "
           "or CC0; tests/photos/README.md names their sources.</footer></body></html>\n";

    std::ofstream file(path, std::ios::binary);
    file << out.str();
    file.close();
    return file.good();
}

} // namespace gallery
