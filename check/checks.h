// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLatin1String>
#include <QStringView>

#include <bitset>
#include <optional>
#include <span>

enum class Severity : quint8 {
    Note,    // worth knowing
    Warning, // likely to be wrong
    Error,   // certainly wrong
};

// All checks, in the order of the table. Their ids never change, as scripts, overrides and code
// scanning results hold them.
enum class Check : quint8 {
    // the file
    Unreadable,
    NotUtf8,
    JsonSyntax,
    NumberRange,
    DuplicateKey,
    WrongType,
    UnknownKey,
    ValueType,
    DigitsLost,
    WouldChange,
    // texts
    MarkupTag,
    MarkupUnbalanced,
    TextLost,
    InvisibleCharacter,
    DecimalComma,
    // the profile
    CasForm,
    CasCheckDigit,
    FormulaSyntax,
    FormulaElement,
    FormulaUnicode,
    MassFormula,
    FormulaInchi,
    InchiForm,
    PubchemCid,
    EnergyNumber,
    EnergyRange,
    VieBelowAie,
    ImageDecode,
    ImageSize,
    // a spectrum
    NoPoints,
    FewPoints,
    UnequalArrays,
    NotAscending,
    RepeatedEnergy,
    AllZero,
    IntensitySpike,
    EnergyUnit,
    EnergyGap,
    BelowIonisation,
    TypeIndex,
    ForeignField,
    MissingTitle,
    MissingUploader,
    MissingReference,
    TemperatureNumber,
    DoiForm,
    DateForm,
    DateFuture,
    // the collection
    SameCas,
    SameInchi,
    SameCid,
    SameName,
    SamePoints,
    DatabaseStale,
    UnusedOverride,
};
inline constexpr int checkCount = static_cast<int>(Check::UnusedOverride) + 1;

using CheckSet = std::bitset<checkCount>;

// The texts of `explain`, in plain English.
struct CheckInfo {
    Check check;
    QLatin1String id;
    Severity severity;     // of its findings, unless one is milder
    QLatin1String summary; // one line, without a full stop
    QLatin1String why;
    QLatin1String mend;
    QLatin1String example;
};

// All checks, in the order of the enumeration.
[[nodiscard]] std::span<const CheckInfo> allChecks();
[[nodiscard]] const CheckInfo &infoOf(Check check);
[[nodiscard]] std::optional<Check> checkOfId(QStringView id);

// "error", "warning" or "note".
[[nodiscard]] QLatin1String severityName(Severity severity);
[[nodiscard]] std::optional<Severity> severityOfName(QStringView name);
