// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/documentcheck.h"

#include "check/numbertext.h"
#include "check/recordcheck.h"
#include "check/spectrumcheck.h"
#include "check/textcheck.h"
#include "check/utf8text.h"
#include "files/jsonfile.h"
#include "species/speciesfile.h"
#include "species/speciesmodel.h"

#include <QCryptographicHash>

#include <cstring>

namespace
{

std::array<std::uint64_t, 2> fingerprintOf(const QString &text)
{
    const QByteArray digest = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Md5);
    std::array<std::uint64_t, 2> fingerprint{};
    std::memcpy(fingerprint.data(), digest.constData(), sizeof fingerprint);
    return fingerprint;
}

void noteIdentities(const JsonValue &species, FindingList &findings, std::vector<Fact> &facts)
{
    struct Source {
        Check check;
        QLatin1String key;
    };
    static constexpr std::array sources{
        Source{Check::SameCas, keyOf(SpeciesColumn::Cas)},
        Source{Check::SameInchi, keyOf(SpeciesColumn::Inchi)},
        Source{Check::SameCid, keyOf(SpeciesColumn::PubChem)},
        Source{Check::SameName, keyOf(SpeciesColumn::Name)},
    };
    for (const Source &source : sources) {
        const JsonValue value = species.member(source.key);
        const QString text = plainText(value);
        if (text.isEmpty())
            continue;
        const QString identity =
            source.check == Check::SameName ? text.simplified().toCaseFolded() : text;
        facts.push_back({source.check, fingerprintOf(identity), text, findings.placeOf(value)});
    }
}

// The first number, of any object or list, that a double cannot hold.
JsonValue numberOutOfRange(const JsonValue &value)
{
    constexpr qsizetype always = 300; // digits and more that a double holds
    if (value.isNumber()) {
        const QByteArrayView raw = value.raw();
        const bool isUsual = raw.size() < always && !raw.contains('e') && !raw.contains('E');
        return isUsual || valueOf(raw) ? JsonValue() : value;
    }
    for (JsonValue child = value.firstChild(); child; child = child.nextSibling()) {
        if (const JsonValue found = numberOutOfRange(child))
            return found;
    }
    return {};
}

} // namespace

void checkNumbers(const JsonValue &root, FindingList &findings)
{
    if (findings.has(Check::NumberRange)) // of the points
        return;
    if (const JsonValue number = numberOutOfRange(root))
        findings.add(
            Check::NumberRange, number,
            QStringLiteral("%1 cannot be held by a double, and the editor cannot read the file")
                .arg(QString::fromLatin1(number.raw())));
}

void reportUnreadable(const QString &message, const Place &place, FindingList &findings)
{
    findings.addUnread(Check::Unreadable, place, message);
}

std::unique_ptr<const JsonText> parsedText(const QByteArray &bytes, FindingList &findings)
{
    if (const auto bad = firstInvalidUtf8(bytes)) {
        const auto byte = static_cast<unsigned char>(bytes[*bad]);
        findings.addAtByte(
            Check::NotUtf8, *bad,
            QStringLiteral("The byte 0x%1 is not UTF-8").arg(QString::number(byte, 16).toUpper()),
            QStringLiteral("Convert the file to UTF-8."));
        return nullptr;
    }
    auto text = std::make_unique<const JsonText>(bytes);
    const auto &error = text->error();
    if (!error)
        return text;
    const bool isRange = error->kind == JsonError::NumberTooLarge;
    QString message = error->message;
    if (message.endsWith(QLatin1Char('.')))
        message.chop(1);
    findings.addAtByte(isRange ? Check::NumberRange : Check::JsonSyntax, error->offset,
                       isRange ? QStringLiteral("A number that is too large for a double; the "
                                                "editor cannot read the file")
                               : message);
    return nullptr;
}

void checkSpeciesObject(const JsonValue &object, Envelope envelope, QDate today,
                        FindingList &findings, std::vector<Fact> &facts)
{
    static constexpr std::array known{KnownKey{typeKey, JsonKind::String},
                                      KnownKey{speciesKey, JsonKind::Object},
                                      KnownKey{QLatin1String("Dataset1"), JsonKind::Object}};
    const JsonValue species = object.member(speciesKey);
    ProfileEnergies energies;
    if (species && checkKind(species, JsonKind::Object, findings)) {
        energies = checkProfile(species, findings);
        noteIdentities(species, findings, facts);
    }
    for (JsonValue member = object.firstChild(); member; member = member.nextSibling()) {
        const QString key = member.key();
        if (isDatasetKey(key)) {
            if (checkKind(member, JsonKind::Object, findings))
                checkDataset(member, false, energies, today, findings, facts);
        } else if (key != speciesKey && (key != typeKey || envelope == Envelope::Entry)) {
            const QString meant = similarKey(key, known);
            findings.addAtKey(
                Check::UnknownKey, member,
                QStringLiteral("The editor does not know the key %1 and drops it").arg(quoted(key)),
                meantHint(meant));
        }
    }
}

void checkDataset(const JsonValue &spectrum, bool isFile, const ProfileEnergies &energies,
                  QDate today, FindingList &findings, std::vector<Fact> &facts)
{
    const SpectrumFacts found = checkSpectrum(spectrum, isFile, energies, today, findings);
    if (found.fingerprint)
        facts.push_back({Check::SamePoints, *found.fingerprint, {}, findings.placeOf(spectrum)});
}
