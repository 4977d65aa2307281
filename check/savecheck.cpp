// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/savecheck.h"

#include <algorithm>
#include <array>

namespace
{

// Findings of these say what is lost with the next save.
constexpr std::array causes{Check::DuplicateKey,  Check::UnknownKey,  Check::ValueType,
                            Check::DigitsLost,    Check::MarkupTag,   Check::ForeignField,
                            Check::UnequalArrays, Check::ImageDecode, Check::NumberRange,
                            Check::TextLost};

} // namespace

void checkSaving(const JsonText &text, bool isSpecies, FindingList &findings)
{
    if (std::any_of(causes.begin(), causes.end(), [&](Check cause) { return findings.has(cause); }))
        return;
    if (const std::optional<qsizetype> place = placeThatSavingChanges(text, isSpecies))
        findings.addAt(Check::WouldChange, *place,
                       QStringLiteral("The editor would write the file in another way from here"),
                       QStringLiteral("zoravel format --in-place writes it as the editor does."));
}
