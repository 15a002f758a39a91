#include "host/wrapper/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace fmhost {
namespace {

__extension__ using Digits = unsigned __int128;

constexpr int kMostDigits = 37;  // ten times a number of 37 digits still fits 128 bits
constexpr int kQuotientPlaces = 16;
constexpr int kMostExponent = 400;

constexpr auto kPowersOfTen = [] {
  std::array<Digits, kMostDigits + 1> powers{};
  powers[0] = 1;
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
  return powers;
}();
constexpr Digits kLimit = kPowersOfTen[kMostDigits];

int digitCount(Digits digits) {
  const auto above = std::upper_bound(kPowersOfTen.begin(), kPowersOfTen.end(), digits);
  return static_cast<int>(above - kPowersOfTen.begin());
}

// digits / 10^places, halves up.
Digits shiftedRight(Digits digits, int places) {
  if (places <= 0) return digits;
  if (places > kMostDigits) return 0;
  const Digits unit = kPowersOfTen[static_cast<std::size_t>(places)];
  return digits / unit + (digits % unit >= unit / 2 ? 1 : 0);
}

// A product before it is rounded.
class WideProduct {
 public:
  WideProduct(Digits a, Digits b) {
    const std::uint64_t left[] = {static_cast<std::uint64_t>(a), static_cast<std::uint64_t>(a >> 64)};
    const std::uint64_t right[] = {static_cast<std::uint64_t>(b), static_cast<std::uint64_t>(b >> 64)};
    for (std::size_t i = 0; i < 2; ++i) {
      Digits carry = 0;
      for (std::size_t j = 0; j < 2; ++j) {
        carry += Digits{left[i]} * right[j] + limbs_[i + j];
        limbs_[i + j] = static_cast<std::uint64_t>(carry);
        carry >>= 64;
      }
      limbs_[i + 2] = static_cast<std::uint64_t>(carry);
    }
  }

  bool fits() const { return limbs_[3] == 0 && limbs_[2] == 0 && low() < kLimit; }
  Digits low() const { return Digits{limbs_[1]} << 64 | limbs_[0]; }

  int takeLastDigit() {
    Digits rest = 0;
    for (auto limb = limbs_.rbegin(); limb != limbs_.rend(); ++limb) {
      rest = rest << 64 | *limb;
      *limb = static_cast<std::uint64_t>(rest / 10);
      rest %= 10;
    }
    return static_cast<int>(rest);
  }

 private:
  std::array<std::uint64_t, 4> limbs_{};
};

bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

// The power of ten written at `at` (an e, perhaps a sign, digits), which is left behind it; 0 when none is.
int takePowerOfTen(std::u16string_view text, std::size_t& at) {
  std::size_t next = at + 1;
  const bool negative = next < text.size() && text[next] == u'-';
  if (negative || (next < text.size() && text[next] == u'+')) ++next;
  if (next >= text.size() || !isDigit(text[next])) return 0;
  int power = 0;
  for (; next < text.size() && isDigit(text[next]); ++next) {
    power = std::min(power * 10 + (text[next] - u'0'), kMostExponent);
  }
  at = next - 1;
  return negative ? -power : power;
}

}  // namespace

Decimal::Decimal(Digits digits, int exponent, bool negative)
    : digits_(digits), exponent_(exponent), negative_(negative) {
  while (digits_ >= kLimit) {
    const int excess = std::max(digitCount(digits_) - kMostDigits, 1);
    digits_ = shiftedRight(digits_, excess);
    exponent_ += excess;
  }
}

std::optional<Decimal> Decimal::fromDouble(double value) {
  if (!std::isfinite(value)) return std::nullopt;
  std::array<char, 32> written{};
  const auto end = std::to_chars(written.data(), written.data() + written.size(), value).ptr;
  return fromText(std::u16string(written.data(), end));
}

std::optional<Decimal> Decimal::fromText(std::u16string_view text) {
  Decimal number;
  bool anyDigit = false;
  bool pointSeen = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char16_t c = text[at];
    if (isDigit(c)) {
      anyDigit = true;
      if (number.digits_ < kLimit / 10) {
        number.digits_ = number.digits_ * 10 + static_cast<unsigned>(c - u'0');
        number.exponent_ -= pointSeen ? 1 : 0;
      } else if (!pointSeen) {
        ++number.exponent_;
      }
    } else if (c == u'.') {
      pointSeen = true;
    } else if (c == u'-' && !anyDigit) {
      number.negative_ = true;
    } else if ((c == u'e' || c == u'E') && anyDigit && (isDigit(text[at - 1]) || text[at - 1] == u'.')) {
      if (const int power = takePowerOfTen(text, at)) {
        number.exponent_ += power;
        break;
      }
    }
  }
  if (!anyDigit) return std::nullopt;
  return number;
}

std::int64_t Decimal::truncated() const {
  Digits whole = digits_;
  if (exponent_ < 0) {
    whole = -exponent_ > kMostDigits ? 0 : whole / kPowersOfTen[static_cast<std::size_t>(-exponent_)];
  }
  constexpr Digits kMost = std::numeric_limits<std::int64_t>::max();
  for (int i = 0; i < exponent_ && whole != 0 && whole <= kMost; ++i) whole *= 10;
  if (whole > kMost) {
    return negative_ ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
  }
  const auto magnitude = static_cast<std::int64_t>(whole);
  return negative_ ? -magnitude : magnitude;
}

double Decimal::toDouble() const {
  const std::string written = toString();
  double value = 0;
  std::from_chars(written.data(), written.data() + written.size(), value);
  return value;
}

std::string Decimal::toString() const {
  const Decimal number = withoutTrailingZeros();
  if (number.isZero()) return "0";
  std::array<char, 40> written{};
  auto first = written.end();
  for (Digits rest = number.digits_; rest != 0; rest /= 10) *--first = static_cast<char>('0' + rest % 10);
  std::string text(first, written.end());
  if (number.exponent_ > 0) text.append(static_cast<std::size_t>(number.exponent_), '0');
  if (number.exponent_ < 0) {
    const auto places = static_cast<std::size_t>(-number.exponent_);
    if (text.size() < places) text.insert(0, places - text.size(), '0');
    text.insert(text.size() - places, 1, '.');
  }
  return number.negative_ ? "-" + text : text;
}

Decimal Decimal::rounded(int places) const {
  if (exponent_ >= -places) return *this;
  return {shiftedRight(digits_, -places - exponent_), -places, negative_};
}

Decimal Decimal::floor() const {
  if (exponent_ >= 0) return *this;
  const bool vanishes = -exponent_ > kMostDigits;
  const Digits unit = vanishes ? kLimit : kPowersOfTen[static_cast<std::size_t>(-exponent_)];
  const Digits whole = vanishes ? 0 : digits_ / unit;
  const bool hasFraction = vanishes ? digits_ != 0 : digits_ % unit != 0;
  return {whole + (negative_ && hasFraction ? 1 : 0), 0, negative_};
}

Decimal Decimal::operator-() const { return {digits_, exponent_, !negative_}; }

Decimal Decimal::withoutTrailingZeros() const {
  Decimal number = *this;
  if (number.digits_ == 0) return Decimal();
  while (number.digits_ % 10 == 0) {
    number.digits_ /= 10;
    ++number.exponent_;
  }
  return number;
}

Decimal operator+(const Decimal& a, const Decimal& b) {
  if (a.isZero()) return b;
  if (b.isZero()) return a;
  Decimal coarse = a.exponent_ >= b.exponent_ ? a : b;
  Decimal fine = a.exponent_ >= b.exponent_ ? b : a;
  const int gap = coarse.exponent_ - fine.exponent_;
  const int room = std::clamp(kMostDigits - digitCount(coarse.digits_), 0, gap);
  coarse.digits_ *= kPowersOfTen[static_cast<std::size_t>(room)];
  coarse.exponent_ -= room;
  fine.digits_ = shiftedRight(fine.digits_, gap - room);
  if (coarse.negative_ == fine.negative_) {
    return {coarse.digits_ + fine.digits_, coarse.exponent_, coarse.negative_};
  }
  if (coarse.digits_ >= fine.digits_) {
    return {coarse.digits_ - fine.digits_, coarse.exponent_, coarse.negative_};
  }
  return {fine.digits_ - coarse.digits_, coarse.exponent_, fine.negative_};
}

Decimal operator*(const Decimal& a, const Decimal& b) {
  WideProduct product(a.digits_, b.digits_);
  int exponent = a.exponent_ + b.exponent_;
  int lastDigit = 0;
  for (; !product.fits(); ++exponent) lastDigit = product.takeLastDigit();
  return {product.low() + (lastDigit >= 5 ? 1 : 0), exponent, a.negative_ != b.negative_};
}

std::optional<Decimal> Decimal::quotient(const Decimal& a, const Decimal& b) {
  if (b.isZero()) return std::nullopt;
  const Decimal divisor = b.withoutTrailingZeros();
  Digits digits = a.digits_ / divisor.digits_;
  Digits rest = a.digits_ % divisor.digits_;
  int exponent = a.exponent_ - divisor.exponent_;
  while (rest != 0 && digits < kLimit / 10 &&
         (-exponent < kQuotientPlaces || digitCount(digits) < kQuotientPlaces)) {
    digits = digits * 10 + rest * 10 / divisor.digits_;
    rest = rest * 10 % divisor.digits_;
    --exponent;
  }
  if (rest >= divisor.digits_ - rest) ++digits;
  return Decimal(digits, exponent, a.negative_ != b.negative_);
}

std::optional<Decimal> Decimal::modulo(const Decimal& a, const Decimal& b) {
  const auto ratio = quotient(a, b);
  if (!ratio) return std::nullopt;
  Decimal rest = a - b * ratio->floor();
  // A ratio just below a whole number may have been rounded up to it.
  if (!rest.isZero() && rest.isNegative() != b.isNegative()) rest = rest + b;
  return rest;
}

std::optional<Decimal> Decimal::power(const Decimal& base, const Decimal& exponent) {
  constexpr std::int64_t kMostSteps = 1024;
  const std::int64_t whole = exponent.truncated();
  if (exponent != Decimal(whole) || whole > kMostSteps || whole < -kMostSteps) {
    return fromDouble(std::pow(base.toDouble(), exponent.toDouble()));
  }
  Decimal result(1);
  Decimal square = base;
  for (std::int64_t left = whole < 0 ? -whole : whole; left != 0; left /= 2) {
    if (left % 2 != 0) result = result * square;
    if (left > 1) square = square * square;
  }
  return whole < 0 ? quotient(Decimal(1), result) : result;
}

std::strong_ordering operator<=>(const Decimal& a, const Decimal& b) {
  const Decimal difference = a - b;
  if (difference.isZero()) return std::strong_ordering::equal;
  return difference.isNegative() ? std::strong_ordering::less : std::strong_ordering::greater;
}

}  // namespace fmhost
