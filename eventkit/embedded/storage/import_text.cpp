#include "eventkit/embedded/storage/import_text.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "eventkit/embedded/ical/content_lines.h"
#include "eventkit/embedded/ical/values.h"

namespace ek::embedded {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t kChunk = 1 << 16;

class OpenFile {
 public:
  explicit OpenFile(const std::string& path) : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
  ~OpenFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

std::size_t sizeOf(int descriptor) {
  struct stat status {};
  return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size)
                                                                    : 0;
}

std::string systemReason() { return std::generic_category().message(errno); }

}  // namespace

std::optional<std::string> readFile(const std::string& path, std::string& why) {
  const OpenFile file(path);
  std::string text;
  if (file.descriptor() >= 0) {
    // One byte more than the file has, so that its end shows without growing.
    text.resize(sizeOf(file.descriptor()) + 1);
    for (std::size_t size = 0;;) {
      const ssize_t count = ::read(file.descriptor(), text.data() + size, text.size() - size);
      if (count < 0) break;
      size += static_cast<std::size_t>(count);
      if (count == 0) {
        text.resize(size);
        return text;
      }
      if (size == text.size()) text.resize(size + std::max(size, kChunk));
    }
  }
  why = systemReason();
  return std::nullopt;
}

bool isContactText(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
  constexpr std::string_view kBegin = "BEGIN:VCARD";
  return ical::equalNames(text.substr(0, kBegin.size()), kBegin);
}

bool hasUniformLineBreaks(std::string_view text) {
  const auto hasReturn = [](std::string_view part) { return part.find('\r') != std::string_view::npos; };
  if (!hasReturn(text)) return true;
  for (std::size_t end = 0; (end = text.find('\n')) != std::string_view::npos; text.remove_prefix(end + 1))
    if (end == 0 || text[end - 1] != '\r' || hasReturn(text.substr(0, end - 1))) return false;
  return !hasReturn(text);
}

std::string withLineBreaks(std::string_view text, std::string_view lineBreak) {
  std::string result;
  result.reserve(text.size() + text.size() / 32);
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    result += text.substr(0, end);
    text.remove_prefix(end);
    if (text.empty()) break;
    for (const std::string_view found : {"\r\r\n", "\r\n", "\r", "\n"}) {
      if (!text.starts_with(found)) continue;
      text.remove_prefix(found.size());
      break;
    }
    result += lineBreak;
  }
  return result;
}

std::string uidIn(std::string_view component) {
  ical::LineScanner scanner(component);
  int depth = 0;
  std::string whole;
  for (ical::RawLine line; scanner.next(line);) {
    std::string_view name;
    const ical::Marker marker = ical::markerOf(line, name);
    if (marker == ical::Marker::begin) ++depth;
    if (marker == ical::Marker::end) --depth;
    if (depth != 1 || marker != ical::Marker::none || line.content.empty()) continue;
    if (line.content.front() != 'U' && line.content.front() != 'u') continue;
    whole.clear();
    ical::unfold(line.raw, whole);
    const ical::LineParts parts = ical::partsOf(whole);
    if (ical::equalNames(std::string_view(whole).substr(0, parts.nameLength), "UID"))
      return ical::decodeText(ical::trimmed(std::string_view(whole).substr(parts.valueBegin)));
  }
  return {};
}

}  // namespace ek::embedded
