// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/numbertext.h"
#include "check/savecheck.h"
#include "species/jsonfile.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/spectrummodel.h"
#include "spectrum/spectrumobject.h"

#include <QByteArray>

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace
{

QByteArrayView bytesOf(QLatin1String text)
{
    return {text.data(), text.size()};
}

constexpr std::string_view viewOf(QLatin1String text)
{
    return {text.data(), static_cast<std::size_t>(text.size())};
}

// Walks a text along the layout that the editor writes.
class LayoutWalker
{
public:
    explicit LayoutWalker(const JsonText &text) : m_bytes(text.bytes()) {}

    bool walk(const JsonValue &root)
    {
        return takeValue(root, 0) && take("\n") && m_at == m_bytes.size();
    }

private:
    bool take(QByteArrayView expected)
    {
        if (!m_bytes.sliced(m_at).startsWith(expected))
            return false;
        m_at += expected.size();
        return true;
    }

    bool takeIndent(int level)
    {
        static const QByteArray blanks(64, ' ');
        constexpr int width = 4;
        return level * width <= blanks.size() && take(QByteArrayView(blanks).first(level * width));
    }

    bool takeRaw(QByteArrayView raw)
    {
        m_at += raw.size();
        return true;
    }

    bool takeValue(const JsonValue &value, int level)
    {
        if (value.begin() != m_at)
            return false;
        switch (value.kind()) {
        case JsonKind::Object:
        case JsonKind::Array:
            return takeContainer(value, level);
        case JsonKind::Number:
            return formOf(value.raw()).isPlain && takeRaw(value.raw());
        case JsonKind::String:
            // Escapes may be written in several ways.
            return !value.raw().contains('\\') && takeRaw(value.raw());
        case JsonKind::Null:
        case JsonKind::Bool:
            return takeRaw(value.raw());
        }
        Q_UNREACHABLE();
    }

    bool takeContainer(const JsonValue &container, int level)
    {
        const bool isObject = container.isObject();
        if (container.count() == 0 || !take(isObject ? "{\n" : "[\n"))
            return false;
        QByteArrayView last;
        for (JsonValue child = container.firstChild(); child; child = child.nextSibling()) {
            if (child.begin() != container.firstChild().begin() && !take(",\n"))
                return false;
            if (!takeIndent(level + 1))
                return false;
            if (isObject) {
                const QByteArrayView key = child.rawKey();
                if (child.keyBegin() != m_at || key.contains('\\') || key.compare(last) <= 0
                    || !isAscii(key) || !takeRaw(key) || !take(": "))
                    return false;
                last = key;
            }
            if (!takeValue(child, level + 1))
                return false;
        }
        return take("\n") && takeIndent(level) && take(isObject ? "}" : "]");
    }

    static bool isAscii(QByteArrayView bytes)
    {
        return std::all_of(bytes.begin(), bytes.end(),
                           [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    }

    QByteArrayView m_bytes;
    qsizetype m_at = 0;
};

// Whether the object has exactly these keys and no other, each once; the layout has been walked.
bool hasExactly(const JsonValue &object, std::vector<std::string_view> keys)
{
    std::sort(keys.begin(), keys.end());
    if (object.count() != qsizetype(keys.size()))
        return false;
    auto key = keys.begin();
    for (JsonValue member = object.firstChild(); member; member = member.nextSibling()) {
        const QByteArrayView name = member.keyUtf8();
        if (std::string_view(name.data(), std::size_t(name.size())) != *key++)
            return false;
    }
    return true;
}

bool staysAsText(const JsonValue &value, bool isCleaned)
{
    if (!value || !value.isString())
        return false;
    if (!isCleaned || !value.utf8().contains('<'))
        return true;
    const QString text = value.string();
    return cleanHtmlContent(text) == text;
}

// A picture's text, if the picture has been found to decode.
bool staysAsPicture(const JsonValue &value)
{
    const QByteArray text = value.utf8().toByteArray();
    const QByteArray bytes = QByteArray::fromBase64(text);
    return value.isString() && bytes.startsWith("\x89PNG\r\n\x1a\n") && bytes.toBase64() == text;
}

bool staysAsSpecies(const JsonValue &species)
{
    std::vector<std::string_view> keys;
    const QLatin1String pictureKey = speciesFields[speciesImageColumn].key;
    const JsonValue picture = species.member(pictureKey);
    for (const SpeciesField &field : speciesFields) {
        if (field.kind != SpeciesFieldKind::Image || picture)
            keys.push_back(viewOf(field.key));
    }
    if (!species.isObject() || !hasExactly(species, std::move(keys)))
        return false;
    return std::all_of(speciesFields.begin(), speciesFields.end(), [&](const SpeciesField &field) {
        const JsonValue value = species.member(field.key);
        switch (field.kind) {
        case SpeciesFieldKind::Text:
        case SpeciesFieldKind::Lines:
            return staysAsText(value, true);
        case SpeciesFieldKind::Number: {
            constexpr int exactDigits = 15; // of any double
            return value.isNumber() && formOf(value.raw()).significantDigits <= exactDigits;
        }
        case SpeciesFieldKind::Image:
            return !value || staysAsPicture(value);
        }
        Q_UNREACHABLE();
    });
}

bool stayAsNumbers(const JsonValue &list)
{
    if (!list || !list.isArray())
        return false;
    for (JsonValue element = list.firstChild(); element; element = element.nextSibling()) {
        if (!element.isNumber() || formOf(element.raw()).significantDigits > keptDigits)
            return false;
    }
    return true;
}

bool staysAsSpectrum(const JsonValue &spectrum, bool isFile)
{
    if (!spectrum.isObject())
        return false;
    const JsonValue type = spectrum.member(spectrumTypeKey);
    if (!type || !type.isNumber() || type.raw().contains('.'))
        return false;
    const SpectrumKind other =
        type.raw().toInt() == simulationType ? SpectrumKind::Experiment : SpectrumKind::Simulation;
    std::vector<std::string_view> keys{viewOf(spectrumTypeKey), viewOf(lineSpectrumKey),
                                       viewOf(energiesKey), viewOf(intensitiesKey)};
    if (isFile)
        keys.push_back(viewOf(typeKey));
    for (const SpectrumTextField &field : spectrumTextFields) {
        if (field.kind == other)
            continue;
        keys.push_back(viewOf(field.key));
        if (!staysAsText(spectrum.member(field.key), field.kind == SpectrumKind::Any))
            return false;
    }
    const JsonValue energies = spectrum.member(energiesKey);
    const JsonValue intensities = spectrum.member(intensitiesKey);
    return hasExactly(spectrum, std::move(keys))
           && spectrum.member(lineSpectrumKey).kind() == JsonKind::Bool && stayAsNumbers(energies)
           && stayAsNumbers(intensities) && energies.count() == intensities.count();
}

bool staysAsSpeciesFile(const JsonValue &root)
{
    // With ten spectra their keys no longer sort as they are numbered.
    constexpr int mostSpectra = 9;
    int number = 0;
    for (JsonValue member = root.firstChild(); member; member = member.nextSibling()) {
        const QByteArrayView key = member.keyUtf8();
        if (key == bytesOf(typeKey))
            continue;
        const bool stays = key == bytesOf(speciesKey)
                               ? staysAsSpecies(member)
                               : ++number <= mostSpectra
                                     && key == QByteArray("Dataset" + QByteArray::number(number))
                                     && staysAsSpectrum(member, false);
        if (!stays)
            return false;
    }
    return bool(root.member(speciesKey)) && bool(root.member(typeKey));
}

} // namespace

bool isCertainlyAsSaved(const JsonText &text, bool isSpecies)
{
    const JsonValue root = text.root();
    return LayoutWalker(text).walk(root)
           && (isSpecies ? staysAsSpeciesFile(root) : staysAsSpectrum(root, true));
}
