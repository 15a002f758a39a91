#include "eventkit/embedded/store/url_text.h"

#include <algorithm>

namespace ek::embedded {

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

// Characters of the parts between delimiters; `also` names those that the part allows beyond them.
bool isMadeOf(std::string_view text, std::string_view also) {
  constexpr std::string_view kMarks = "-._~!$&'()*+,;=";
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '%') {
      if (i + 2 >= text.size() || !isHexDigit(text[i + 1]) || !isHexDigit(text[i + 2])) return false;
      i += 2;
    } else if (!isLetter(c) && !isDigit(c) && kMarks.find(c) == std::string_view::npos &&
               also.find(c) == std::string_view::npos) {
      return false;
    }
  }
  return true;
}

bool isScheme(std::string_view text) {
  return !text.empty() && isLetter(text.front()) && std::ranges::all_of(text, [](char c) {
    return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
  });
}

bool isAuthority(std::string_view text) {
  if (const std::size_t at = text.rfind('@'); at != std::string_view::npos) {
    if (!isMadeOf(text.substr(0, at), ":")) return false;
    text.remove_prefix(at + 1);
  }
  std::size_t hostEnd = text.find(':');
  if (text.starts_with('[')) {
    const std::size_t close = text.find(']');
    if (close == std::string_view::npos || !isMadeOf(text.substr(1, close - 1), ":")) return false;
    hostEnd = close + 1 < text.size() ? close + 1 : std::string_view::npos;
  } else if (!isMadeOf(text.substr(0, hostEnd), "")) {
    return false;
  }
  if (hostEnd == std::string_view::npos) return true;
  return text[hostEnd] == ':' && std::ranges::all_of(text.substr(hostEnd + 1), isDigit);
}

// Cuts `text` at the first delimiter and gives what follows it.
std::string_view cutFrom(std::string_view& text, char delimiter) {
  const std::size_t at = text.find(delimiter);
  if (at == std::string_view::npos) return {};
  const std::string_view tail = text.substr(at + 1);
  text = text.substr(0, at);
  return tail;
}

}  // namespace

bool isUrl(std::string_view text) {
  if (text.empty()) return false;
  if (!isMadeOf(cutFrom(text, '#'), ":@/?")) return false;
  if (!isMadeOf(cutFrom(text, '?'), ":@/?")) return false;
  if (const std::size_t colon = text.find(':'); colon < text.find('/')) {
    if (!isScheme(text.substr(0, colon))) return false;
    text.remove_prefix(colon + 1);
  }
  if (text.starts_with("//")) {
    text.remove_prefix(2);
    const std::size_t path = std::min(text.find('/'), text.size());
    if (!isAuthority(text.substr(0, path))) return false;
    text.remove_prefix(path);
  }
  return isMadeOf(text, ":@/");
}

}  // namespace ek::embedded
