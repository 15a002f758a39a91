#include "foundation/zone_table.h"

#include <algorithm>

namespace foundation {

namespace {

constexpr std::size_t kHeaderSize = 44;
constexpr std::int32_t kWidestOffset = 26 * 3600;
// Nothing here asks about years before 1; some writers put a first entry at the beginning of all time.
constexpr std::int64_t kEarliestEntry = -62167219200;  // 0000-01-01
constexpr std::int64_t kLatestEntry = 253402300800;    // 10000-01-01

struct Counts {
  std::uint32_t utcMarks, standardMarks, leaps, entries, types, letterBytes;

  std::uint64_t bodySize(unsigned timeSize) const {
    return std::uint64_t{entries} * (timeSize + 1) + std::uint64_t{types} * 6 + letterBytes +
           std::uint64_t{leaps} * (timeSize + 4) + standardMarks + utcMarks;
  }
};

// Reads past the end give zeros: sizes are checked before.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

  std::size_t left() const { return bytes_.size(); }
  std::string_view rest() const { return bytes_; }
  void skip(std::size_t count) { bytes_.remove_prefix(std::min(count, bytes_.size())); }

  std::string_view take(std::size_t count) {
    const std::string_view taken = bytes_.substr(0, count);
    skip(count);
    return taken;
  }
  std::uint64_t number(unsigned size) {
    std::uint64_t value = 0;
    for (const char c : take(size)) value = value << 8 | static_cast<unsigned char>(c);
    return value;
  }
  std::int64_t time(unsigned size) {
    const std::uint64_t value = number(size);
    return size == 4 ? static_cast<std::int32_t>(static_cast<std::uint32_t>(value))
                     : static_cast<std::int64_t>(value);
  }

 private:
  std::string_view bytes_;
};

struct Header {
  char version = 0;
  Counts counts{};
};

std::optional<Header> readHeader(Bytes& in) {
  if (in.left() < kHeaderSize || in.take(4) != "TZif") return std::nullopt;
  Header header;
  header.version = in.take(1).front();
  in.skip(15);
  Counts& counts = header.counts;
  for (std::uint32_t* count : {&counts.utcMarks, &counts.standardMarks, &counts.leaps, &counts.entries,
                               &counts.types, &counts.letterBytes})
    *count = static_cast<std::uint32_t>(in.number(4));
  return header;
}

bool readTypes(Bytes& in, const Counts& counts, ZoneTable& table) {
  std::vector<std::size_t> letterStarts;
  for (std::uint32_t i = 0; i < counts.types; ++i) {
    const auto offset = static_cast<std::int32_t>(static_cast<std::uint32_t>(in.number(4)));
    if (offset < -kWidestOffset || offset > kWidestOffset) return false;
    in.skip(1);  // whether it is summer time
    letterStarts.push_back(in.number(1));
    table.types.push_back({offset, {}});
  }
  const std::string_view letters = in.take(counts.letterBytes);
  for (std::size_t i = 0; i < letterStarts.size(); ++i) {
    if (letterStarts[i] >= letters.size()) return false;
    const std::string_view from = letters.substr(letterStarts[i]);
    table.types[i].letters = from.substr(0, from.find('\0'));
  }
  return true;
}

// Files that count leap seconds ("right/...") are brought back to seconds of UTC.
void removeLeapSeconds(Bytes& in, const Counts& counts, unsigned timeSize,
                       std::vector<ZoneTable::Entry>& entries) {
  struct Leap {
    std::int64_t at;
    std::int32_t total;
  };
  std::vector<Leap> leaps;
  for (std::uint32_t i = 0; i < counts.leaps; ++i) {
    const std::int64_t at = in.time(timeSize);
    leaps.push_back({at, static_cast<std::int32_t>(static_cast<std::uint32_t>(in.number(4)))});
  }
  std::size_t next = 0;
  std::int32_t total = 0;
  for (ZoneTable::Entry& entry : entries) {
    while (next < leaps.size() && leaps[next].at <= entry.at) total = leaps[next++].total;
    entry.at -= total;
  }
}

std::optional<ZoneTable> readBody(Bytes& in, const Counts& counts, unsigned timeSize) {
  if (counts.types == 0 || counts.types > 256) return std::nullopt;
  ZoneTable table;
  std::vector<std::int64_t> times;
  times.reserve(counts.entries);
  for (std::uint32_t i = 0; i < counts.entries; ++i) times.push_back(in.time(timeSize));
  for (const std::int64_t at : times) {
    const std::size_t type = in.number(1);
    if (type >= counts.types) return std::nullopt;
    if (at > kLatestEntry || (!table.entries.empty() && table.entries.back().at >= at)) return std::nullopt;
    if (at < kEarliestEntry)
      table.initial = type;
    else
      table.entries.push_back({at, type});
  }
  if (!readTypes(in, counts, table)) return std::nullopt;
  removeLeapSeconds(in, counts, timeSize, table.entries);
  in.skip(counts.standardMarks + std::size_t{counts.utcMarks});
  return table;
}

}  // namespace

std::size_t ZoneTable::typeIndex(const Type& type) {
  const auto found = std::ranges::find(types, type);
  if (found != types.end()) return static_cast<std::size_t>(found - types.begin());
  types.push_back(type);
  return types.size() - 1;
}

std::optional<ZoneTable> readZoneFile(std::string_view bytes) {
  Bytes in(bytes);
  std::optional<Header> header = readHeader(in);
  if (!header || header->counts.bodySize(4) > in.left()) return std::nullopt;
  if (header->version == '\0') return readBody(in, header->counts, 4);
  if (header->version < '2') return std::nullopt;

  in.skip(header->counts.bodySize(4));
  header = readHeader(in);
  if (!header || header->counts.bodySize(8) > in.left()) return std::nullopt;
  std::optional<ZoneTable> table = readBody(in, header->counts, 8);
  if (!table || in.take(1) != "\n") return std::nullopt;
  const std::size_t length = in.rest().find('\n');
  if (length == std::string_view::npos) return std::nullopt;
  table->rule = in.take(length);
  return table;
}

}  // namespace foundation
