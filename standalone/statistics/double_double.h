// Numbers of about 32 digits: the unevaluated sum of two doubles.
//
// Error-free sum: D. E. Knuth, "The Art of Computer Programming" 2, 4.2.2, theorem B; product: T. J. Dekker,
// "A floating-point technique for extending the available precision", Numer. Math. 18 (1971)
// 224-242, whose splitting is exact wherever rounding is to nearest, with or without fused
// multiplication. Factors beyond 1e300 overflow in the splitting.
#pragma once

namespace genostat::standalone {

// |low| is at most half a unit in the last place of high, except between steps of an accumulation.
struct DoubleDouble {
  double high = 0;
  double low = 0;

  double value() const { return high + low; }
};

// a + b without any rounding.
inline DoubleDouble exactSum(double a, double b) {
  const double sum = a + b;
  const double part = sum - a;
  return {sum, (a - (sum - part)) + (b - part)};
}

// a * b without any rounding, unless it underflows.
inline DoubleDouble exactProduct(double a, double b) {
  constexpr double kSplit = 134217729;  // 2^27 + 1
  const double aSpread = kSplit * a;
  const double aHigh = aSpread - (aSpread - a);
  const double aLow = a - aHigh;
  const double bSpread = kSplit * b;
  const double bHigh = bSpread - (bSpread - b);
  const double bLow = b - bHigh;
  const double product = a * b;
  return {product, ((aHigh * bHigh - product) + aHigh * bLow + aLow * bHigh) + aLow * bLow};
}

inline DoubleDouble operator+(const DoubleDouble& a, const DoubleDouble& b) {
  const DoubleDouble sum = exactSum(a.high, b.high);
  const DoubleDouble lows = exactSum(a.low, b.low);
  const DoubleDouble middle = exactSum(sum.high, sum.low + lows.high);
  return exactSum(middle.high, middle.low + lows.low);
}

inline DoubleDouble operator-(const DoubleDouble& a) {
  return {-a.high, -a.low};
}

inline DoubleDouble operator-(const DoubleDouble& a, const DoubleDouble& b) {
  return a + -b;
}

inline DoubleDouble operator*(const DoubleDouble& a, const DoubleDouble& b) {
  const DoubleDouble product = exactProduct(a.high, b.high);
  return exactSum(product.high, product.low + (a.high * b.low + a.low * b.high));
}

// By a whole number or any other double: a / b.
inline DoubleDouble operator/(const DoubleDouble& a, double b) {
  const double high = a.high / b;
  const DoubleDouble rest = a - exactProduct(high, b);
  return exactSum(high, rest.value() / b);
}

}  // namespace genostat::standalone
