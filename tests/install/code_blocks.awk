# Takes the code blocks out of a page or a header's comment: the lines between "```c" or "```cpp" and "```". Writes each
# as a source of its own, "<folder>/<page>-<number>.<language>", and prints that name:
#
#     a block with a function's body is a source as it stands, and a program when it has a main
#     any other is statements, which get a function around them, after the block's #include lines
#     one of a header comes after that header
#
# A block after a line such as
#
#     <!-- setting_rows.h before "    {SETTING_VIDEO" -->
#
# is lines of that file, to be put in before the first one that begins so. Prints "FILE: <name>: <beginning>" for it,
# with its lines in "<folder>/<page>-<number>.lines".
#
# Variables: folder, page (the file's name), header (its name as it is included, or nothing)

function fail(text) {
    print FILENAME ":" FNR ": " text >"/dev/stderr"
    failed = 1
}

function write_block(    name, i, includes, body) {
    for (i = 1; i <= count; ++i) {
        if (lines[i] ~ /^#include /) {
            includes = includes lines[i] "\n"
        }
        body = body (lines[i] ~ /^#include / ? "" : lines[i]) "\n"
    }
    name = folder "/" page "-" ++number
    if (into != "") {
        printf "%s", body >(name ".lines")
        print into ": " name ".lines: " before
        return
    }
    name = name "." language
    if (header != "") {
        includes = "#include <" header ">\n" includes
    }
    if (!whole) {
        body = "void block(void);\nvoid block(void)\n{\n#line " first " \"" page "\"\n" body "}"
    } else {
        body = "#line " first " \"" page "\"\n" body
    }
    print includes body >name
    close(name)
    print name
}

{
    line = $0
    if (header != "") {
        if (line !~ /^( \*|\/\/)/) {
            if (language != "") {
                fail("the block has no end")
                language = ""
            }
            next
        }
        sub(/^( \*|\/\/) ?/, "", line)
    }
}

language != "" && line == "```" {
    write_block()
    language = into = ""
    next
}

language != "" {
    lines[++count] = line
    whole = whole || line == "{"
    next
}

line ~ /^<!-- .* before ".*" -->$/ {
    into = line
    sub(/^<!-- /, "", into)
    sub(/ before .*/, "", into)
    before = line
    sub(/^[^"]*"/, "", before)
    sub(/" -->$/, "", before)
    next
}

line == "```c" || line == "```cpp" {
    language = substr(line, 4)
    first = FNR + 1
    count = whole = 0
    next
}

# What looks like code and is in no block that is compiled.
line ~ /\);$/ || line ~ /^ *#include </ {
    fail("code outside a code block of a language")
}

END {
    if (language != "") {
        fail("the block has no end")
    }
    exit failed
}
