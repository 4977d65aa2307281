// SPDX-License-Identifier: GPL-3.0-or-later
#include "check/checks.h"

#include "check/checktexts.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace
{

constexpr std::array groups{
    std::span<const CheckInfo>(fileChecks), std::span<const CheckInfo>(textChecks),
    std::span<const CheckInfo>(profileChecks), std::span<const CheckInfo>(spectrumChecks),
    std::span<const CheckInfo>(collectionChecks)};

constexpr auto joined()
{
    constexpr CheckInfo blank{};
    std::array<CheckInfo, checkCount> all{};
    std::fill(all.begin(), all.end(), blank);
    std::size_t count = 0;
    for (const auto group : groups) {
        for (const CheckInfo &info : group)
            all.at(count++) = info;
    }
    return all;
}

constexpr std::array<CheckInfo, checkCount> checks = joined();

constexpr bool isInOrder()
{
    for (std::size_t i = 0; i < checks.size(); ++i) {
        if (static_cast<std::size_t>(checks[i].check) != i || checks[i].id.isEmpty())
            return false;
    }
    return true;
}
static_assert(isInOrder(), "the table follows the enumeration");

constexpr std::array severityNames{QLatin1String("note"), QLatin1String("warning"),
                                   QLatin1String("error")};

} // namespace

std::span<const CheckInfo> allChecks()
{
    return checks;
}

const CheckInfo &infoOf(Check check)
{
    return checks[static_cast<std::size_t>(check)];
}

std::optional<Check> checkOfId(QStringView id)
{
    const auto *const found = std::find_if(checks.begin(), checks.end(),
                                           [&](const CheckInfo &info) { return id == info.id; });
    return found != checks.end() ? std::optional(found->check) : std::nullopt;
}

QLatin1String severityName(Severity severity)
{
    return severityNames[static_cast<std::size_t>(severity)];
}

std::optional<Severity> severityOfName(QStringView name)
{
    const auto *const found = std::find_if(severityNames.begin(), severityNames.end(),
                                           [&](QLatin1String each) { return name == each; });
    if (found == severityNames.end())
        return std::nullopt;
    return static_cast<Severity>(found - severityNames.begin());
}
