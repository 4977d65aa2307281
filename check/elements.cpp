// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/elements.h"

#include <QLatin1String>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace
{

// One element a line: symbol, weight, the range of weights, most abundant isotope and its mass.
// clang-format off
constexpr std::array elements{
    Element{"H", 1.008, 1.00784, 1.00811, 1, 1.00783},
    Element{"He", 4.002602, 4.0026, 4.002604, 4, 4.00260},
    Element{"Li", 6.94, 6.938, 6.997, 7, 7.01600},
    Element{"Be", 9.0121831, 9.01218, 9.0122, 9, 9.01218},
    Element{"B", 10.81, 10.806, 10.821, 11, 11.00931},
    Element{"C", 12.011, 12.0096, 12.0116, 12, 12.00000},
    Element{"N", 14.007, 14.00643, 14.00728, 14, 14.00307},
    Element{"O", 15.999, 15.999, 15.99977, 16, 15.99491},
    Element{"F", 18.998403162, 18.9984, 18.998403167, 19, 18.99840},
    Element{"Ne", 20.1797, 20.179, 20.183, 20, 19.99244},
    Element{"Na", 22.98976928, 22.989768, 22.9898, 23, 22.98977},
    Element{"Mg", 24.305, 24.304, 24.312, 24, 23.98504},
    Element{"Al", 26.9815384, 26.9815, 26.98154, 27, 26.98154},
    Element{"Si", 28.085, 28.084, 28.086, 28, 27.97693},
    Element{"P", 30.973761998, 30.97376, 30.9738, 31, 30.97376},
    Element{"S", 32.06, 32.059, 32.076, 32, 31.97207},
    Element{"Cl", 35.45, 35.446, 35.457, 35, 34.96885},
    Element{"Ar", 39.95, 39.792, 39.963, 40, 39.96238},
    Element{"K", 39.0983, 39.098, 39.102, 39, 38.96371},
    Element{"Ca", 40.078, 40.074, 40.082, 40, 39.96259},
    Element{"Sc", 44.955907, 44.9559, 44.956, 45, 44.95591},
    Element{"Ti", 47.867, 47.866, 47.9, 48, 47.94794},
    Element{"V", 50.9415, 50.9414, 50.942, 51, 50.94396},
    Element{"Cr", 51.9961, 51.9955, 51.9967, 52, 51.94050},
    Element{"Mn", 54.938043, 54.938, 54.93805, 55, 54.93804},
    Element{"Fe", 55.845, 55.843, 55.847, 56, 55.93494},
    Element{"Co", 58.933194, 58.933191, 58.9332, 59, 58.93319},
    Element{"Ni", 58.6934, 58.69, 58.71, 58, 57.93534},
    Element{"Cu", 63.546, 63.54, 63.549, 63, 62.92960},
    Element{"Zn", 65.38, 65.36, 65.409, 64, 63.92914},
    Element{"Ga", 69.723, 69.72, 69.724, 69, 68.92557},
    Element{"Ge", 72.630, 72.59, 72.64, 74, 73.92118},
    Element{"As", 74.921595, 74.921589, 74.921601, 75, 74.92159},
    Element{"Se", 78.971, 78.96, 78.979, 80, 79.91652},
    Element{"Br", 79.904, 79.901, 79.909, 79, 78.91834},
    Element{"Kr", 83.798, 83.796, 83.8, 84, 83.91150},
    Element{"Rb", 85.4678, 85.4675, 85.47, 85, 84.91179},
    Element{"Sr", 87.62, 87.61, 87.63, 88, 87.90561},
    Element{"Y", 88.905838, 88.905, 88.9059, 89, 88.90584},
    Element{"Zr", 91.224, 91.22, 91.226, 90, 89.90470},
    Element{"Nb", 92.90637, 92.906, 92.9064, 93, 92.90637},
    Element{"Mo", 95.95, 95.94, 95.96, 98, 97.90540},
    Element{"Tc", 0, 0, 0, 0, 0},
    Element{"Ru", 101.07, 101.05, 101.09, 102, 101.90434},
    Element{"Rh", 102.90549, 102.905, 102.90551, 103, 102.90549},
    Element{"Pd", 106.42, 106.4, 106.43, 106, 105.90348},
    Element{"Ag", 107.8682, 107.868, 107.87, 107, 106.90509},
    Element{"Cd", 112.414, 112.4, 112.418, 114, 113.90336},
    Element{"In", 114.818, 114.817, 114.82, 115, 114.90388},
    Element{"Sn", 118.710, 118.69, 118.717, 120, 119.90220},
    Element{"Sb", 121.760, 121.75, 121.761, 121, 120.90381},
    Element{"Te", 127.60, 127.57, 127.63, 130, 129.90622},
    Element{"I", 126.90447, 126.9044, 126.9045, 127, 126.90447},
    Element{"Xe", 131.293, 131.287, 131.3, 132, 131.90416},
    Element{"Cs", 132.90545196, 132.905, 132.90545202, 133, 132.90545},
    Element{"Ba", 137.327, 137.32, 137.34, 138, 137.90525},
    Element{"La", 138.90547, 138.9054, 138.91, 139, 138.90636},
    Element{"Ce", 140.116, 140.115, 140.12, 140, 139.90544},
    Element{"Pr", 140.90766, 140.907, 140.9077, 141, 140.90766},
    Element{"Nd", 144.242, 144.239, 144.245, 142, 141.90773},
    Element{"Pm", 0, 0, 0, 0, 0},
    Element{"Sm", 150.36, 150.34, 150.4, 152, 151.91974},
    Element{"Eu", 151.964, 151.96, 151.965, 153, 152.92124},
    Element{"Gd", 157.25, 157.22, 157.28, 158, 157.92411},
    Element{"Tb", 158.925354, 158.924, 158.9254, 159, 158.92535},
    Element{"Dy", 162.500, 162.499, 162.501, 164, 163.92918},
    Element{"Ho", 164.930329, 164.93, 164.9304, 165, 164.93033},
    Element{"Er", 167.259, 167.256, 167.262, 166, 165.93030},
    Element{"Tm", 168.934219, 168.934, 168.934224, 169, 168.93422},
    Element{"Yb", 173.045, 173.035, 173.055, 174, 173.93887},
    Element{"Lu", 174.9668, 174.9667, 174.97, 175, 174.94078},
    Element{"Hf", 178.486, 178.48, 178.492, 180, 179.94656},
    Element{"Ta", 180.94788, 180.94786, 180.948, 181, 180.94800},
    Element{"W", 183.84, 183.83, 183.85, 184, 183.95093},
    Element{"Re", 186.207, 186.2, 186.208, 187, 186.95575},
    Element{"Os", 190.23, 190.2, 190.26, 192, 191.96148},
    Element{"Ir", 192.217, 192.2, 192.22, 193, 192.96292},
    Element{"Pt", 195.084, 195.075, 195.093, 195, 194.96479},
    Element{"Au", 196.966570, 196.9665, 196.967, 197, 196.96657},
    Element{"Hg", 200.592, 200.589, 200.595, 202, 201.97064},
    Element{"Tl", 204.38, 204.37, 204.385, 205, 204.97443},
    Element{"Pb", 207.2, 206.14, 207.94, 208, 207.97665},
    Element{"Bi", 208.98040, 208.98, 208.98041, 209, 208.98040},
    Element{"Po", 0, 0, 0, 0, 0}, Element{"At", 0, 0, 0, 0, 0}, Element{"Rn", 0, 0, 0, 0, 0},
    Element{"Fr", 0, 0, 0, 0, 0}, Element{"Ra", 0, 0, 0, 0, 0}, Element{"Ac", 0, 0, 0, 0, 0},
    Element{"Th", 232.0377, 232.0373, 232.0381, 232, 232.03805},
    Element{"Pa", 231.03588, 231.03587, 231.0359, 231, 231.03588},
    Element{"U", 238.02891, 238.02888, 238.03, 238, 238.05079},
    Element{"Np", 0, 0, 0, 0, 0}, Element{"Pu", 0, 0, 0, 0, 0}, Element{"Am", 0, 0, 0, 0, 0},
    Element{"Cm", 0, 0, 0, 0, 0}, Element{"Bk", 0, 0, 0, 0, 0}, Element{"Cf", 0, 0, 0, 0, 0},
    Element{"Es", 0, 0, 0, 0, 0}, Element{"Fm", 0, 0, 0, 0, 0}, Element{"Md", 0, 0, 0, 0, 0},
    Element{"No", 0, 0, 0, 0, 0}, Element{"Lr", 0, 0, 0, 0, 0}, Element{"Rf", 0, 0, 0, 0, 0},
    Element{"Db", 0, 0, 0, 0, 0}, Element{"Sg", 0, 0, 0, 0, 0}, Element{"Bh", 0, 0, 0, 0, 0},
    Element{"Hs", 0, 0, 0, 0, 0}, Element{"Mt", 0, 0, 0, 0, 0}, Element{"Ds", 0, 0, 0, 0, 0},
    Element{"Rg", 0, 0, 0, 0, 0}, Element{"Cn", 0, 0, 0, 0, 0}, Element{"Nh", 0, 0, 0, 0, 0},
    Element{"Fl", 0, 0, 0, 0, 0}, Element{"Mc", 0, 0, 0, 0, 0}, Element{"Lv", 0, 0, 0, 0, 0},
    Element{"Ts", 0, 0, 0, 0, 0}, Element{"Og", 0, 0, 0, 0, 0},
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

bool precedesInHill(int left, int right, bool hasCarbon)
{
    const auto rank = [&](int number) {
        const int first = hasCarbon && number == 6 ? 0 : hasCarbon && number == 1 ? 1 : 2;
        return std::pair(first, QLatin1String(elementOf(number).symbol));
    };
    return rank(left) < rank(right);
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
