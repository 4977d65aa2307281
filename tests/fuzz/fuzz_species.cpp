// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/invariant.h"
#include "pictures/picture.h"
#include "species/speciesmodel.h"
#include "support/expecteddocument.h"

#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto imageKey = "StructuralFormula"_L1;

QJsonObject withoutImage(QJsonObject species)
{
    species.remove(imageKey);
    return species;
}

} // namespace

// Any JSON as a species object: loaded, saved, loaded and saved again. Nothing changes by the
// second time but what looks like a tag only once another one is gone from its middle.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QJsonObject loaded = QJsonDocument::fromJson(bytesOf(data, size)).object();
    SpeciesModel first(nullptr);
    first.loadFromJson(loaded);
    const QJsonObject once = first.toJson();
    REQUIRE_EQUAL(withoutImage(once), expectedSpecies(loaded));
    REQUIRE_EQUAL(once.contains(imageKey), !first.getImage().isNull());

    const QJsonObject file = QJsonDocument::fromJson(QJsonDocument(once).toJson()).object();
    REQUIRE_EQUAL(withoutByteOrderMarks(file), withoutByteOrderMarks(once));
    SpeciesModel second(nullptr);
    second.loadFromJson(file);
    const QJsonObject twice = second.toJson();
    REQUIRE_EQUAL(withoutImage(twice), expectedSpecies(file));
    REQUIRE(isSamePicture(second.getImage(), first.getImage()));
    REQUIRE_EQUAL(twice[imageKey], once[imageKey]);

    // The record that held another entry before is no different.
    second.loadFromJson(loaded);
    REQUIRE_EQUAL(withoutImage(second.toJson()), expectedSpecies(loaded));
    REQUIRE(isSamePicture(second.getImage(), first.getImage()));
    return 0;
}
