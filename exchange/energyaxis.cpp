// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/energyaxis.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <array>

namespace
{

// A name of a quantity; an underscore stands for a blank.
struct Name {
    EnergyAxis::Quantity quantity;
    const char *plural;
    const char *words;  // nothing else means these
    const char *shorts; // in headings only
    bool tellsInText;   // a sentence with these words is about the energies
};

// The first match counts, so names of other quantities stand before those of photon energies.
constexpr std::array names{
    Name{EnergyAxis::NoPhotonEnergy, "kinetic energies",
         "kineti|kinéti|cin[eéè]ti|кинетич|electron energ|elektronenenergie"
         "|动能",
         "[ept]?ke|e ?kin|kin", true},
    Name{EnergyAxis::NoPhotonEnergy, "binding energies",
         "\\bbinding|bindungs|de liaison|de enlace|di legame|энергия связи|结合能",
         "e?be|e ?b|e ?bind", true},
    Name{EnergyAxis::NoPhotonEnergy, "ionisation energies",
         "\\bionis(ation|ierung)|\\bionization|ionización", "i[ep]", false},
    Name{EnergyAxis::NoPhotonEnergy, "energies of another kind",
         "shift|verschiebung|\\bloss|verlust|detuning|offset|relative|\\bdelta|δ|difference"
         "|internal|innere|excess|collision|retard|\\bpass\\b|resolution|auflösung|fwhm|\\bstep",
         "", false},
    Name{EnergyAxis::NoPhotonEnergy, "wavelengths in air", "\\bair\\b|\\bluft\\b", "", false},
    Name{EnergyAxis::Wavelength, "wavelengths",
         "wave ?length|wellenl(ä|ae)nge|longueur|longitud de onda|lunghezza d.onda|\\blambda\\b"
         "|длина волны|波长|波長",
         "λ", true},
    Name{EnergyAxis::WaveNumber, "wave numbers",
         "wave ?number|wellenzahl|nombre d.onde|n[uú]mero d(e |.)onda|волновое|波数", "", true},
    Name{EnergyAxis::NoPhotonEnergy, "frequencies", "frequen|fréquen|frecuen|frequenz|частота", "",
         false},
    Name{EnergyAxis::NoPhotonEnergy, "intensities",
         "\\bintens|\\bcounts?\\b|\\bsignal\\b|\\byield\\b|absorban|transmitt|ausbeute|интенсивн"
         "|强度",
         "i|y|cps", false},
    Name{EnergyAxis::NoPhotonEnergy, "something else",
         "\\btime\\b|\\bzeit\\b|\\btemps\\b|\\btiempo\\b|\\bmass(e|es)?\\b|m/"
         "z|\\bangle\\b|\\bwinkel\\b"
         "|temperatur|\\bchannels?\\b|\\bkanal\\b|voltage|spannung",
         "", false},
    Name{EnergyAxis::Energy, "photon energies", "photon|fot[oó]n|фотон|光子|\\bh ?ν\\b",
         "h ?v|h ?nu", false},
    Name{EnergyAxis::Energy, "energies", "energ|énerg|энерг|能量", "e|x", false},
};

QRegularExpression patternOf(const QString &text)
{
    return QRegularExpression(text, QRegularExpression::UseUnicodePropertiesOption
                                        | QRegularExpression::CaseInsensitiveOption);
}

QString withoutUnderscores(QString text)
{
    return text.replace(QLatin1Char('_'), QLatin1Char(' ')).simplified();
}

// The patterns of all names, with or without their short forms.
QList<QRegularExpression> patterns(bool withShorts)
{
    QList<QRegularExpression> list;
    for (const Name &name : names) {
        QString text = QString::fromUtf8(name.words);
        if (withShorts && *name.shorts)
            text += QStringLiteral("|\\b(%1)\\b").arg(QString::fromUtf8(name.shorts));
        list.append(patternOf(text));
    }
    return list;
}

const Name *nameIn(const QString &text, bool isHeading)
{
    static const QList<QRegularExpression> inHeadings = patterns(true);
    static const QList<QRegularExpression> inText = patterns(false);
    const QList<QRegularExpression> &list = isHeading ? inHeadings : inText;
    const QString plain = withoutUnderscores(text);
    const auto it = std::find_if(list.begin(), list.end(), [&](const QRegularExpression &pattern) {
        return pattern.match(plain).hasMatch();
    });
    return it != list.end() ? &names[static_cast<std::size_t>(it - list.begin())] : nullptr;
}

// Known units that are not converted.
bool isForeignUnit(const QString &text)
{
    static const QRegularExpression foreign(
        QStringLiteral("^([kmM]?J|K|[kMGTP]?Hz|M[eE][vV]|mev|mEV|kcal(/|[ "
                       ".·]?)mol(-1)?|[Rr]y|[Rr]ydbergs?|[Jj]oules?"
                       "|[Kk]elvin|a\\.u\\.|[cmp]m|[mnuμp]?m-1|1/([mnuμp]?m|Å|A))$"));
    return foreign.match(text).hasMatch();
}

// The context of a text.
struct Context {
    bool isHeading; // else in a sentence
    bool isWavelength;
};

struct NamedUnits {
    QList<EnergyUnit> known;
    QStringList texts; // of all, as they are written
};

// The text up to the end, the closing bracket or a separator, longest first.
QStringList unitCandidates(const QString &rest)
{
    static const QRegularExpression bracket(QStringLiteral("[)\\]}]"));
    static const QRegularExpression separator(QStringLiteral("[,;:)\\]}]|\\s"));
    QStringList candidates{rest.trimmed()};
    for (const QRegularExpression &end : {bracket, separator}) {
        if (const qsizetype at = rest.trimmed().indexOf(end); at > 0)
            candidates.append(rest.trimmed().left(at).trimmed());
    }
    return candidates;
}

void addUnit(NamedUnits &units, const QString &text, std::optional<EnergyUnit> unit)
{
    if (unit && units.known.contains(*unit))
        return;
    if (unit)
        units.known.append(*unit);
    units.texts.append(text);
}

// Where a unit can begin: at the start and after a separator of words.
struct Start {
    qsizetype at;
    bool isMarked; // behind a slash or a bracket, where nothing but a unit stands
};

QList<Start> startsIn(const QString &text)
{
    static const QString marks = QStringLiteral("/([{");
    static const QString separators = QStringLiteral(",;:_=");
    QList<Start> starts{{0, false}};
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (marks.contains(text[i]))
            starts.append({i + 1, true});
        else if (separators.contains(text[i]) || text[i].isSpace())
            starts.append({i + 1, false});
    }
    return starts;
}

// The unit with this spelling, if it is possible here. A single letter is a unit of wavelengths
// only, and a short word of another language is none in a sentence.
std::optional<EnergyUnit> unitAt(const Start &start, const QString &text, const Context &context)
{
    static const QStringList words{QStringLiteral("um"), QStringLiteral("eh")};
    const bool isLetter = text.size() == 1 && text.at(0).unicode() < 0x80;
    if (isLetter && !(start.isMarked && context.isWavelength))
        return std::nullopt;
    if (!context.isHeading && !start.isMarked && words.contains(text.toLower()))
        return std::nullopt;
    return energyUnitNamed(text.toUtf8());
}

NamedUnits unitsIn(const QString &text, const Context &context)
{
    NamedUnits units;
    QString unknown;
    qsizetype end = 0; // of the last one
    for (const Start &start : startsIn(text)) {
        if (start.at < end)
            continue;
        const QStringList candidates = unitCandidates(text.sliced(start.at));
        const auto it =
            std::find_if(candidates.begin(), candidates.end(), [&](const QString &candidate) {
                return unitAt(start, candidate, context) || isForeignUnit(candidate);
            });
        if (it != candidates.end()) {
            addUnit(units, *it, unitAt(start, *it, context));
            end = text.indexOf(*it, start.at) + it->size();
        } else if (start.isMarked && unknown.isEmpty()) {
            unknown = candidates.last();
        }
    }
    if (units.texts.isEmpty() && !unknown.isEmpty())
        units.texts.append(unknown);
    return units;
}

EnergyAxis axisOf(const QByteArray &bytes, bool isHeading)
{
    const QString text = QString::fromUtf8(bytes).normalized(QString::NormalizationForm_KC);
    const Name *name = nameIn(text, isHeading);
    EnergyAxis axis;
    if (name) {
        axis.quantity = name->quantity;
        axis.plural = name->plural;
        if (!isHeading && !name->tellsInText && name->quantity != EnergyAxis::Energy)
            axis.quantity = EnergyAxis::Unknown;
    }
    const NamedUnits units = unitsIn(text, {isHeading, axis.quantity == EnergyAxis::Wavelength});
    axis.unitText = units.texts.join(QStringLiteral(", ")).toUtf8();
    if (units.texts.size() == 1 && units.known.size() == 1)
        axis.unit = units.known.first();
    return axis;
}

bool fits(EnergyAxis::Quantity quantity, EnergyUnit unit)
{
    if (quantity == EnergyAxis::Wavelength)
        return isWavelength(unit);
    return quantity != EnergyAxis::WaveNumber || unit == EnergyUnit::WaveNumber;
}

} // namespace

EnergyAxis energyAxisOfHeading(const QByteArray &heading)
{
    return axisOf(heading, true);
}

EnergyAxis energyAxisOfLine(const QByteArray &line)
{
    static const QRegularExpression intensities = patternOf(QStringLiteral(
        "\\b(intens|counts?\\b|signal\\b|yield\\b|absorban|transmitt|i\\b|y\\b|cps\\b)"));
    const QString text = withoutUnderscores(QString::fromUtf8(line));
    const qsizetype end = text.indexOf(intensities);
    const QString first = end > 0 ? text.left(end) : text;
    const EnergyAxis axis = axisOf(first.toUtf8(), true);
    return axis.quantity == EnergyAxis::Unknown ? EnergyAxis() : axis;
}

EnergyAxis energyAxisInText(const QByteArray &text)
{
    return axisOf(text, false);
}

bool mayTellOfEnergies(const EnergyAxis &axis, const EnergyChoice &choice)
{
    if (axis.quantity == EnergyAxis::NoPhotonEnergy)
        return !choice.arePhotonEnergies;
    const bool isOther =
        axis.quantity != EnergyAxis::Unknown && axis.quantity != EnergyAxis::Energy;
    return !choice.unit && (isOther || (axis.unit && *axis.unit != EnergyUnit::ElectronVolt));
}

std::variant<std::optional<EnergyUnit>, EnergyDoubt>
unitToRead(const EnergyAxis &axis, const QByteArray &text, const EnergyChoice &choice)
{
    const QByteArray quoted = '"' + text + '"';
    const bool isNone = axis.quantity == EnergyAxis::NoPhotonEnergy;
    if (isNone && !choice.arePhotonEnergies)
        return EnergyDoubt{quoted + " names " + axis.plural + ", not photon energies",
                           Remedy::ConfirmPhotons};
    if (choice.unit)
        return choice.unit;
    const bool needsUnit =
        axis.quantity == EnergyAxis::Wavelength || axis.quantity == EnergyAxis::WaveNumber;
    if (axis.unitText.isEmpty() && needsUnit)
        return EnergyDoubt{quoted + " names " + axis.plural + " without a unit", Remedy::NameUnit};
    if (!axis.unitText.isEmpty() && (!axis.unit || !fits(axis.quantity, *axis.unit)))
        return EnergyDoubt{
            quoted + " does not name a unit that can be converted to eV: " + axis.unitText,
            Remedy::NameUnit};
    return axis.unit;
}

std::optional<qsizetype> convertEnergies(QList<QPointF> &points, EnergyUnit unit)
{
    if (unit == EnergyUnit::ElectronVolt)
        return std::nullopt;
    for (qsizetype i = 0; i < points.size(); ++i) {
        const std::optional<double> energy = inElectronVolts(points[i].x(), unit);
        if (!energy)
            return i;
        points[i].setX(*energy);
    }
    std::stable_sort(points.begin(), points.end(), [](const QPointF &left, const QPointF &right) {
        return left.x() < right.x();
    });
    return std::nullopt;
}

QByteArray conversionNote(EnergyUnit unit)
{
    return "the energies are converted from " + nameOf(unit)
           + " to eV, and the points sorted by energy";
}
