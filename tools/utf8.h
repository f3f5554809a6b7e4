// utf8.h: text that may not be well-formed UTF-8, such as the names of files.
#ifndef TOOLS_UTF8_H
#define TOOLS_UTF8_H

#include <string>
#include <string_view>

// Bytes of the well-formed character (RFC 3629) that text begins with, 0 when there is none.
size_t utf8_length(std::string_view text);

// The text with U+FFFD in place of each byte that is not well-formed.
std::string utf8_cleaned(std::string_view text);

// Text that cannot disturb a terminal, escaped as the library escapes it in messages.
std::string escaped(std::string_view text);

// The same in double quotes, with quotes and backslashes escaped.
std::string quoted(std::string_view text);

#endif
