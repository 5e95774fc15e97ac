// Linear regression against the Statistical Reference Datasets of the National Institute of Standards
// and Technology: https://www.itl.nist.gov/div898/strd/lls/lls.shtml. The log relative error (LRE)
// is the number of digits that agree with the certified value, at most 15 of which are certified.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "standalone/statistics/cross_products.h"
#include "standalone/statistics/linear_system.h"
#include "standalone/statistics/predictor_selection.h"
#include "standalone/statistics/residuals.h"

namespace genostat::standalone {
namespace {

using Columns = std::vector<std::vector<double>>;

const std::vector<double> kNorrisX = {0.2,   337.4, 118.2, 884.6, 10.1,  226.5, 666.3, 996.3, 448.6,
                                      777.0, 558.2, 0.4,   0.6,   775.5, 666.9, 338.0, 447.5, 11.6,
                                      556.0, 228.1, 995.8, 887.6, 120.2, 0.3,   0.3,   556.8, 339.1,
                                      887.2, 999.0, 779.0, 11.1,  118.3, 229.2, 669.1, 448.9, 0.5};
const std::vector<double> kNorrisY = {0.1,   338.8, 118.1, 888.0, 9.2,   228.1, 668.5, 998.5, 449.1,
                                      778.9, 559.2, 0.3,   0.1,   778.1, 668.8, 339.3, 448.9, 10.8,
                                      557.7, 228.3, 998.0, 888.8, 119.6, 0.3,   0.6,   557.6, 339.3,
                                      888.0, 998.5, 778.9, 10.2,  117.6, 228.9, 668.4, 449.2, 0.2};
const std::vector<double> kPontiusY = {
    0.11019, 0.21956, 0.32949, 0.43899, 0.54803, 0.65694, 0.76562, 0.87487, 0.98292, 1.09146,
    1.20001, 1.30822, 1.41599, 1.52399, 1.63194, 1.73947, 1.84646, 1.95392, 2.06128, 2.16844,
    0.11052, 0.22018, 0.32939, 0.43886, 0.54798, 0.65739, 0.76596, 0.87474, 0.98300, 1.09150,
    1.20004, 1.30818, 1.41613, 1.52408, 1.63159, 1.73965, 1.84696, 1.95445, 2.06177, 2.16829};
const std::vector<double> kFilipX = {
    -6.860120914, -4.324130045, -4.358625055, -4.358426747, -6.955852379, -6.661145254, -6.355462942,
    -6.118102026, -7.115148017, -6.815308569, -6.519993057, -6.204119983, -5.853871964, -6.109523091,
    -5.79832982,  -5.482672118, -5.171791386, -4.851705903, -4.517126416, -4.143573228, -3.709075441,
    -3.499489089, -6.300769497, -5.953504836, -5.642065153, -5.031376979, -4.680685696, -4.329846955,
    -3.928486195, -8.56735134,  -8.363211311, -8.107682739, -7.823908741, -7.522878745, -7.218819279,
    -6.920818754, -6.628932138, -6.323946875, -5.991399828, -8.781464495, -8.663140179, -8.473531488,
    -8.247337057, -7.971428747, -7.676129393, -7.352812702, -7.072065318, -6.774174009, -6.478861916,
    -6.159517513, -6.835647144, -6.53165267,  -6.224098421, -5.910094889, -5.598599459, -5.290645224,
    -4.974284616, -4.64454848,  -4.290560426, -3.885055584, -3.408378962, -3.13200249,  -8.726767166,
    -8.66695597,  -8.511026475, -8.165388579, -7.886056648, -7.588043762, -7.283412422, -6.995678626,
    -6.691862621, -6.392544977, -6.067374056, -6.684029655, -6.378719832, -6.065855188, -5.752272167,
    -5.132414673, -4.811352704, -4.098269308, -3.66174277,  -3.2644011};
const std::vector<double> kFilipY = {
    0.8116, 0.9072, 0.9052, 0.9039, 0.8053, 0.8377, 0.8667, 0.8809, 0.7975, 0.8162, 0.8515, 0.8766,
    0.8885, 0.8859, 0.8959, 0.8913, 0.8959, 0.8971, 0.9021, 0.909,  0.9139, 0.9199, 0.8692, 0.8872,
    0.89,   0.891,  0.8977, 0.9035, 0.9078, 0.7675, 0.7705, 0.7713, 0.7736, 0.7775, 0.7841, 0.7971,
    0.8329, 0.8641, 0.8804, 0.7668, 0.7633, 0.7678, 0.7697, 0.77,   0.7749, 0.7796, 0.7897, 0.8131,
    0.8498, 0.8741, 0.8061, 0.846,  0.8751, 0.8856, 0.8919, 0.8934, 0.894,  0.8957, 0.9047, 0.9129,
    0.9209, 0.9219, 0.7739, 0.7681, 0.7665, 0.7703, 0.7702, 0.7761, 0.7809, 0.7961, 0.8253, 0.8602,
    0.8809, 0.8301, 0.8664, 0.8834, 0.8898, 0.8964, 0.8963, 0.9074, 0.9119, 0.9228};
// Deflator, gross national product, unemployed, armed forces, population, year; employed.
const Columns kLongleyX = {
    {83, 88.5, 88.2, 89.5, 96.2, 98.1, 99, 100, 101.2, 104.6, 108.4, 110.8, 112.6, 114.2, 115.7, 116.9},
    {234289, 259426, 258054, 284599, 328975, 346999, 365385, 363112, 397469, 419180, 442769, 444546, 482704,
     502601, 518173, 554894},
    {2356, 2325, 3682, 3351, 2099, 1932, 1870, 3578, 2904, 2822, 2936, 4681, 3813, 3931, 4806, 4007},
    {1590, 1456, 1616, 1650, 3099, 3594, 3547, 3350, 3048, 2857, 2798, 2637, 2552, 2514, 2572, 2827},
    {107608, 108632, 109773, 110929, 112075, 113270, 115094, 116219, 117388, 118734, 120445, 121950, 123366,
     125368, 127852, 130081},
    {1947, 1948, 1949, 1950, 1951, 1952, 1953, 1954, 1955, 1956, 1957, 1958, 1959, 1960, 1961, 1962}};
const std::vector<double> kLongleyY = {60323, 61122, 60171, 61187, 63221, 63639, 64989, 63761,
                                       66019, 67857, 68169, 66513, 68655, 69564, 69331, 70551};
const std::vector<double> kWamplerNoise = {759,   -2048, 2048,  -2048, 2523,  -2048, 2048,
                                           -2048, 1838,  -2048, 2048,  -2048, 1838,  -2048,
                                           2048,  -2048, 2523,  -2048, 2048,  -2048, 759};

// x, x², ... by multiplication, which rounds alike everywhere.
Columns powers(const std::vector<double>& x, std::size_t degree) {
  Columns columns(1, x);
  while (columns.size() < degree) {
    std::vector<double> next = columns.back();
    std::ranges::transform(next, x, next.begin(), std::multiplies<>());
    columns.push_back(std::move(next));
  }
  return columns;
}

std::vector<double> countFrom(double first, double step, std::size_t count) {
  std::vector<double> values(count);
  for (std::size_t i = 0; i < count; ++i) {
    values[i] = first + step * static_cast<double>(i);
  }
  return values;
}

// 1 + (x/b) + ... + (x/b)^5 for x = 0 to 20, with noise.
std::vector<double> wampler(double base, double noise) {
  std::vector<double> y;
  for (std::size_t i = 0; i < kWamplerNoise.size(); ++i) {
    double sum = 0;
    for (int k = 5; k >= 0; --k) {
      // Whole numbers as far as they go: the sum rounds once.
      sum += std::pow(static_cast<double>(i), k) * std::pow(base, 5 - k);
    }
    y.push_back(sum / std::pow(base, 5) + noise * kWamplerNoise[i]);
  }
  return y;
}

struct Certified {
  std::string name;
  Columns x;
  std::vector<double> y;
  std::vector<double> values;  // constant first
  std::vector<double> errors;  // empty: the fit is exact
  double residualDeviation, rSquare;
  double digits = 12;  // at least
};

std::vector<Certified> certifiedSets() {
  std::vector<double> pontiusX = countFrom(150000, 150000, 20);
  pontiusX.insert(pontiusX.end(), pontiusX.begin(), pontiusX.begin() + 20);
  const Columns wamplerX = powers(countFrom(0, 1, 21), 5);
  const std::vector<double> ones(6, 1);
  const std::vector<double> wamplerErrors = {2152.32624678170, 2363.55173469681, 779.343524331583,
                                             101.475507550350, 5.64566512170752, 0.112324854679312};
  const auto times = [](std::vector<double> values, double factor) {
    for (double& value : values) {
      value *= factor;
    }
    return values;
  };
  return {
      {"Norris",
       {kNorrisX},
       kNorrisY,
       {-0.262323073774029, 1.00211681802045},
       {0.232818234301152, 0.429796848199937E-03},
       0.884796396144373,
       0.999993745883712},
      {"Pontius",
       powers(pontiusX, 2),
       kPontiusY,
       {0.673565789473684E-03, 0.732059160401003E-06, -0.316081871345029E-14},
       {0.107938612033077E-03, 0.157817399981659E-09, 0.486652849992036E-16},
       0.205177424076185e-3,
       0.999999900178537},
      {"Longley",
       kLongleyX,
       kLongleyY,
       {-3482258.63459582, 15.0618722713733, -0.358191792925910E-01, -2.02022980381683, -1.03322686717359,
        -0.511041056535807E-01, 1829.15146461355},
       {890420.383607373, 84.9149257747669, 0.334910077722432E-01, 0.488399681651699, 0.214274163161675,
        0.226073200069370, 455.478499142212},
       304.854073561965,
       0.995479004577296},
      {"Wampler1", wamplerX, wampler(1, 0), ones, {}, 0, 1},
      {"Wampler2", wamplerX, wampler(10, 0), {1, 0.1, 0.01, 0.001, 0.0001, 0.00001}, {}, 0, 1},
      {"Wampler3", wamplerX, wampler(1, 1), ones, wamplerErrors, 2360.14502379268, 0.999995559025820},
      {"Wampler4", wamplerX, wampler(1, 100), ones, times(wamplerErrors, 100), 236014.502379268,
       0.957478440825662},
      {"Wampler5", wamplerX, wampler(1, 10000), ones, times(wamplerErrors, 10000), 23601450.2379268,
       0.224668921574940e-2},
      // The tenth power of a number with ten digits does not fit a double. Rounding the powers
      // moves the exact solution in the eighth digit; that solution, in rational arithmetic, is below.
      {"Filip (certified)",
       powers(kFilipX, 10),
       kFilipY,
       {-1467.48961422980, -2772.17959193342, -2316.37108160893, -1127.97394098372, -354.478233703349,
        -75.1242017393757, -10.8753180355343, -1.06221498588947, -0.670191154593408E-01,
        -0.246781078275479E-02, -0.402962525080404E-04},
       {298.084530995537, 559.779865474950, 466.477572127796, 227.204274477751, 71.6478660875927,
        15.2897178747400, 2.23691159816033, 0.221624321934227, 0.142363763154724E-01, 0.535617408889821E-03,
        0.896632837373868E-05},
       0.334801051324544e-2,
       0.996727416185620,
       7.5},
      {"Filip (as rounded)",
       powers(kFilipX, 10),
       kFilipY,
       {-1.4674896313887714e+03, -2.7721796242619316e+03, -2.3163711086093590e+03, -1.1279739541497518e+03,
        -3.5447823785523082e+02, -7.5124202624351739e+01, -1.0875318164699452e+01, -1.0622149986404843e+00,
        -6.7019116274456239e-02, -2.4678108132356481e-03, -4.0296253014568073e-05},
       {2.9808453045643307e+02, 5.5977986445819670e+02, 4.6647757127377008e+02, 2.2720427405685010e+02,
        7.1647865952748433e+01, 1.5289717845386996e+01, 2.2369115937623500e+00, 2.2162432148628003e-01,
        1.4236376285786287e-02, 5.3561740773385704e-04, 8.9663283536543455e-06},
       3.3480105018462085e-03,
       9.9672741620790495e-01},
  };
}

double logRelativeError(double actual, double certified) {
  if (actual == certified) return 15;
  const double size = certified == 0 ? 1 : std::abs(certified);
  return std::min(15.0, -std::log10(std::abs(actual - certified) / size));
}

TEST(LinearRegression, AgreesWithCertifiedValues) {
  std::puts("digits that agree    coefficients  std. errors  residual s.d.  R square");
  for (const Certified& set : certifiedSets()) {
    SCOPED_TRACE(set.name);
    std::vector<std::span<const double>> variables(set.x.begin(), set.x.end());
    variables.emplace_back(set.y);
    const CrossProducts products = computeCrossProducts(variables);
    SelectionBlock block;
    for (std::size_t i = 0; i < set.x.size(); ++i) {
      block.variables.push_back(i);
    }
    const LinearSystem system(products, set.x.size(), block.variables);
    const Selection selection = selectPredictors(system, {&block, 1}, {.tolerance = 0});
    ASSERT_EQ(selection.steps.size(), 1U);
    const LinearFit& fit = selection.steps.front().fit;
    ASSERT_EQ(fit.predictors, block.variables);
    const bool exact = set.errors.empty();
    EXPECT_EQ(fit.exact, exact);
    double values = 15;
    double errors = 15;
    for (std::size_t i = 0; i < set.values.size(); ++i) {
      const Coefficient& coefficient = i == 0 ? *fit.constant : fit.coefficients[i - 1];
      values = std::min(values, logRelativeError(coefficient.value.value(), set.values[i]));
      const double error = exact ? 0 : set.errors[i];
      errors = std::min(errors, logRelativeError(*coefficient.standardError, error));
    }
    const double deviation = logRelativeError(*fit.standardErrorEstimate, set.residualDeviation);
    const double rSquare = logRelativeError(1 - fit.residualShare, set.rSquare);
    std::printf("%-20s %12.1f %12.1f %14.1f %9.1f\n", set.name.c_str(), values, errors, deviation, rSquare);
    EXPECT_GE(std::min({values, errors, deviation, rSquare}), set.digits);

    // The residuals come from the cases, not from the cross-products.
    const ResidualSummary residuals = summarizeResiduals(variables, products, set.x.size(), fit, false);
    const double fromCases =
        *residuals.residual.deviation *
        std::sqrt(static_cast<double>(fit.totalFreedom) / static_cast<double>(fit.residualFreedom));
    EXPECT_GE(logRelativeError(fromCases, *fit.standardErrorEstimate), 11);
  }
}

}  // namespace
}  // namespace genostat::standalone
