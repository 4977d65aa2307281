// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/savecheck.h"

#include "check/recordcheck.h"
#include "check/utf8text.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"
#include "spectrum/resaved.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace
{

// Findings of these say what is lost with the next save.
constexpr std::array causes{Check::DuplicateKey,  Check::UnknownKey,  Check::ValueType,
                            Check::DigitsLost,    Check::MarkupTag,   Check::ForeignField,
                            Check::UnequalArrays, Check::ImageDecode, Check::NumberRange,
                            Check::TextLost};

// Takes the picture out of a species file's object if saving keeps its pixels and its format, and
// returns its text.
QJsonValue takeKeptPicture(QJsonObject &file)
{
    const QLatin1String key = speciesFields[speciesImageColumn].key;
    QJsonObject species = file.value(speciesKey).toObject();
    const QJsonValue picture = species.value(key);
    const QByteArray text = picture.toString().toUtf8();
    const QByteArray bytes = QByteArray::fromBase64(text);
    if (!bytes.startsWith("\x89PNG\r\n\x1a\n") || bytes.toBase64() != text)
        return QJsonValue::Undefined;
    species.remove(key);
    file.insert(speciesKey, species);
    return picture;
}

QByteArray savedBytes(const QByteArray &bytes, bool isSpecies)
{
    QJsonObject file = QJsonDocument::fromJson(bytes).object();
    if (!isSpecies)
        return QJsonDocument(resavedSpectrumFile(file)).toJson();
    const QJsonValue picture = takeKeptPicture(file);
    QJsonObject saved = resavedSpeciesFile(file);
    if (!picture.isUndefined()) {
        QJsonObject species = saved.value(speciesKey).toObject();
        species.insert(speciesFields[speciesImageColumn].key, picture);
        saved.insert(speciesKey, species);
    }
    return QJsonDocument(saved).toJson();
}

} // namespace

void checkSaving(const JsonText &text, bool isSpecies, FindingList &findings)
{
    if (isCertainlyAsSaved(text, isSpecies)
        || std::any_of(causes.begin(), causes.end(),
                       [&](Check cause) { return findings.has(cause); }))
        return;
    const QByteArray saved = savedBytes(text.bytes(), isSpecies);
    if (saved == text.bytes())
        return;
    const auto difference =
        std::mismatch(saved.begin(), saved.end(), text.bytes().begin(), text.bytes().end());
    const QString line =
        QString::fromUtf8(lineAt(saved, difference.first - saved.begin())).trimmed();
    findings.addAt(Check::WouldChange, difference.second - text.bytes().begin(),
                   QStringLiteral("The editor would write the file in another way, first here: %1")
                       .arg(quoted(line)),
                   QStringLiteral("zoravel format --in-place writes it as the editor does."));
}
