// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/inchi.h"

#include "check/inchiisotopes.h"
#include "check/inchilayers.h"
#include "check/inchiscanner.h"

#include <QRegularExpression>
#include <QStringList>

#include <optional>

namespace
{

constexpr int hydrogen = 1;

// The layers by letter.
struct Layers {
    std::map<QChar, QString> main; // without the isotopic and later ones, which repeat letters
    QString isotopes;              // the layer /i
    QString isotopicHydrogens;     // the layer /h behind it
};

Layers layersOf(const QStringList &layers, bool isStandard)
{
    static const QString order(QStringLiteral("chqpbtms"));
    static const QString later(QStringLiteral("ifr"));
    Layers found;
    qsizetype last = -1;
    QChar part; // the later part that the layer belongs to
    for (const QString &layer : layers) {
        const QChar letter = layer.isEmpty() ? QChar() : layer.front();
        const bool startsPart = !letter.isNull() && later.contains(letter);
        const bool isMoved = !part.isNull() && letter == QLatin1Char('o');
        const qsizetype place = letter.isNull() ? -1 : order.indexOf(letter);
        if (place < 0 && !startsPart && !isMoved)
            failInchi(letter.isNull() ? QStringLiteral("it has an empty layer")
                                      : QStringLiteral("there is no layer /%1").arg(letter));
        if (isStandard && (isMoved || (startsPart && letter != QLatin1Char('i'))))
            failInchi(QStringLiteral("a standard InChI has no layer /%1").arg(letter));
        if (startsPart) {
            // Layers behind /f and /r describe the same atoms again.
            if (letter == QLatin1Char('i') && part.isNull())
                found.isotopes = layer.sliced(1);
            part = letter;
        } else if (part.isNull()) {
            if (place <= last)
                failInchi(QStringLiteral("the layer /%1 is out of order").arg(letter));
            last = place;
            found.main.emplace(letter, layer.sliced(1));
        } else if (part == QLatin1Char('i') && letter == QLatin1Char('h')
                   && found.isotopicHydrogens.isEmpty()) {
            found.isotopicHydrogens = layer.sliced(1);
        }
    }
    return found;
}

int signedNumber(const QString &text, QChar layer)
{
    static const QRegularExpression form(QStringLiteral("^[+-][1-9]\\d{0,3}$"));
    if (!form.match(text).hasMatch())
        failInchi(
            QStringLiteral("\"%1\" is no number of charges in the layer /%2").arg(text, layer));
    return text.toInt();
}

class InchiReader
{
public:
    explicit InchiReader(const QString &text)
    {
        static const QRegularExpression prefix(QStringLiteral("^InChI=1S?/"));
        const QRegularExpressionMatch match = prefix.match(text);
        if (!match.hasMatch())
            failInchi(QStringLiteral("it does not begin with \"InChI=1S/\""));
        static const QRegularExpression foreign(QStringLiteral("[^A-Za-z0-9+\\-().,;*/?=]"));
        if (const auto other = foreign.match(text); other.hasMatch())
            failInchi(QStringLiteral("\"%1\" does not occur in InChI").arg(other.captured()));
        QStringList layers = text.sliced(match.capturedLength()).split(QLatin1Char('/'));
        const bool hasFormula = !layers.first().isEmpty() && !layers.first().front().isLower();
        if (hasFormula)
            m_components = inchiFormula(layers.takeFirst());
        m_layers = layersOf(layers, match.capturedView().contains(QLatin1Char('S')));
        if (!hasFormula && !m_layers.main.contains(QLatin1Char('p')))
            failInchi(QStringLiteral("it has no formula"));
    }

    Inchi read()
    {
        Inchi inchi;
        takeAllConnections();
        checkHydrogens();
        checkStereo();
        for (const InchiComponent &component : m_components) {
            for (const auto &[number, count] : component.atoms)
                inchi.atoms[number] += count;
        }
        for (const QString &part : partsOf('q')) {
            if (!part.isEmpty())
                inchi.charge += signedNumber(part, QLatin1Char('q'));
        }
        if (const auto protons = m_layers.main.find(QLatin1Char('p'));
            protons != m_layers.main.end()) {
            const int number = signedNumber(protons->second, QLatin1Char('p'));
            inchi.charge += number;
            inchi.atoms[hydrogen] += number;
            if (inchi.atoms[hydrogen] < 0)
                failInchi(QStringLiteral("the layer /p takes more protons than there are"));
        }
        std::erase_if(inchi.atoms, [](const auto &atom) { return atom.second == 0; });
        takeIsotopes(inchi);
        return inchi;
    }

private:
    // The layer's texts, one for each component; empty ones if the layer is missing.
    QStringList partsOf(char letter) const
    {
        const auto layer = m_layers.main.find(QLatin1Char(letter));
        const auto count = static_cast<qsizetype>(m_components.size());
        if (layer == m_layers.main.end())
            return QStringList(count);
        QStringList parts = inchiParts(layer->second);
        if (parts.size() != count)
            failInchi(QStringLiteral("the layer /%1 has %2 parts for %3 components")
                          .arg(QLatin1Char(letter))
                          .arg(parts.size())
                          .arg(count));
        return parts;
    }

    void takeAllConnections()
    {
        const QStringList parts = partsOf('c');
        for (qsizetype i = 0; i < parts.size(); ++i)
            takeConnections(m_components[static_cast<std::size_t>(i)], parts[i]);
    }

    void checkHydrogens() const
    {
        const QStringList parts = partsOf('h');
        for (qsizetype i = 0; i < parts.size(); ++i) {
            const InchiComponent &component = m_components[static_cast<std::size_t>(i)];
            const int found = hydrogensOf(component, parts[i]);
            if (found != component.hydrogens())
                failInchi(QStringLiteral("hydrogen atoms in its layers: %1, in its formula: %2")
                              .arg(found)
                              .arg(component.hydrogens()));
        }
    }

    void checkStereo() const
    {
        const QStringList bonds = partsOf('b');
        const QStringList atoms = partsOf('t');
        for (qsizetype i = 0; i < bonds.size(); ++i) {
            const InchiComponent &component = m_components[static_cast<std::size_t>(i)];
            checkStereoBonds(component, bonds[i]);
            checkStereoAtoms(component, atoms[i]);
        }
        static const QRegularExpression inverted(QStringLiteral("^[01.]+$"));
        static const QRegularExpression kind(QStringLiteral("^[123]$"));
        checkForm('m', inverted);
        checkForm('s', kind);
    }

    void takeIsotopes(Inchi &inchi) const
    {
        const QStringList parts = inchiParts(m_layers.isotopes);
        if (parts.size() > qsizetype(m_components.size()) && parts.size() > 1)
            failInchi(QStringLiteral("the layer /i has %1 parts for %2 components")
                          .arg(parts.size())
                          .arg(m_components.size()));
        for (qsizetype i = 0; i < parts.size() && i < qsizetype(m_components.size()); ++i)
            addIsotopes(m_components[static_cast<std::size_t>(i)], parts[i], inchi.isotopes);
        for (const QString &part : inchiParts(m_layers.isotopicHydrogens))
            addIsotopicHydrogens(part, inchi.isotopes);
    }

    void checkForm(char letter, const QRegularExpression &form) const
    {
        const auto layer = m_layers.main.find(QLatin1Char(letter));
        if (layer != m_layers.main.end() && !form.match(layer->second).hasMatch())
            failInchi(QStringLiteral("\"%1\" cannot stand in the layer /%2")
                          .arg(layer->second, QString(QLatin1Char(letter))));
    }

    std::vector<InchiComponent> m_components;
    Layers m_layers;
};

} // namespace

std::variant<Inchi, InchiError> parseInchi(const QString &text)
{
    try {
        return InchiReader(text).read();
    } catch (const InchiLayerError &error) {
        return InchiError{error.message};
    }
}
