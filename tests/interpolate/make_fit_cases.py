#!/usr/bin/env python3
"""Writes fit_cases.hpp beside itself: points, and the exact least-squares solutions for them.

    tests/interpolate/make_fit_cases.py

The points are doubles; the normal equations over them are solved with fractions, so that the only rounding is the one
of the result to the nearest double. Reference data sets of NIST (StRD, linear regression) are fitted as decimal
fractions, too, and must give the certified values, 15 digits, before anything is written.
"""

import math
import pathlib
import random
from fractions import Fraction

HEADER = pathlib.Path(__file__).with_name("fit_cases.hpp")

NORRIS = """
0.1 0.2; 338.8 337.4; 118.1 118.2; 888.0 884.6; 9.2 10.1; 228.1 226.5; 668.5 666.3; 998.5 996.3; 449.1 448.6;
778.9 777.0; 559.2 558.2; 0.3 0.4; 0.1 0.6; 778.1 775.5; 668.8 666.9; 339.3 338.0; 448.9 447.5; 10.8 11.6; 557.7 556.0;
228.3 228.1; 998.0 995.8; 888.8 887.6; 119.6 120.2; 0.3 0.3; 0.6 0.3; 557.6 556.8; 339.3 339.1; 888.0 887.2; 998.5 999.0;
778.9 779.0; 10.2 11.1; 117.6 118.3; 228.9 229.2; 668.4 669.1; 449.2 448.9; 0.2 0.5
"""
PONTIUS = """
.11019 150000; .21956 300000; .32949 450000; .43899 600000; .54803 750000; .65694 900000; .76562 1050000;
.87487 1200000; .98292 1350000; 1.09146 1500000; 1.20001 1650000; 1.30822 1800000; 1.41599 1950000; 1.52399 2100000;
1.63194 2250000; 1.73947 2400000; 1.84646 2550000; 1.95392 2700000; 2.06128 2850000; 2.16844 3000000; .11052 150000;
.22018 300000; .32939 450000; .43886 600000; .54798 750000; .65739 900000; .76596 1050000; .87474 1200000;
.98300 1350000; 1.09150 1500000; 1.20004 1650000; 1.30818 1800000; 1.41613 1950000; 1.52408 2100000; 1.63159 2250000;
1.73965 2400000; 1.84696 2550000; 1.95445 2700000; 2.06177 2850000; 2.16829 3000000
"""
FILIP = """
0.8116 -6.860120914; 0.9072 -4.324130045; 0.9052 -4.358625055; 0.9039 -4.358426747; 0.8053 -6.955852379;
0.8377 -6.661145254; 0.8667 -6.355462942; 0.8809 -6.118102026; 0.7975 -7.115148017; 0.8162 -6.815308569;
0.8515 -6.519993057; 0.8766 -6.204119983; 0.8885 -5.853871964; 0.8859 -6.109523091; 0.8959 -5.79832982;
0.8913 -5.482672118; 0.8959 -5.171791386; 0.8971 -4.851705903; 0.9021 -4.517126416; 0.909 -4.143573228;
0.9139 -3.709075441; 0.9199 -3.499489089; 0.8692 -6.300769497; 0.8872 -5.953504836; 0.89 -5.642065153;
0.891 -5.031376979; 0.8977 -4.680685696; 0.9035 -4.329846955; 0.9078 -3.928486195; 0.7675 -8.56735134;
0.7705 -8.363211311; 0.7713 -8.107682739; 0.7736 -7.823908741; 0.7775 -7.522878745; 0.7841 -7.218819279;
0.7971 -6.920818754; 0.8329 -6.628932138; 0.8641 -6.323946875; 0.8804 -5.991399828; 0.7668 -8.781464495;
0.7633 -8.663140179; 0.7678 -8.473531488; 0.7697 -8.247337057; 0.77 -7.971428747; 0.7749 -7.676129393;
0.7796 -7.352812702; 0.7897 -7.072065318; 0.8131 -6.774174009; 0.8498 -6.478861916; 0.8741 -6.159517513;
0.8061 -6.835647144; 0.846 -6.53165267; 0.8751 -6.224098421; 0.8856 -5.910094889; 0.8919 -5.598599459;
0.8934 -5.290645224; 0.894 -4.974284616; 0.8957 -4.64454848; 0.9047 -4.290560426; 0.9129 -3.885055584;
0.9209 -3.408378962; 0.9219 -3.13200249; 0.7739 -8.726767166; 0.7681 -8.66695597; 0.7665 -8.511026475;
0.7703 -8.165388579; 0.7702 -7.886056648; 0.7761 -7.588043762; 0.7809 -7.283412422; 0.7961 -6.995678626;
0.8253 -6.691862621; 0.8602 -6.392544977; 0.8809 -6.067374056; 0.8301 -6.684029655; 0.8664 -6.378719832;
0.8834 -6.065855188; 0.8898 -5.752272167; 0.8964 -5.132414673; 0.8963 -4.811352704; 0.9074 -4.098269308;
0.9119 -3.66174277; 0.9228 -3.2644011
"""
WAMPLER_NOISE = [759, -2048, 2048, -2048, 2523, -2048, 2048, -2048, 1838, -2048, 2048, -2048, 1838, -2048, 2048, -2048,
                 2523, -2048, 2048, -2048, 759]


def decimal_points(text):
    """[(x, y)] of lines "y x"."""
    pairs = [entry.split() for entry in text.replace("\n", " ").split(";")]
    return [(x, y) for y, x in pairs]


def wampler(noise):
    return [(str(x), str(sum(x**k for k in range(6)) + noise * WAMPLER_NOISE[x])) for x in range(21)]


def wampler2():
    values = [sum(Fraction(x, 10)**k for k in range(6)) for x in range(21)]
    return [(str(x), f"{float(value):.5f}") for x, value in enumerate(values)]


# Name, order, points as texts, certified coefficients, certified residual standard deviation (divisor N - M).
CERTIFIED = [
    ("Norris", 1, decimal_points(NORRIS), "-0.262323073774029 1.00211681802045", "0.884796396144373"),
    ("Pontius", 2, decimal_points(PONTIUS), "0.673565789473684E-03 0.732059160401003E-06 -0.316081871345029E-14",
     "0.205177424076185E-03"),
    ("Filip", 10, decimal_points(FILIP),
     "-1467.48961422980 -2772.17959193342 -2316.37108160893 -1127.97394098372 -354.478233703349 -75.1242017393757 "
     "-10.8753180355343 -1.06221498588947 -0.670191154593408E-01 -0.246781078275479E-02 -0.402962525080404E-04",
     "0.334801051324544E-02"),
    ("Wampler1", 5, wampler(0), "1 1 1 1 1 1", "0"),
    ("Wampler2", 5, wampler2(), "1 0.1 0.01 0.001 0.0001 0.00001", "0"),
    ("Wampler3", 5, wampler(1), "1 1 1 1 1 1", "2360.14502379268"),
    ("Wampler4", 5, wampler(100), "1 1 1 1 1 1", "236014.502379268"),
    ("Wampler5", 5, wampler(10000), "1 1 1 1 1 1", "23601450.2379268"),
]


def solve(matrix, right):
    """The solution of a regular system, with fractions."""
    rows = [list(row) + [value] for row, value in zip(matrix, right)]
    size = len(rows)
    for k in range(size):
        pivot = next(i for i in range(k, size) if rows[i][k] != 0)
        rows[k], rows[pivot] = rows[pivot], rows[k]
        for i in range(k + 1, size):
            factor = rows[i][k] / rows[k][k]
            rows[i] = [a - factor * b for a, b in zip(rows[i], rows[k])]
    solution = [Fraction(0)] * size
    for k in reversed(range(size)):
        known = sum(rows[k][j] * solution[j] for j in range(k + 1, size))
        solution[k] = (rows[k][size] - known) / rows[k][k]
    return solution


def least_squares(rows, values):
    """Coefficients and sum of squared residuals of the fit of `values` by the columns of `rows`."""
    terms = range(len(rows[0]))
    matrix = [[sum(row[i] * row[j] for row in rows) for j in terms] for i in terms]
    right = [sum(row[i] * value for row, value in zip(rows, values)) for i in terms]
    coefficients = solve(matrix, right)
    residuals = [value - sum(c * t for c, t in zip(coefficients, row)) for row, value in zip(rows, values)]
    return coefficients, sum(r * r for r in residuals)


def nearest_double(value):
    """Fractions convert with one rounding, to the nearest, also where the result is subnormal."""
    return float(value)


def root(value):
    """The double nearest to the square root of a fraction."""
    if value == 0:
        return 0.0
    scale = 4**600
    digits = math.isqrt(int(value * scale * scale))
    return nearest_double(Fraction(2 * digits + 1, 2 * scale))


def fit_curve(xs, ys, order):
    return least_squares([[x**k for k in range(order + 1)] for x in xs], ys)


def powers_of(order):
    """(power of y, power of x) of the terms of a surface."""
    return [(i, j) for i in range(order + 1) for j in range(order + 1 - i)]


def fit_surface(xs, ys, zs, order):
    rows = [[y**i * x**j for i, j in powers_of(order)] for x, y in zip(xs, ys)]
    return least_squares(rows, zs)


def agree(exact_value, certified):
    """Whether they differ by no more than the rounding to 15 digits."""
    return abs(exact_value - certified) <= abs(certified) * Fraction(6, 10**15)


def check_certified():
    for name, order, points, coefficients, deviation in CERTIFIED:
        xs, ys = ([Fraction(point[axis]) for point in points] for axis in (0, 1))
        fitted, squares = fit_curve(xs, ys, order)
        for ours, theirs in zip(fitted, coefficients.split(), strict=True):
            assert agree(ours, Fraction(theirs)), (name, float(ours), theirs)
        ours = root(squares / (len(xs) - order - 1))
        assert agree(Fraction(ours), Fraction(deviation)), (name, ours, deviation)


def curve_cases():
    """Name, order, xs, ys: doubles."""
    for name, order, points, *_ in CERTIFIED:
        yield name, order, [float(x) for x, _ in points], [float(y) for _, y in points]
    yield "FourPoints", 2, [1.0, 2.0, 3.0, 4.0], [0.0, 5.0, 15.0, 80.0]
    yield "ExactParabola", 2, [-1.5, 0.25, 4.0], [1 + 2 * x + 3 * x * x for x in (-1.5, 0.25, 4.0)]
    yield "Tent", 1, [0.0, 1.0, 2.0], [0.0, 1.0, 0.0]
    yield "DoubledPoints", 2, [3.0, 1.0, 3.0, 2.0, 1.0], [5.0, 2.0, 7.0, 0.0, 1.0]
    chance = random.Random(21)
    years = [2000.0 + i / 4 for i in range(60)]
    yield "Years", 3, years, [chance.gauss(20.0, 3.0) for _ in years]
    kelvins = [chance.uniform(273.15, 323.15) for _ in range(45)]
    yield "Thermocouple", 5, kelvins, [0.039 * (t - 273.15) + chance.gauss(0.0, 1e-4) for t in kelvins]
    large = [chance.uniform(-1e300, 1e300) for _ in range(20)]
    yield "LargeX", 1, large, [chance.uniform(-1.0, 1.0) for _ in large]
    small = [chance.uniform(-1e-300, 1e-300) for _ in range(20)]
    yield "SmallX", 1, small, [chance.uniform(-1e-300, 1e-300) for _ in small]
    unit = [i / 16 for i in range(33)]
    yield "LargeY", 3, unit, [chance.uniform(-1e307, 1e307) for _ in unit]
    yield "SmallY", 2, unit, [chance.uniform(-1e-310, 1e-310) for _ in unit]
    yield "Neighbours", 2, [0.0, 1.0, 1.0 + 2.0**-52], [0.0, 1.0, 1.0 + 2.0**-50]
    yield "MoreThanABlock", 7, [chance.uniform(-2.0, 5.0) for _ in range(100)], [chance.gauss(0, 1) for _ in range(100)]


def surface_cases():
    """Name, order, xs, ys, zs: doubles."""
    chance = random.Random(22)
    grid = [(float(x), float(y)) for x in range(-5, 6) for y in range(-5, 6)]
    xs, ys = [x for x, _ in grid], [y for _, y in grid]
    waves = [-math.cos(3 * math.pi * x / 10) * math.cos(math.pi * y / 10) for x, y in grid]
    yield "Waves", 3, xs, ys, waves
    yield "Plane", 1, [0.0, 1.0, 0.0, 2.0], [0.0, 0.0, 1.0, 3.0], [2.0, 5.0, 7.0, 23.0]
    yield "Saddle", 2, xs, ys, [1 + x * y for x, y in grid]
    yield "Mean", 0, [1.0, 2.0, 3.0], [0.0, 0.0, 0.0], [1.0, 2.0, 4.0]
    for name, order, count in (("Scattered2", 2, 25), ("Scattered3", 3, 40), ("Scattered5", 5, 60)):
        points = [(chance.uniform(-3, 7), chance.uniform(0.1, 0.9), chance.gauss(0, 1)) for _ in range(count)]
        yield name, order, *([p[axis] for p in points] for axis in range(3))
    points = [(chance.uniform(273.15, 323.15), chance.uniform(95e3, 105e3), chance.gauss(40, 2)) for _ in range(50)]
    yield "TemperaturePressure", 3, *([p[axis] for p in points] for axis in range(3))
    points = [(chance.uniform(-1e300, 1e300), chance.uniform(-1e-300, 1e-300), chance.gauss(0, 1)) for _ in range(30)]
    yield "LargeAndSmall", 1, *([p[axis] for p in points] for axis in range(3))
    points = [(x, 2 * x + chance.uniform(-1e-6, 1e-6), chance.gauss(0, 1)) for x in (chance.random() for _ in range(30))]
    yield "NearlyInLine", 2, *([p[axis] for p in points] for axis in range(3))
    points = [(float(i % 3), float(i // 3), chance.gauss(0, 1)) for i in range(6)] * 3
    yield "Repeated", 1, *([p[axis] for p in points] for axis in range(3))


def power_cases():
    """Base, exponent: ties between two doubles, subnormal results, powers near the limits, and ordinary ones."""
    yield from ((3.0, k) for k in range(30, 45))  # 3^34 has 54 bits
    yield from ((-5.0, k) for k in range(21, 27))
    yield from ((float(2**27 + 1), 2), (float(2**27 + 3), 2), (float(2**18 + 1), 3), (float(2**53 - 1), 2))
    yield from ((0.1, k) for k in range(305, 326))
    yield from ((10.0, k) for k in range(300, 309))
    yield from ((-0.5, k) for k in (1022, 1023, 1073, 1074, 1075, 1076))
    yield from ((0.75 * 2.0**-537, 2), (1.5 * 2.0**-538, 2), (2.0**-537 * (1 + 2.0**-52), 2))
    yield from ((1.0 + 2.0**-52, k) for k in (2, 3, 1000, 20000))
    yield from ((1.0 + 2.0**-26, k) for k in (2, 3, 5))
    yield from ((1e-300, 1), (1e300, 1), (1e-200, 2), (5e-324, 1), (1.7976931348623157e308, 1), (1e-160, 2), (2.5, 0))
    chance = random.Random(23)
    yield from ((chance.uniform(-4.0, 4.0), chance.randrange(500)) for _ in range(150))


def exact(values):
    return [Fraction(value) for value in values]


def literals(values):
    return "{" + ", ".join(float(value).hex() for value in values) + "}"


def case_lines(name, order, arrays, deviation):
    """The definitions of the arrays, and the element of the table of cases that refers to them."""
    definitions = [f"inline constexpr double k{name}{suffix}[] = {literals(values)};" for suffix, values in arrays.items()]
    references = ", ".join(f"k{name}{suffix}" for suffix in arrays)
    return definitions, f'    {{"{name}", {order}, {references}, {deviation.hex()}}},'


def curve_lines(name, order, xs, ys):
    coefficients, squares = fit_curve(exact(xs), exact(ys), order)
    deviation = root(squares / (len(xs) - 1))
    return case_lines(name, order, {"Xs": xs, "Ys": ys, "CurveCoefficients": map(nearest_double, coefficients)}, deviation)


def surface_lines(name, order, xs, ys, zs):
    coefficients, squares = fit_surface(exact(xs), exact(ys), exact(zs), order)
    square = [[0.0] * (order + 1) for _ in range(order + 1)]
    for (i, j), value in zip(powers_of(order), coefficients):
        square[i][j] = nearest_double(value)
    rms = root(squares / len(xs))
    return case_lines(name, order, {"Xs": xs, "Ys": ys, "Zs": zs, "SurfaceCoefficients": sum(square, [])}, rms)


def power_line(base, exponent):
    return f"    {{{base.hex()}, {exponent}, {nearest_double(Fraction(base)**exponent).hex()}}},"


def table_of(kind, cases):
    """All arrays, and behind them the table of cases."""
    definitions = sum((case[0] for case in cases), [])
    return definitions + ["", f"inline constexpr {kind}Case k{kind}Cases[] = {{"] + [case[1] for case in cases] + ["};", ""]


def main():
    check_certified()
    lines = ["// Written by make_fit_cases.py; not to be edited.", "#pragma once", "", "#include <span>", "",
             "// clang-format off", "namespace vorquill21::test {", "",
             "/// Points and the exact least-squares solution for them, each number rounded once.",
             "struct CurveCase {", "  const char* name;", "  int order;", "  std::span<const double> xs, ys;",
             "  std::span<const double> coefficients;", "  double stdDev;", "};", "",
             "/// Coefficients lie as in an array (0 To order, 0 To order), the second index running fastest.",
             "struct SurfaceCase {", "  const char* name;", "  int order;", "  std::span<const double> xs, ys, zs;",
             "  std::span<const double> coefficients;", "  double rms;", "};", "",
             "/// The double nearest to base^exponent.",
             "struct PowerCase {", "  double base;", "  int exponent;", "  double power;", "};", ""]
    lines += table_of("Curve", [curve_lines(*case) for case in curve_cases()])
    lines += table_of("Surface", [surface_lines(*case) for case in surface_cases()])
    lines += table_of("Power", [([], power_line(*case)) for case in power_cases()])
    lines += ["}  // namespace vorquill21::test", ""]
    HEADER.write_text("\n".join(lines), encoding="utf-8")


if __name__ == "__main__":
    main()
