#pragma once

#include <QString>
#include <cstddef>
#include <string_view>

namespace quillary {

// What is painted of a text, which may be of any length and hold any bytes: at most its first
// `limit` characters, with "…" after them where there are more.
// On one line: line breaks, tabs and other control characters become blanks.
QString OneLine(std::string_view text, std::size_t limit = 500);
// On several lines: every kind of line break becomes a line feed.
QString ManyLines(std::string_view text, std::size_t limit = 2000);

}  // namespace quillary
