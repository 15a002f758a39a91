// The text of a file on its way into the store.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ek::embedded {

// Nothing with the system's reason when it cannot be read.
std::optional<std::string> readFile(const std::string& path, std::string& why);

// Whether it begins as a vCard does.
bool isContactText(std::string_view text);

// Whether all line breaks are CRLF, or all are LF.
bool hasUniformLineBreaks(std::string_view text);
// With every CR, LF, CRLF and CR CR LF replaced by `lineBreak`.
std::string withLineBreaks(std::string_view text, std::string_view lineBreak);

// The UID of a component or card by its own first UID line, not one of an inner component; decoded. Empty
// when it has none.
std::string uidIn(std::string_view component);

}  // namespace ek::embedded
