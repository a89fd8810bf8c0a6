// Where results go: whole or not at all.
#pragma once

#include <string>
#include <string_view>

namespace ocvlan {

// Whoever read the output went away; nothing is wrong and nothing is left to do.
class ReaderGone {};

// Writes to a file, or to standard output when `file` is empty or "-". Links are followed, also to a file that is not
// there yet. A regular file is replaced when everything is on disk, keeps its owner, group and mode, and stays as it
// was otherwise, also when a signal ends the program. Throws yfw::Unreadable when it cannot be written, or ReaderGone.
void write_output(const std::string& file, std::string_view text);

// The name that a file has, or will have, once every link at the end of the given one is followed. Throws
// yfw::Unreadable when they lead nowhere.
std::string followed(const std::string& file);

}  // namespace ocvlan
