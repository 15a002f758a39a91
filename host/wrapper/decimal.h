// Numbers as FileMaker calculates with them: decimal, so that .1 + .2 is .3.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace fmhost {

// Exact up to 37 digits; what has more is rounded to 37, halves away from zero. A quotient is rounded to 16
// decimal places, or to 16 digits where that keeps more of it.
class Decimal {
 public:
  constexpr Decimal() = default;
  constexpr explicit Decimal(std::int64_t value)
      : digits_(value < 0 ? Digits{0} - static_cast<Digits>(value) : static_cast<Digits>(value)),
        negative_(value < 0) {}

  // Nothing for what is no finite number.
  static std::optional<Decimal> fromDouble(double value);
  // FileMaker's reading of a text: its digits from the first to the last, with a minus in front of them, the
  // first decimal point among them, and a power of ten (1e3) right behind a digit. Nothing without a digit.
  static std::optional<Decimal> fromText(std::u16string_view text);

  bool isZero() const { return digits_ == 0; }
  bool isNegative() const { return negative_ && digits_ != 0; }

  // Without the fraction; beyond 64 bits the limit.
  std::int64_t truncated() const;
  double toDouble() const;
  // All digits, no trailing zeros, and none before the point: .5
  std::string toString() const;

  // To so many places after the point (before it, when negative), halves away from zero.
  Decimal rounded(int places) const;
  // The whole number at or below this one.
  Decimal floor() const;
  Decimal operator-() const;

  friend Decimal operator+(const Decimal& a, const Decimal& b);
  friend Decimal operator-(const Decimal& a, const Decimal& b) { return a + -b; }
  friend Decimal operator*(const Decimal& a, const Decimal& b);
  // Nothing for a division by zero.
  static std::optional<Decimal> quotient(const Decimal& a, const Decimal& b);
  // With the sign of b. Nothing for b = 0.
  static std::optional<Decimal> modulo(const Decimal& a, const Decimal& b);
  // Nothing where there is no (real, finite) result.
  static std::optional<Decimal> power(const Decimal& base, const Decimal& exponent);

  friend std::strong_ordering operator<=>(const Decimal& a, const Decimal& b);
  friend bool operator==(const Decimal& a, const Decimal& b) { return std::is_eq(a <=> b); }

 private:
  __extension__ using Digits = unsigned __int128;

  Decimal(Digits digits, int exponent, bool negative);
  Decimal withoutTrailingZeros() const;

  Digits digits_ = 0;  // below 10^37, but for a constructor's argument
  int exponent_ = 0;   // the power of ten that digits_ counts in
  bool negative_ = false;
};

}  // namespace fmhost
