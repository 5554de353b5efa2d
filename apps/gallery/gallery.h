/* SPDX-License-Identifier: BSD-2-Clause */
// The show: every operation of the library on one picture, as a page of pictures.
//
// A family is a file exhibits/NAME.c, which exhibits/exhibit.h explains: C code that is compiled into this program, and
// whose text the page shows. To add a family: write such a file, and name it in the list of CMakeLists.txt.
#pragma once

#include "picturefile.h"

#include <cstdint>
#include <string>
#include <vector>

namespace gallery {

enum class View { picture, detail, pair, text, reports };

// A line of code, and whether it is timed.
struct Line {
    std::string text;
    bool isTimed;
};

// What stands in a file of exhibits.
struct Exhibit {
    std::string name; // such as arith_add
    std::string title, sentence;
    View view;
    std::string before;                   // of a pair: one of the pictures to start from, or another exhibit
    std::vector<Line> code;               // the block's inside
    std::vector<std::string> helperNames; // of the functions and records that it uses,
    std::vector<Line> helpers;            // and their code
    std::string program;                  // the whole of a C file
    void (*run)();
};

struct Family {
    std::string name, title, sentence;
    std::vector<Exhibit> exhibits;
};

std::vector<Family> readFamilies();

// The file that every exhibit's program includes.
const char* tryHeader();

// The pictures that exhibits start from, all of one size except `writing`. Exhibits may hang regions, masks and border
// modes on them (perform takes them off again: the whole picture, and PXK_EDGE_CLAMP) but leave their pixels alone.
struct Inputs {
    ImagePtr photo, gray, other, ramp, rings, ellipse, writing;
};

// What one exhibit gave.
struct Result {
    double milliseconds = 0; // of the timed lines
    ImagePtr picture;        // a private copy; null when the exhibit is a text
    std::string text;        // what it printed, or what the library reported as expected
    std::string reports;     // what the library reported and the exhibit did not expect
};

// Runs an exhibit several times, and keeps the shortest time. What it makes dies with the call.
Result perform(const Exhibit& exhibit, const Inputs& inputs, int mostRuns);

} // namespace gallery
