// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/inchi.h"

#include "check/inchilayers.h"

#include <QRegularExpression>
#include <QStringList>

#include <optional>

namespace
{

constexpr int hydrogen = 1;

[[noreturn]] void fail(const QString &message)
{
    throw InchiLayerError{message};
}

// The layers by their letters, without the isotopic and later ones, which repeat these letters.
std::map<QChar, QString> mainLayers(const QStringList &layers)
{
    static const QString order(QStringLiteral("chqpbtms"));
    static const QString later(QStringLiteral("ifr"));
    std::map<QChar, QString> found;
    qsizetype last = -1;
    bool inLater = false;
    for (const QString &layer : layers) {
        const QChar letter = layer.isEmpty() ? QChar() : layer.front();
        if (later.contains(letter) && !letter.isNull()) {
            inLater = true;
            continue;
        }
        const qsizetype place = letter.isNull() ? -1 : order.indexOf(letter);
        if (place < 0 && !(inLater && letter == QLatin1Char('o')))
            fail(letter.isNull() ? QStringLiteral("it has an empty layer")
                                 : QStringLiteral("there is no layer /%1").arg(letter));
        if (inLater)
            continue;
        if (place <= last)
            fail(QStringLiteral("the layer /%1 is out of order").arg(letter));
        last = place;
        found.emplace(letter, layer.sliced(1));
    }
    return found;
}

int signedNumber(const QString &text, QChar layer)
{
    static const QRegularExpression form(QStringLiteral("^[+-]\\d{1,4}$"));
    if (!form.match(text).hasMatch())
        fail(QStringLiteral("\"%1\" is no number of charges in the layer /%2").arg(text, layer));
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
            fail(QStringLiteral("it does not begin with \"InChI=1S/\""));
        static const QRegularExpression foreign(QStringLiteral("[^A-Za-z0-9+\\-().,;*/?=]"));
        if (const auto other = foreign.match(text); other.hasMatch())
            fail(QStringLiteral("\"%1\" does not occur in InChI").arg(other.captured()));
        QStringList layers = text.sliced(match.capturedLength()).split(QLatin1Char('/'));
        const bool hasFormula = !layers.first().isEmpty() && !layers.first().front().isLower();
        if (hasFormula)
            m_components = inchiFormula(layers.takeFirst());
        m_layers = mainLayers(layers);
        if (!hasFormula && !m_layers.contains(QLatin1Char('p')))
            fail(QStringLiteral("it has no formula"));
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
        if (const auto protons = m_layers.find(QLatin1Char('p')); protons != m_layers.end()) {
            const int number = signedNumber(protons->second, QLatin1Char('p'));
            inchi.charge += number;
            inchi.atoms[hydrogen] += number;
            if (inchi.atoms[hydrogen] < 0)
                fail(QStringLiteral("the layer /p takes more protons than there are"));
        }
        std::erase_if(inchi.atoms, [](const auto &atom) { return atom.second == 0; });
        return inchi;
    }

private:
    // The layer's texts, one a component; empty ones if there is no such layer.
    QStringList partsOf(char letter) const
    {
        const auto layer = m_layers.find(QLatin1Char(letter));
        const auto count = static_cast<qsizetype>(m_components.size());
        if (layer == m_layers.end())
            return QStringList(count);
        QStringList parts = inchiParts(layer->second);
        if (parts.size() != count)
            fail(QStringLiteral("the layer /%1 has %2 parts for %3 components")
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
                fail(QStringLiteral("hydrogen atoms in its layers: %1, in its formula: %2")
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

    void checkForm(char letter, const QRegularExpression &form) const
    {
        const auto layer = m_layers.find(QLatin1Char(letter));
        if (layer != m_layers.end() && !form.match(layer->second).hasMatch())
            fail(QStringLiteral("\"%1\" cannot stand in the layer /%2")
                     .arg(layer->second, QString(QLatin1Char(letter))));
    }

    std::vector<InchiComponent> m_components;
    std::map<QChar, QString> m_layers;
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
