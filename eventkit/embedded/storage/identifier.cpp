#include "eventkit/embedded/storage/identifier.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <sys/random.h>
#include <unistd.h>

#include "eventkit/types.h"

namespace ek::embedded {
namespace {

constexpr std::size_t kLength = 16;

// Random bytes are fetched for many identifiers at once: an import needs thousands.
std::array<std::uint8_t, kLength> randomBytes() {
  struct Pool {
    std::array<std::uint8_t, 16 * kLength> bytes{};
    std::size_t used = sizeof bytes;
    pid_t process = 0;
  };
  thread_local Pool pool;
  if (pool.used == pool.bytes.size() || pool.process != getpid()) {
    if (getentropy(pool.bytes.data(), pool.bytes.size()) != 0)
      throwException("The system has no random numbers.");
    pool.used = 0;
    pool.process = getpid();
  }
  std::array<std::uint8_t, kLength> bytes{};
  std::memcpy(bytes.data(), pool.bytes.data() + pool.used, kLength);
  pool.used += kLength;
  return bytes;
}

}  // namespace

std::string newIdentifier() { return identifierFrom(randomBytes(), 4); }

std::vector<std::string> newIdentifiers(std::size_t count) {
  std::vector<std::string> identifiers(count);
  std::ranges::generate(identifiers, newIdentifier);
  std::ranges::sort(identifiers);
  return identifiers;
}

std::string identifierFrom(std::array<std::uint8_t, 16> bytes, unsigned version) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0f) | version << 4);
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3f) | 0x80);
  std::string text;
  text.reserve(36);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0x0f];
  }
  return text;
}

}  // namespace ek::embedded
