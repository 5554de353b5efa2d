# SPDX-License-Identifier: BSD-2-Clause
# The failing tests of a log of `ctest --verbose`, whose lines begin with the number of the entry that printed them:
# what a failed GoogleTest test said, and the last words of an entry that ended without naming one.

function show(text, first, last,    lines, n, i)
{
    n = split(text, lines, "\n") - 1
    for (i = 1; i <= n; ++i)
        if (i <= first || i > n - last) print lines[i]
        else if (i == first + 1) print "..."
}

/^[0-9]+: / {
    if ($0 ~ /\[ RUN      \]/) text[$1] = ""
    text[$1] = text[$1] $0 "\n"
    if ($0 ~ /\[       OK \]/) text[$1] = ""
    if ($0 ~ /\[  FAILED  \].* ms\)$/) {
        if (++shown <= 5) show(text[$1], 20, 1)
        text[$1] = ""
        named[$1] = 1
    }
}

/^ *[0-9]+\/[0-9]+ Test +#[0-9]+:/ && !/ Passed +[0-9.]+ sec/ && !/\*\*\*Skipped/ {
    match($0, /#[0-9]+/)
    entry = substr($0, RSTART + 1, RLENGTH - 1) ":"
    if (!(entry in named)) show(text[entry], 0, 20)
    print
}

END { if (shown > 5) print shown - 5 " more" }
