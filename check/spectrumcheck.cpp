// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/spectrumcheck.h"

#include "check/numbertext.h"
#include "check/pointscheck.h"
#include "check/recordcheck.h"
#include "check/textcheck.h"
#include "files/jsonfile.h"
#include "spectrum/spectrumobject.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{

constexpr QLatin1String titleKey = keyOf(SpectrumColumn::Title);
constexpr QLatin1String uploaderKey = keyOf(SpectrumColumn::Uploader);
constexpr QLatin1String doiKey = keyOf(SpectrumColumn::Doi);
constexpr QLatin1String citationsKey = keyOf(SpectrumColumn::FurtherRefs);
constexpr QLatin1String commentsKey = keyOf(SpectrumColumn::FurtherComments);
constexpr QLatin1String createdKey = keyOf(SpectrumColumn::CreatedDate);
constexpr QLatin1String facilityDateKey = keyOf(SpectrumColumn::FacilityDate);

const std::vector<KnownKey> &knownKeys(bool isFile)
{
    static const auto withType = [](bool type) {
        std::vector<KnownKey> keys{{spectrumTypeKey, JsonKind::Number},
                                   {lineSpectrumKey, JsonKind::Bool},
                                   {energiesKey, JsonKind::Array},
                                   {intensitiesKey, JsonKind::Array},
                                   {pointObjectsKey, JsonKind::Array}};
        for (const SpectrumTextField &field : spectrumTextFields)
            keys.push_back({field.key, JsonKind::String});
        if (type)
            keys.push_back({typeKey, JsonKind::String});
        return keys;
    };
    static const std::vector<KnownKey> ofDataset = withType(false);
    static const std::vector<KnownKey> ofFile = withType(true);
    return isFile ? ofFile : ofDataset;
}

TextUse useOf(SpectrumColumn column)
{
    switch (column) {
    case SpectrumColumn::Aie:
        return TextUse::Energy;
    case SpectrumColumn::Temperature:
    case SpectrumColumn::Resolution:
    case SpectrumColumn::ConvolutionFwhm:
        return TextUse::Quantity;
    default:
        return TextUse::Text;
    }
}

// The field's label has the unit K. A number in K may have a sign, and be followed by an
// uncertainty, a range or words.
void checkTemperature(const JsonValue &value, FindingList &findings)
{
    static const QRegularExpression form(
        QStringLiteral("^[\\s<>~(\u2248\u2264\u2265]*(?:ca\\.?\\s*)?[+-]?(?:\\d+\\.?\\d*|\\.\\d+)"
                       "(?:[eE][+-]?\\d+)?(?=$|K|,\\s|[^\\w.,])"));
    const QString text = plainText(value);
    if (!text.isEmpty() && !form.match(text).hasMatch() && !hasDecimalComma(text))
        findings.add(Check::TemperatureNumber, value,
                     QStringLiteral("The temperature %1 is not a number").arg(quoted(text)),
                     QStringLiteral("Write it in K, such as 298."));
}

// The index of the type as the editor reads it; -1 if it is not in the list.
int checkType(const JsonValue &value, FindingList &findings)
{
    if (!value || !value.isNumber())
        return 0;
    const double type = valueOf(value.raw()).value_or(0);
    if (type != std::trunc(type)) {
        findings.add(Check::ValueType, value,
                     QStringLiteral("\"SpectType\" is no whole number, and is taken for 0"));
        return 0;
    }
    constexpr auto last = static_cast<int>(spectrumTypeNames.size()) - 1;
    if (type >= 0 && type <= last)
        return static_cast<int>(type);
    findings.add(
        Check::TypeIndex, value,
        QStringLiteral("There is no spectrum type %1").arg(QString::fromLatin1(value.raw())),
        QStringLiteral("Types are 0 to %1.").arg(last));
    return -1;
}

void checkFields(const JsonValue &spectrum, int type, FindingList &findings)
{
    for (const SpectrumTextField &field : spectrumTextFields) {
        const JsonValue value = spectrum.member(field.key);
        checkText(value, useOf(field.column), findings);
        if (field.column == SpectrumColumn::Temperature)
            checkTemperature(value, findings);
        if (value && !belongsTo(field.kind, type) && !plainText(value).isEmpty())
            findings.add(Check::ForeignField, value,
                         QStringLiteral("%1 belongs to %2, and is dropped from %3")
                             .arg(quoted(QString(field.key)),
                                  field.kind == SpectrumKind::Simulation
                                      ? QStringLiteral("simulations")
                                      : QStringLiteral("measurements"),
                                  type == simulationType ? QStringLiteral("a simulation")
                                                         : QStringLiteral("a measurement")),
                         QStringLiteral("Correct \"SpectType\", or move the text."));
    }
}

void checkMissing(const JsonValue &spectrum, FindingList &findings)
{
    const auto isMissing = [&](QLatin1String key) {
        const JsonValue value = spectrum.member(key);
        // A value of another kind has its own finding.
        return !value || (value.isString() && plainText(value).isEmpty());
    };
    const auto report = [&](Check check, QLatin1String key, const QString &message) {
        const JsonValue value = spectrum.member(key);
        findings.add(check, value ? value : spectrum, message);
    };
    if (isMissing(titleKey))
        report(Check::MissingTitle, titleKey, QStringLiteral("The spectrum has no title"));
    if (isMissing(uploaderKey))
        report(Check::MissingUploader, uploaderKey, QStringLiteral("The spectrum has no uploader"));
    if (isMissing(doiKey) && isMissing(citationsKey) && isMissing(commentsKey))
        report(Check::MissingReference, doiKey,
               QStringLiteral("Neither DOI nor citations nor comments say where the spectrum "
                              "comes from"));
}

void checkDoi(const JsonValue &value, FindingList &findings)
{
    static const QRegularExpression form(QStringLiteral("^10\\.\\d{4,9}(\\.\\d+)*/\\S+$"));
    static const QRegularExpression contained(QStringLiteral("10\\.\\d{4,9}(\\.\\d+)*/[^\\s]+"));
    const QString doi = plainText(value);
    if (doi.isEmpty() || form.match(doi).hasMatch())
        return;
    const QRegularExpressionMatch match = contained.match(doi);
    findings.add(Check::DoiForm, value, QStringLiteral("%1 is not a DOI").arg(quoted(doi)),
                 match.hasMatch() ? QStringLiteral("Write %1").arg(match.captured())
                                  : QStringLiteral("A DOI looks like 10.1063/1.1234567."));
}

// A date written as year-month-day in that many digits; invalid if it does not exist.
QDate dateOf(QStringView text)
{
    return QDate::fromString(text.toString(), Qt::ISODate);
}

void checkDates(const JsonValue &spectrum, QDate today, FindingList &findings)
{
    static const QRegularExpression form(QStringLiteral("^\\d{4}-\\d{2}-\\d{2}$"));
    static const QRegularExpression within(QStringLiteral("(?<!\\d)\\d{4}-\\d{2}-\\d{2}(?!\\d)"));
    // Another time zone may be a day ahead.
    const QDate latest = today.addDays(1);
    const auto checkOne = [&](const JsonValue &value, const QString &text) {
        const QDate date = dateOf(text);
        if (!date.isValid())
            findings.add(Check::DateForm, value,
                         QStringLiteral("%1 %2 is not a date").arg(value.key(), quoted(text)),
                         QStringLiteral("Write it as yyyy-MM-dd."));
        else if (date > latest)
            findings.add(Check::DateFuture, value,
                         QStringLiteral("%1 %2 is in the future").arg(value.key(), text));
    };
    const JsonValue created = spectrum.member(createdKey);
    if (const QString text = plainText(created); !text.isEmpty()) {
        if (form.match(text).hasMatch())
            checkOne(created, text);
        else
            findings.add(Check::DateForm, created,
                         QStringLiteral("%1 %2 is not a date").arg(created.key(), quoted(text)),
                         QStringLiteral("Write it as yyyy-MM-dd."));
    }
    // Dates and names of facilities, in any form; a date among them must be valid.
    const JsonValue facility = spectrum.member(facilityDateKey);
    const QString text = plainText(facility);
    for (auto matches = within.globalMatch(text); matches.hasNext();)
        checkOne(facility, matches.next().captured());
}

} // namespace

SpectrumFacts checkSpectrum(const JsonValue &spectrum, bool isFile, const ProfileEnergies &energies,
                            QDate today, FindingList &findings)
{
    constexpr std::size_t fewestToCompare = 5;
    checkMembers(spectrum, knownKeys(isFile), findings);
    checkFields(spectrum, checkType(spectrum.member(spectrumTypeKey), findings), findings);
    checkMissing(spectrum, findings);
    checkDoi(spectrum.member(doiKey), findings);
    checkDates(spectrum, today, findings);

    const PointArrays points = readPoints(spectrum, findings);
    if (!points.isWhole)
        return {};
    if (points.energiesEv.empty()) {
        findings.add(Check::NoPoints, points.energies ? points.energies : spectrum,
                     QStringLiteral("The spectrum has no points"));
        return {};
    }
    const JsonValue isLines = spectrum.member(lineSpectrumKey);
    const PointContext context{isLines && isLines.kind() == JsonKind::Bool && isLines.toBool(),
                               energies};
    checkPoints(points, context, findings);
    SpectrumFacts facts;
    if (points.energiesEv.size() >= fewestToCompare)
        facts.fingerprint = fingerprintOf(points);
    return facts;
}
