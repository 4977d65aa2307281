// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/invariant.h"
#include "spectrum/spectrummodel.h"
#include "support/expecteddocument.h"

#include <QJsonDocument>
#include <QPlainTextEdit>

// Any JSON as a spectrum object: loaded, saved, loaded and saved again. Points are rounded by the
// first time, and by the second no more.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QJsonObject loaded = QJsonDocument::fromJson(bytesOf(data, size)).object();
    QPlainTextEdit editor;
    SpectrumModel first(nullptr, &editor);
    first.loadFromJson(loaded);
    const QStringList lines = expectedPointLines(loaded);
    REQUIRE_EQUAL(editor.toPlainText(), lines.join(u'\n'));
    const QJsonObject once = first.toJson();
    REQUIRE_EQUAL(once, expectedSpectrum(loaded));

    // Reading the text that it shows finds the points that it has.
    first.emitSpectrumDataChanged();
    REQUIRE(!first.lastReadFoundChanges());
    REQUIRE_EQUAL(first.toJson(), once);

    const QJsonObject file = QJsonDocument::fromJson(QJsonDocument(once).toJson()).object();
    REQUIRE_EQUAL(withoutByteOrderMarks(file), withoutByteOrderMarks(once));
    SpectrumModel second(nullptr, &editor);
    second.loadFromJson(file);
    REQUIRE_EQUAL(editor.toPlainText(), lines.join(u'\n'));
    const QJsonObject twice = second.toJson();
    REQUIRE_EQUAL(twice, expectedSpectrum(file));
    REQUIRE_EQUAL(twice[QStringLiteral("E")], once[QStringLiteral("E")]);
    REQUIRE_EQUAL(twice[QStringLiteral("I")], once[QStringLiteral("I")]);
    return 0;
}
