// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/numbertext.h"
#include "check/savecheck.h"
#include "files/jsonfile.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/spectrumobject.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

#include <algorithm>
#include <cstddef>
#include <optional>
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

// The value as the toolkit writes it.
QByteArray writtenForm(const QJsonValue &value)
{
    return QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).chopped(1).sliced(1);
}

// Walks a text along the layout that the editor writes, whatever it holds.
class LayoutWalker
{
public:
    explicit LayoutWalker(const JsonText &text) : m_bytes(text.bytes()) {}

    bool walk(const JsonValue &root)
    {
        return takeValue(root, 0) && take("\n") && m_at == m_bytes.size();
    }

    // Up to where the text has that layout.
    [[nodiscard]] qsizetype place() const { return m_at; }

private:
    bool take(QByteArrayView expected)
    {
        if (!m_bytes.sliced(m_at).startsWith(expected))
            return false;
        m_at += expected.size();
        return true;
    }

    bool takeIndent(qsizetype level)
    {
        static const QByteArray blanks(64, ' ');
        constexpr qsizetype width = 4;
        return level * width <= blanks.size() && take(QByteArrayView(blanks).first(level * width));
    }

    bool takeRaw(QByteArrayView raw)
    {
        m_at += raw.size();
        return true;
    }

    bool takeValue(const JsonValue &value, qsizetype level)
    {
        if (value.begin() != m_at)
            return false;
        switch (value.kind()) {
        case JsonKind::Object:
        case JsonKind::Array:
            return takeContainer(value, level);
        case JsonKind::Number:
            return isWrittenLikeThat(value) && takeRaw(value.raw());
        case JsonKind::String:
            // Escapes may be written in several ways.
            return (!value.raw().contains('\\') || writtenForm(value.string()) == value.raw())
                   && takeRaw(value.raw());
        case JsonKind::Null:
        case JsonKind::Bool:
            return takeRaw(value.raw());
        }
        Q_UNREACHABLE();
    }

    // All numbers of the records are doubles.
    static bool isWrittenLikeThat(const JsonValue &number)
    {
        constexpr int exactDigits = 15; // of any double
        const NumberForm form = formOf(number.raw());
        if (form.isPlain && form.significantDigits <= exactDigits)
            return true;
        const std::optional<double> value = valueOf(number.raw());
        return value && writtenForm(*value) == number.raw();
    }

    bool takeContainer(const JsonValue &container, qsizetype level)
    {
        const bool isObject = container.isObject();
        if (!take(isObject ? "{\n" : "[\n"))
            return false;
        QByteArrayView last;
        for (JsonValue child = container.firstChild(); child; child = child.nextSibling()) {
            if (child.begin() != container.firstChild().begin() && !take(",\n"))
                return false;
            if (!takeIndent(level + 1))
                return false;
            if (isObject) {
                const QByteArrayView key = child.rawKey();
                // Keys of other characters are not the editor's.
                if (child.keyBegin() != m_at || key.contains('\\') || key.compare(last) <= 0
                    || !isAscii(key) || !takeRaw(key) || !take(": "))
                    return false;
                last = key;
            }
            if (!takeValue(child, level + 1))
                return false;
        }
        return (container.count() == 0 || take("\n")) && takeIndent(level)
               && take(isObject ? "}" : "]");
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
    if (!value.isString())
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

bool staysAsField(const JsonValue &value, SpeciesFieldKind kind)
{
    switch (kind) {
    case SpeciesFieldKind::Text:
        return staysAsText(value, true);
    case SpeciesFieldKind::Lines:
        return staysAsText(value, true) && !value.utf8().contains('\n');
    case SpeciesFieldKind::Number:
        return value.isNumber();
    case SpeciesFieldKind::Image:
        return staysAsPicture(value);
    }
    Q_UNREACHABLE();
}

// Looks for what loading and saving changes in a file whose layout has been walked.
class ContentWalker
{
public:
    // The first value found that does not stay as it is.
    [[nodiscard]] const JsonValue &changed() const { return m_changed; }

    bool walkSpecies(const JsonValue &species)
    {
        std::vector<std::string_view> keys;
        for (const SpeciesField &field : speciesFields) {
            if (field.kind != SpeciesFieldKind::Image || species.member(field.key))
                keys.push_back(viewOf(field.key));
        }
        if (!species.isObject() || !hasExactly(species, std::move(keys)))
            return isChanged(species);
        for (const SpeciesField &field : speciesFields) {
            const JsonValue value = species.member(field.key);
            if (value && !staysAsField(value, field.kind))
                return isChanged(value);
        }
        return true;
    }

    bool walkSpectrum(const JsonValue &spectrum, bool isFile)
    {
        if (!spectrum.isObject())
            return isChanged(spectrum);
        const JsonValue type = spectrum.member(spectrumTypeKey);
        bool isWhole = false;
        const int number = type && type.isNumber() ? type.raw().toInt(&isWhole) : 0;
        if (!isWhole)
            return isChanged(type ? type : spectrum);
        const SpectrumKind other =
            number == simulationType ? SpectrumKind::Experiment : SpectrumKind::Simulation;
        std::vector<std::string_view> keys{viewOf(spectrumTypeKey), viewOf(lineSpectrumKey),
                                           viewOf(energiesKey), viewOf(intensitiesKey)};
        if (isFile)
            keys.push_back(viewOf(typeKey));
        for (const SpectrumTextField &field : spectrumTextFields) {
            if (field.kind != other)
                keys.push_back(viewOf(field.key));
        }
        if (!hasExactly(spectrum, std::move(keys)))
            return isChanged(spectrum);
        return walkFields(spectrum, other) && walkPoints(spectrum);
    }

    // Notes the value, if it is the first. Returns false.
    bool isChanged(const JsonValue &value)
    {
        if (!m_changed)
            m_changed = value;
        return false;
    }

private:
    bool walkFields(const JsonValue &spectrum, SpectrumKind other)
    {
        for (const SpectrumTextField &field : spectrumTextFields) {
            if (field.kind == other)
                continue;
            const JsonValue value = spectrum.member(field.key);
            if (!staysAsText(value, field.kind == SpectrumKind::Any))
                return isChanged(value);
        }
        const JsonValue isLine = spectrum.member(lineSpectrumKey);
        return isLine.kind() == JsonKind::Bool || isChanged(isLine);
    }

    bool walkPoints(const JsonValue &spectrum)
    {
        const JsonValue energies = spectrum.member(energiesKey);
        const JsonValue intensities = spectrum.member(intensitiesKey);
        if (energies.count() != intensities.count())
            return isChanged(energies);
        return walkNumbers(energies) && walkNumbers(intensities);
    }

    bool walkNumbers(const JsonValue &list)
    {
        if (!list.isArray())
            return isChanged(list);
        for (JsonValue element = list.firstChild(); element; element = element.nextSibling()) {
            if (!element.isNumber() || formOf(element.raw()).significantDigits > keptDigits)
                return isChanged(element);
        }
        return true;
    }

    JsonValue m_changed;
};

// The number behind "Dataset" in a key as the editor writes it; 0 if the key is not of that form.
qsizetype datasetNumber(QByteArrayView key)
{
    constexpr std::string_view prefix = "Dataset";
    if (!key.startsWith(QByteArrayView(prefix.data(), qsizetype(prefix.size()))))
        return 0;
    const QByteArray digits = key.sliced(qsizetype(prefix.size())).toByteArray();
    const qsizetype number = digits.toLongLong();
    return number > 0 && QByteArray::number(number) == digits ? number : 0;
}

bool walkSpeciesFile(const JsonValue &root, ContentWalker &content)
{
    std::vector<JsonValue> datasets; // in the order of their keys, as the editor loads them
    for (JsonValue member = root.firstChild(); member; member = member.nextSibling()) {
        const QByteArrayView key = member.keyUtf8();
        if (key == bytesOf(speciesKey)) {
            if (!content.walkSpecies(member))
                return false;
        } else if (key != bytesOf(typeKey)) {
            if (datasetNumber(key) == 0 || !content.walkSpectrum(member, false))
                return content.isChanged(member);
            datasets.push_back(member);
        }
    }
    // Each is saved under the number of its place: with ten of them, the tenth under another one.
    for (const JsonValue &dataset : datasets) {
        const auto number = static_cast<std::size_t>(datasetNumber(dataset.keyUtf8()));
        if (number > datasets.size() || dataset.raw() != datasets[number - 1].raw())
            return content.isChanged(dataset);
    }
    return (root.member(speciesKey) && root.member(typeKey)) || content.isChanged(root);
}

} // namespace

std::optional<qsizetype> placeThatSavingChanges(const JsonText &text, bool isSpecies)
{
    const JsonValue root = text.root();
    LayoutWalker layout(text);
    if (!layout.walk(root))
        return layout.place();
    ContentWalker content;
    const bool stays =
        isSpecies ? walkSpeciesFile(root, content) : content.walkSpectrum(root, true);
    return stays ? std::nullopt : std::optional(content.changed().begin());
}
