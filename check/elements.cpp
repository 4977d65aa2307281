// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/elements.h"

#include <QLatin1String>

#include <algorithm>
#include <array>
#include <cstddef>

namespace
{

// One element a line: symbol, weight, its uncertainty, most abundant isotope and its mass.
// clang-format off
constexpr std::array elements{
    Element{"H", 1.008, 0.000135, 1, 1.00783},
    Element{"He", 4.002602, 0.000002, 4, 4.00260},
    Element{"Li", 6.94, 0.0295, 7, 7.01600},
    Element{"Be", 9.0121831, 0.0000005, 9, 9.01218},
    Element{"B", 10.81, 0.0075, 11, 11.00931},
    Element{"C", 12.011, 0.001, 12, 12.00000},
    Element{"N", 14.007, 0.000425, 14, 14.00307},
    Element{"O", 15.999, 0.00037, 16, 15.99491},
    Element{"F", 18.998403162, 0.000000005, 19, 18.99840},
    Element{"Ne", 20.1797, 0.0006, 20, 19.99244},
    Element{"Na", 22.98976928, 0.00000002, 23, 22.98977},
    Element{"Mg", 24.305, 0.0015, 24, 23.98504},
    Element{"Al", 26.9815384, 0.0000003, 27, 26.98154},
    Element{"Si", 28.085, 0.001, 28, 27.97693},
    Element{"P", 30.973761998, 0.000000005, 31, 30.97376},
    Element{"S", 32.06, 0.0085, 32, 31.97207},
    Element{"Cl", 35.45, 0.0055, 35, 34.96885},
    Element{"Ar", 39.95, 0.0855, 40, 39.96238},
    Element{"K", 39.0983, 0.0001, 39, 38.96371},
    Element{"Ca", 40.078, 0.004, 40, 39.96259},
    Element{"Sc", 44.955907, 0.000004, 45, 44.95591},
    Element{"Ti", 47.867, 0.001, 48, 47.94794},
    Element{"V", 50.9415, 0.0001, 51, 50.94396},
    Element{"Cr", 51.9961, 0.0006, 52, 51.94050},
    Element{"Mn", 54.938043, 0.000002, 55, 54.93804},
    Element{"Fe", 55.845, 0.002, 56, 55.93494},
    Element{"Co", 58.933194, 0.000003, 59, 58.93319},
    Element{"Ni", 58.6934, 0.0004, 58, 57.93534},
    Element{"Cu", 63.546, 0.003, 63, 62.92960},
    Element{"Zn", 65.38, 0.02, 64, 63.92914},
    Element{"Ga", 69.723, 0.001, 69, 68.92557},
    Element{"Ge", 72.630, 0.008, 74, 73.92118},
    Element{"As", 74.921595, 0.000006, 75, 74.92159},
    Element{"Se", 78.971, 0.008, 80, 79.91652},
    Element{"Br", 79.904, 0.003, 79, 78.91834},
    Element{"Kr", 83.798, 0.002, 84, 83.91150},
    Element{"Rb", 85.4678, 0.0003, 85, 84.91179},
    Element{"Sr", 87.62, 0.01, 88, 87.90561},
    Element{"Y", 88.905838, 0.000002, 89, 88.90584},
    Element{"Zr", 91.224, 0.002, 90, 89.90470},
    Element{"Nb", 92.90637, 0.00001, 93, 92.90637},
    Element{"Mo", 95.95, 0.01, 98, 97.90540},
    Element{"Tc", 0, 0, 0, 0},
    Element{"Ru", 101.07, 0.02, 102, 101.90434},
    Element{"Rh", 102.90549, 0.00002, 103, 102.90549},
    Element{"Pd", 106.42, 0.01, 106, 105.90348},
    Element{"Ag", 107.8682, 0.0002, 107, 106.90509},
    Element{"Cd", 112.414, 0.004, 114, 113.90336},
    Element{"In", 114.818, 0.001, 115, 114.90388},
    Element{"Sn", 118.710, 0.007, 120, 119.90220},
    Element{"Sb", 121.760, 0.001, 121, 120.90381},
    Element{"Te", 127.60, 0.03, 130, 129.90622},
    Element{"I", 126.90447, 0.00003, 127, 126.90447},
    Element{"Xe", 131.293, 0.006, 132, 131.90416},
    Element{"Cs", 132.90545196, 0.00000006, 133, 132.90545},
    Element{"Ba", 137.327, 0.007, 138, 137.90525},
    Element{"La", 138.90547, 0.00007, 139, 138.90636},
    Element{"Ce", 140.116, 0.001, 140, 139.90544},
    Element{"Pr", 140.90766, 0.00001, 141, 140.90766},
    Element{"Nd", 144.242, 0.003, 142, 141.90773},
    Element{"Pm", 0, 0, 0, 0},
    Element{"Sm", 150.36, 0.02, 152, 151.91974},
    Element{"Eu", 151.964, 0.001, 153, 152.92124},
    Element{"Gd", 157.25, 0.03, 158, 157.92411},
    Element{"Tb", 158.925354, 0.000007, 159, 158.92535},
    Element{"Dy", 162.500, 0.001, 164, 163.92918},
    Element{"Ho", 164.930329, 0.000005, 165, 164.93033},
    Element{"Er", 167.259, 0.003, 166, 165.93030},
    Element{"Tm", 168.934219, 0.000005, 169, 168.93422},
    Element{"Yb", 173.045, 0.010, 174, 173.93887},
    Element{"Lu", 174.9668, 0.0001, 175, 174.94078},
    Element{"Hf", 178.486, 0.006, 180, 179.94656},
    Element{"Ta", 180.94788, 0.00002, 181, 180.94800},
    Element{"W", 183.84, 0.01, 184, 183.95093},
    Element{"Re", 186.207, 0.001, 187, 186.95575},
    Element{"Os", 190.23, 0.03, 192, 191.96148},
    Element{"Ir", 192.217, 0.002, 193, 192.96292},
    Element{"Pt", 195.084, 0.009, 195, 194.96479},
    Element{"Au", 196.966570, 0.000004, 197, 196.96657},
    Element{"Hg", 200.592, 0.003, 202, 201.97064},
    Element{"Tl", 204.38, 0.005, 205, 204.97443},
    Element{"Pb", 207.2, 1.06, 208, 207.97665},
    Element{"Bi", 208.98040, 0.00001, 209, 208.98040},
    Element{"Po", 0, 0, 0, 0}, Element{"At", 0, 0, 0, 0}, Element{"Rn", 0, 0, 0, 0},
    Element{"Fr", 0, 0, 0, 0}, Element{"Ra", 0, 0, 0, 0}, Element{"Ac", 0, 0, 0, 0},
    Element{"Th", 232.0377, 0.0004, 232, 232.03805},
    Element{"Pa", 231.03588, 0.00001, 231, 231.03588},
    Element{"U", 238.02891, 0.00003, 238, 238.05079},
    Element{"Np", 0, 0, 0, 0}, Element{"Pu", 0, 0, 0, 0}, Element{"Am", 0, 0, 0, 0},
    Element{"Cm", 0, 0, 0, 0}, Element{"Bk", 0, 0, 0, 0}, Element{"Cf", 0, 0, 0, 0},
    Element{"Es", 0, 0, 0, 0}, Element{"Fm", 0, 0, 0, 0}, Element{"Md", 0, 0, 0, 0},
    Element{"No", 0, 0, 0, 0}, Element{"Lr", 0, 0, 0, 0}, Element{"Rf", 0, 0, 0, 0},
    Element{"Db", 0, 0, 0, 0}, Element{"Sg", 0, 0, 0, 0}, Element{"Bh", 0, 0, 0, 0},
    Element{"Hs", 0, 0, 0, 0}, Element{"Mt", 0, 0, 0, 0}, Element{"Ds", 0, 0, 0, 0},
    Element{"Rg", 0, 0, 0, 0}, Element{"Cn", 0, 0, 0, 0}, Element{"Nh", 0, 0, 0, 0},
    Element{"Fl", 0, 0, 0, 0}, Element{"Mc", 0, 0, 0, 0}, Element{"Lv", 0, 0, 0, 0},
    Element{"Ts", 0, 0, 0, 0}, Element{"Og", 0, 0, 0, 0},
};
// clang-format on
static_assert(elements.size() == 118);

struct Nuclide {
    int number;
    int massNumber;
    double mass;
};

// Less abundant isotopes that are used as labels.
constexpr std::array nuclides{
    Nuclide{1, 2, 2.01410},    Nuclide{1, 3, 3.01605},    Nuclide{2, 3, 3.01603},
    Nuclide{3, 6, 6.01512},    Nuclide{5, 10, 10.01294},  Nuclide{6, 13, 13.00335},
    Nuclide{6, 14, 14.00324},  Nuclide{7, 15, 15.00011},  Nuclide{8, 17, 16.99913},
    Nuclide{8, 18, 17.99916},  Nuclide{14, 29, 28.97649}, Nuclide{14, 30, 29.97377},
    Nuclide{16, 33, 32.97146}, Nuclide{16, 34, 33.96787}, Nuclide{17, 37, 36.96590},
    Nuclide{35, 81, 80.91629},
};

} // namespace

std::optional<int> atomicNumber(QStringView symbol)
{
    const auto *const found =
        std::find_if(elements.begin(), elements.end(), [&](const Element &element) {
            return symbol == QLatin1String(element.symbol);
        });
    if (found == elements.end())
        return std::nullopt;
    return static_cast<int>(found - elements.begin()) + 1;
}

const Element &elementOf(int number)
{
    return elements.at(static_cast<std::size_t>(number) - 1);
}

NuclideMass nuclideMass(int number, int massNumber)
{
    constexpr double rounding = 0.00001;
    constexpr double largestDefect = 0.12;
    const Element &element = elementOf(number);
    if (element.mainIsotope == massNumber)
        return {element.mainMass, rounding};
    for (const Nuclide &nuclide : nuclides) {
        if (nuclide.number == number && nuclide.massNumber == massNumber)
            return {nuclide.mass, rounding};
    }
    return {double(massNumber), largestDefect};
}
