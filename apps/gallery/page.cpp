// SPDX-License-Identifier: BSD-2-Clause
#include "page.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace gallery {

static const char* const style = R"css(
:root { color-scheme: light dark; --back: #fbfbfa; --ink: #17191c; --soft: #575c63; --line: #e2e2de; --mark: #0a5c9c;
    --code: #f1f2f1; --ground: #e9e9e6; --bad: #b3261e; --head: 0px;
    --mono: ui-monospace, "SF Mono", "DejaVu Sans Mono", Consolas, monospace; }
@media (prefers-color-scheme: dark) { :root { --back: #141517; --ink: #e9e9e6; --soft: #a3a8ae; --line: #2c2f33;
    --mark: #7dbdf0; --code: #1d1f22; --ground: #0c0d0e; --bad: #ff8a80; } }
* { box-sizing: border-box; }
html { scroll-padding-top: calc(var(--head) + 16px); -webkit-text-size-adjust: 100%; }
body { margin: 0; background: var(--back); color: var(--ink); font: 15px/1.55 system-ui, "Liberation Sans", sans-serif; }
a { color: var(--mark); text-decoration: none; } a:hover { text-decoration: underline; }
a:focus-visible { outline: 2px solid var(--mark); outline-offset: 2px; }
nav { position: sticky; top: 0; z-index: 1; background: var(--back); border-bottom: 1px solid var(--line); }
nav ul { margin: 0; padding: 0 16px; list-style: none; display: flex; gap: 20px; overflow-x: auto; white-space: nowrap;
    scrollbar-width: none; }
nav a { display: block; padding: 9px 0 10px; color: var(--soft); font-size: 14px; }
nav span { float: right; margin-left: 8px; font-size: 12.5px; font-variant-numeric: tabular-nums; }
main { padding: 0 16px; max-width: 1240px; }
header { padding: 36px 0 8px; display: grid; gap: 28px; }
header img { display: block; max-width: 100%; height: auto; border-radius: 3px; }
h1 { margin: 0 0 10px; font-size: 32px; line-height: 1.15; letter-spacing: -.02em; font-weight: 650; }
h2 { margin: 0 0 4px; font-size: 23px; letter-spacing: -.01em; font-weight: 650; }
h3 { margin: 0; font-size: 16px; font-weight: 650; } h3 a { color: inherit; }
p { margin: 0 0 10px; max-width: 68ch; } .soft, .card p, section > p { color: var(--soft); }
dl { display: grid; grid-template-columns: max-content 1fr; gap: 3px 18px; margin: 18px 0 0; font-size: 14px; }
dt { color: var(--soft); } dd { margin: 0; overflow-wrap: anywhere; }
section { padding: 44px 0 0; }
.starts { display: grid; grid-template-columns: repeat(auto-fill, minmax(132px, 1fr)); gap: 18px; margin-top: 16px; }
.starts img { width: 100%; aspect-ratio: 4 / 3; height: auto; object-fit: cover; display: block; border-radius: 3px;
    background: var(--ground); }
.starts p { margin: 2px 0 0; font-size: 13px; line-height: 1.4; color: var(--soft); }
.strip { display: flex; flex-wrap: wrap; gap: 5px; margin: 14px 0 22px; }
.strip a { display: block; border-radius: 3px; overflow: hidden; } .strip a:hover { outline: 2px solid var(--mark); }
.strip img { display: block; width: 62px; height: 62px; object-fit: cover; background: var(--ground); }
.card { display: grid; gap: 16px 32px; padding: 26px 0; border-top: 1px solid var(--line); align-items: start;
    grid-template-columns: minmax(0, 1fr); }
.shown { display: grid; gap: 8px; grid-template-columns: minmax(0, 1fr); }
.shown.two { grid-template-columns: minmax(0, 1fr) minmax(0, 1fr); }
.shown a { display: block; cursor: zoom-in; overflow: hidden; border-radius: 3px; }
.shown img { display: block; width: auto; height: auto; max-width: 100%; max-height: 460px; border-radius: 3px; }
.shown img.part { width: 100%; max-height: none; object-fit: none; image-rendering: pixelated;
    background: var(--ground); }
figure { margin: 0; } figcaption { margin-top: 4px; font-size: 12.5px; color: var(--soft); }
.text { min-width: 0; } .text p { margin: 2px 0 12px; }
code, pre { font: 12.5px/1.6 var(--mono); }
pre { margin: 0; padding: 12px 14px; overflow: auto; max-height: 420px; background: var(--code); color: var(--soft);
    border-radius: 4px; tab-size: 4; }
pre b { font-weight: 600; color: var(--ink); } pre.words { color: var(--ink); background: none; max-height: none;
    border: 1px solid var(--line); white-space: pre-wrap; overflow-wrap: anywhere; }
details { margin-top: 6px; font-size: 13.5px; color: var(--soft); } summary { cursor: pointer; padding: 3px 0; }
.shown figure ~ pre.words { padding: 0; border: 0; color: var(--soft); }
.foot { display: flex; justify-content: space-between; gap: 16px; margin: 8px 0 0 !important; max-width: none;
    font-size: 13.5px; font-variant-numeric: tabular-nums; }
.failed h3 { color: var(--bad); }
footer { padding: 30px 0 60px; margin-top: 20px; border-top: 1px solid var(--line); color: var(--soft); font-size: 13.5px; }
@media (max-width: 999px) { :root { --head: 43px; } nav span { display: none; } }
@media (min-width: 700px) { header { grid-template-columns: minmax(0, 1fr) auto; align-items: start; }
    header img { max-width: 250px; max-height: 250px; } main { padding: 0 28px; } nav ul { padding: 0 28px; } }
@media (min-width: 1000px) {
    body { display: grid; grid-template-columns: 236px minmax(0, 1fr); }
    nav { height: 100vh; overflow-y: auto; border-bottom: 0; border-right: 1px solid var(--line); }
    nav ul { display: block; padding: 32px 20px; white-space: normal; } nav a { padding: 3.5px 0; line-height: 1.35; }
    main { padding: 0 44px; } header { padding-top: 48px; }
    .card { grid-template-columns: 400px minmax(0, 1fr); } .wide { grid-template-columns: minmax(0, 1fr); } }
@media (min-width: 1240px) { .pair { grid-template-columns: 480px minmax(0, 1fr); } }
)css";

// What the style leaves for the picture of a card, and for two of them; and from where on it gets a row of its own.
constexpr int32_t usualWidth = 400, pairWidth = 480, wideWidth = 2 * pairWidth, partHeight = 300;

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

// Three digits, in the unit that suits them.
static std::string timeOf(double milliseconds)
{
    const bool isShort = milliseconds < 1;
    const double value = isShort ? 1000 * milliseconds : milliseconds;
    char text[64];
    std::snprintf(text, sizeof text, "%.*f %s", value < 10 ? 2 : value < 100 ? 1 : 0, value, isShort ? "µs" : "ms");
    return text;
}

static std::string idOf(const Exhibit& exhibit)
{
    std::string id = exhibit.name;
    std::replace(id.begin(), id.end(), '_', '-');
    return id;
}

std::string programFile(const Exhibit& exhibit)
{
    return "code/" + idOf(exhibit) + ".c";
}

static void writeImage(std::ostream& out, const Shot& shot, const std::string& title, const std::string& rest = "")
{
    out << "<img loading=\"lazy\" src=\"" << escape(shot.file) << "\" width=\"" << shot.width << "\" height=\""
        << shot.height << "\" alt=\"" << escape(title) << "\"" << rest << '>';
}

static void writeShown(std::ostream& out, const Shot& shot, const std::string& title, const std::string& rest,
                       const std::string& caption)
{
    out << "<figure><a href=\"" << escape(shot.file) << "\">";
    writeImage(out, shot, title, rest);
    out << "</a>";
    if (!caption.empty()) out << "<figcaption>" << caption << "</figcaption>";
    out << "</figure>";
}

// Pixels as they are: the part round the detail, which the picture's frame cuts out.
static std::string partOf(const Page& page, const Shot& shot)
{
    char text[160];
    std::snprintf(text, sizeof text,
                  " class=\"part\" style=\"object-position:%.1f%% %.1f%%;height:%dpx;max-width:%dpx\"",
                  100 * page.detail.x, 100 * page.detail.y, static_cast<int>(std::min(shot.height, partHeight)),
                  static_cast<int>(shot.width));
    return text;
}

static void writeResult(std::ostream& out, const Page& page, const Card& card)
{
    const std::string& title = card.exhibit->title;
    const bool isPair = !card.before.file.empty();
    out << "<div class=\"shown" << (isPair ? " two" : "") << "\">";
    if (isPair) {
        writeShown(out, card.before, "before: " + title, partOf(page, card.before), "before, pixel for pixel");
        writeShown(out, card.shot, title, partOf(page, card.shot), "after");
    } else if (!card.shot.file.empty()) {
        const bool isPart = card.exhibit->view == View::detail;
        const bool isWhole = card.shot.width <= usualWidth && card.shot.height <= partHeight;
        writeShown(out, card.shot, title, isPart ? partOf(page, card.shot) : "",
                   !isPart       ? ""
                       : isWhole ? "pixel for pixel"
                                 : "a part, pixel for pixel");
    }
    if (!card.result.text.empty()) out << "<pre class=\"words\">" << escape(card.result.text) << "</pre>";
    out << "</div>";
}

static void writeCode(std::ostream& out, const std::vector<Line>& code)
{
    out << "<pre tabindex=\"0\">";
    for (size_t i = 0; i < code.size(); ++i) {
        if (code[i].isTimed && (i == 0 || !code[i - 1].isTimed)) out << "<b>";
        out << escape(code[i].text);
        if (code[i].isTimed && (i + 1 == code.size() || !code[i + 1].isTimed)) out << "</b>";
        out << '\n';
    }
    out << "</pre>";
}

static void writeHelpers(std::ostream& out, const Exhibit& exhibit)
{
    if (exhibit.helpers.empty()) return;
    out << "<details><summary>with";
    for (size_t i = 0; i < exhibit.helperNames.size(); ++i)
        out << (i > 0 ? ", " : " ") << "<code>" << escape(exhibit.helperNames[i]) << "</code>";
    out << "</summary>";
    writeCode(out, exhibit.helpers);
    out << "</details>";
}

static void writeCard(std::ostream& out, const Page& page, const Card& card)
{
    const Exhibit& exhibit = *card.exhibit;
    const bool isFailed = !card.result.reports.empty();
    const bool isPair = !card.before.file.empty();
    const char* const room = isPair || card.shot.width > usualWidth ? " pair" : "";
    const char* const shape = card.shot.width > wideWidth && exhibit.view == View::picture ? " wide" : room;
    const std::string id = idOf(exhibit);
    out << "<article class=\"card" << shape << (isFailed ? " failed" : "") << "\" id=\"" << id << "\">";
    writeResult(out, page, card);
    out << "<div class=\"text\"><h3><a href=\"#" << id << "\">" << escape(exhibit.title) << "</a></h3><p>"
        << escape(exhibit.sentence) << "</p>";
    writeCode(out, exhibit.code);
    writeHelpers(out, exhibit);
    if (isFailed) out << "<pre class=\"words\">" << escape(card.result.reports) << "</pre>";
    out << "<p class=\"foot\"><span>" << timeOf(card.result.milliseconds) << "</span><a href=\"" << programFile(exhibit)
        << "\">the whole program</a></p></div></article>\n";
}

static void writeSection(std::ostream& out, const Page& page, const Section& section)
{
    out << "<section id=\"" << section.family->name << "\"><h2>" << escape(section.family->title) << "</h2><p>"
        << escape(section.family->sentence) << "</p><div class=\"strip\">";
    for (const Card& card : section.cards) {
        if (card.shot.file.empty()) continue;
        out << "<a href=\"#" << idOf(*card.exhibit) << "\" title=\"" << escape(card.exhibit->title) << "\">";
        writeImage(out, card.shot, card.exhibit->title);
        out << "</a>";
    }
    out << "</div>\n";
    for (const Card& card : section.cards) writeCard(out, page, card);
    out << "</section>\n";
}

static size_t countExhibits(const Page& page)
{
    size_t count = 0;
    for (const Section& section : page.sections) count += section.cards.size();
    return count;
}

static void writeHeader(std::ostream& out, const Page& page)
{
    const PxkLibVersion* const version = pxkGetLibVersion();
    out << "<header><div><h1>What pxk does to a picture</h1><p>Each picture below was made by the C code beside it, as "
           "it stands, run by the program that wrote this page. The time is that of the lines in bold: the shortest of "
           "several runs, on one thread of this machine.</p><dl>"
        << "<dt>Library</dt><dd>pxk " << version->major << '.' << version->minor << '.' << version->build
        << "</dd><dt>Picture</dt><dd>" << escape(page.input) << ", " << page.size << "</dd><dt>Exhibits</dt><dd>"
        << countExhibits(page) << " in " << page.sections.size() << " families</dd></dl></div>";
    writeImage(out, page.starts.front().shot, page.input);
    out << "</header>\n";
}

static void writeStarts(std::ostream& out, const Page& page)
{
    out << R"(<section id="start"><h2>To start from</h2><p>The code uses these names. <code>w</code> and <code>h</code> are
the width and height of <code>photo</code>, which all but <code>writing</code> have. <code>out</code> is black and like
<code>photo</code>, unless the code puts another image there: it is what is shown. <code>newImage</code> makes a black image
of so many channels, of a depth, a width and a height; <code>floatAt</code> is the place of a float in one. Beyond the edges
of a picture its last pixels go on (<code>PXK_EDGE_CLAMP</code>).</p><div class="starts">
)";
    for (const Start& start : page.starts) {
        out << "<div><a href=\"" << start.shot.file << "\">";
        writeImage(out, start.shot, start.name);
        out << "</a><p><code>" << start.name << "</code><br>" << escape(start.sentence) << "</p></div>\n";
    }
    out << "</div></section>\n";
}

// The programs read PNG files.
static bool canRunPrograms()
{
    return std::string(pictureSuffix) == ".png";
}

static void writeHowToRun(std::ostream& out)
{
    out << R"(<section id="run"><h2>To run one</h2><p>The folder <code>code</code> beside this page holds each exhibit as a
whole program, with <a href="code/try.h">try.h</a>, which reads these pictures and writes <code>out.png</code>. With pxk and
libpng installed:</p><pre tabindex="0"><b>cd code
cc arith-add.c $(pkg-config --cflags --libs pxk libpng) -lm &amp;&amp; ./a.out</b></pre></section>
)";
}

static void writeNavigation(std::ostream& out, const Page& page)
{
    out << "<nav aria-label=\"Families\"><ul><li><a href=\"#start\">To start from</a></li>";
    if (canRunPrograms()) out << "<li><a href=\"#run\">To run one</a></li>";
    for (const Section& section : page.sections)
        out << "<li><a href=\"#" << section.family->name << "\"><span>" << section.cards.size() << "</span>"
            << escape(section.family->title) << "</a></li>";
    out << "</ul></nav>";
}

bool writePage(const Page& page, const std::string& path)
{
    std::ostringstream out;
    out << "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
        << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"><link rel=\"icon\" href=\"data:,\">"
        << "<title>pxk: " << escape(page.input) << "</title><style>" << style << "</style></head><body>\n";
    writeNavigation(out, page);
    out << "<main>\n";
    writeHeader(out, page);
    writeStarts(out, page);
    if (canRunPrograms()) writeHowToRun(out);
    for (const Section& section : page.sections) writeSection(out, page, section);
    out << "<footer>Written by <code>gallery</code>. The photographs that come with pxk are in the public domain or "
           "CC0; tests/photos/README.md names their sources.</footer></main></body></html>\n";

    std::ofstream file(path, std::ios::binary);
    file << out.str();
    file.close();
    return file.good();
}

} // namespace gallery
