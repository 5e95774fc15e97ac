// Numbers of 113 bits, some 34 digits, as the compiler has them, for Eigen's matrices.
#pragma once

#include <Eigen/Core>
#include <cmath>
#include <limits>

namespace genostat::standalone {

class Quad {
 public:
  __extension__ using Value = __float128;

  Quad() = default;
  // Implicit, since matrices are filled with zeros and ones.
  Quad(int number) : value_(number) {}
  Quad(double number) : value_(number) {}

  explicit operator double() const { return static_cast<double>(value_); }

  Quad& operator+=(Quad other) { return *this = *this + other; }
  Quad& operator-=(Quad other) { return *this = *this - other; }
  Quad& operator*=(Quad other) { return *this = *this * other; }
  Quad& operator/=(Quad other) { return *this = *this / other; }

  friend Quad operator-(Quad a) { return Quad(Raw{-a.value_}); }
  friend Quad operator+(Quad a, Quad b) { return Quad(Raw{a.value_ + b.value_}); }
  friend Quad operator-(Quad a, Quad b) { return Quad(Raw{a.value_ - b.value_}); }
  friend Quad operator*(Quad a, Quad b) { return Quad(Raw{a.value_ * b.value_}); }
  friend Quad operator/(Quad a, Quad b) { return Quad(Raw{a.value_ / b.value_}); }
  friend bool operator==(Quad a, Quad b) { return a.value_ == b.value_; }
  friend bool operator<(Quad a, Quad b) { return a.value_ < b.value_; }
  friend bool operator>(Quad a, Quad b) { return a.value_ > b.value_; }
  friend bool operator<=(Quad a, Quad b) { return a.value_ <= b.value_; }
  friend bool operator>=(Quad a, Quad b) { return a.value_ >= b.value_; }

  friend Quad abs(Quad a) { return a.value_ < 0 ? -a : a; }

  // Not a number for numbers below 0. Newton's method: the root in double precision has 53 bits, and each of
  // the two steps doubles them.
  friend Quad sqrt(Quad a) {
    Quad scale = 1;
    // The exponent of the root's double must not leave its range.
    for (; a > 0 && a < kSmall; scale *= 1 / kRootOfLarge) {
      a *= kLarge;
    }
    for (; a > kLarge && a * 0 == 0; scale *= kRootOfLarge) {
      a /= kLarge;
    }
    Quad root = std::sqrt(static_cast<double>(a));
    if (root > 0 && a * 0 == 0) {
      root = (root + a / root) / 2;
      root = (root + a / root) / 2;
    }
    return root * scale;
  }

 private:
  struct Raw {
    Value value;
  };
  explicit Quad(Raw raw) : value_(raw.value) {}

  static constexpr double kSmall = 0x1p-900;
  static constexpr double kLarge = 0x1p+900;
  static constexpr double kRootOfLarge = 0x1p+450;

  Value value_;
};

}  // namespace genostat::standalone

template <>
struct Eigen::NumTraits<genostat::standalone::Quad> {
  using Real = genostat::standalone::Quad;
  using NonInteger = Real;
  using Nested = Real;
  using Literal = Real;
  enum {
    IsComplex = 0,
    IsInteger = 0,
    IsSigned = 1,
    RequireInitialization = 0,
    ReadCost = 2,
    AddCost = 40,
    MulCost = 40
  };
  static Real epsilon() { return 0x1p-112; }
  static Real dummy_precision() { return 0x1p-100; }
  // As far as doubles reach, which is all that is asked of the numbers.
  static Real highest() { return std::numeric_limits<double>::max(); }
  static Real lowest() { return std::numeric_limits<double>::lowest(); }
  static int digits10() { return 33; }
};
