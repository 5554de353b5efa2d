/* SPDX-License-Identifier: BSD-2-Clause */
// Writes the page: one HTML file beside the pictures, no script, nothing loaded from elsewhere.
#pragma once

#include "gallery.h"
#include "pictures.h"

#include <string>
#include <vector>

namespace gallery {

// A picture file of the page.
struct Shot {
    std::string file; // beside the page
    int32_t width = 0, height = 0;
};

struct Card {
    const Exhibit* exhibit;
    Result result;
    Shot shot, before; // file empty: there is none
};

struct Section {
    const Family* family;
    std::vector<Card> cards;
};

// One of the pictures that exhibits start from.
struct Start {
    std::string name, sentence; // the name that the code uses
    Shot shot;
};

struct Page {
    std::string input; // file name of the photograph
    std::string size;  // such as "512 × 512"
    Detail detail;     // what to show of pictures that are not shown whole
    std::vector<Start> starts;
    std::vector<Section> sections;
};

// Where the program of an exhibit is, beside the page.
std::string programFile(const Exhibit& exhibit);

// False when the file can't be written.
bool writePage(const Page& page, const std::string& path);

} // namespace gallery
