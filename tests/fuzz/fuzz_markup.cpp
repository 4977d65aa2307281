// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/invariant.h"
#include "support/expecteddocument.h"
#include "widgets/singlelinetextedit.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{

// Markup that means just what it says: no "<" but in the tags that are written, no entity, and of
// white space only single blanks between words and no-break spaces, as Qt's reader makes
// one blank of any other run of it. All that an editor writes is of this kind, unless its text has
// a raw
// "<", "&" or such white space.
bool isPlain(const QString &markup)
{
    static const QRegularExpression tagged(
        u"^(?:[^<&]|<br>|<sub>[^<&]*</sub>|<sup>[^<&]*</sup>)*+$"_s,
        QRegularExpression::DontCaptureOption);
    static const QRegularExpression lostBlank(
        u"[\\x{0}-\\x{1f}\\x{85}\\x{1680}\\x{2000}-\\x{200a}\\x{202f}\\x{205f}\\x{3000}\\x{fffc}"
        u"\\x{fdd0}\\x{fdd1}\\x{2028}\\x{2029}]|\\s\\s|\\s(</?su[bp]>)*\\s"
        "|(^|<br>)(</?su[bp]>)*\\s|\\s(</?su[bp]>)*(<br>|$)"_s);
    return markup.contains(tagged) && !markup.contains(lostBlank);
}

// The markup that neighbours of one alignment have in common.
QString merged(QString markup)
{
    QString before;
    do {
        before = markup;
        for (const QString &nothing :
             {u"</sub><sub>"_s, u"</sup><sup>"_s, u"<sub></sub>"_s, u"<sup></sup>"_s})
            markup.remove(nothing);
    } while (markup != before);
    return markup;
}

template <typename Editor>
QString readBack(const QString &markup)
{
    Editor editor;
    editor.setCleanedHtml(markup);
    QString cleaned = editor.cleanedHtml();
    REQUIRE_EQUAL(editor.property("cleanedHtml").toString(), cleaned);
    return cleaned;
}

// Nothing that only the document itself uses is in it.
void testCharacters(const QString &cleaned)
{
    REQUIRE(!cleaned.contains(QChar::ObjectReplacementCharacter));
    REQUIRE(!cleaned.contains(QChar::LineSeparator));
    REQUIRE(!cleaned.contains(QChar::ParagraphSeparator));
}

} // namespace

// Any text as the markup of an editor: set, read, set and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString markup = QString::fromUtf8(bytesOf(data, size));
    const QString once = readBack<CleanTextEdit>(markup);
    testCharacters(once);
    REQUIRE_EQUAL(readBack<SingleLineTextEdit>(markup), once);
    if (isPlain(markup))
        REQUIRE_EQUAL(merged(once), merged(markup));
    if (!isPlain(once))
        return 0;

    // What was read is saved as it is and shown as it was.
    REQUIRE_EQUAL(expectedMarkup(once), once);
    const QString twice = readBack<CleanTextEdit>(once);
    REQUIRE_EQUAL(merged(twice), merged(once));
    REQUIRE_EQUAL(readBack<SingleLineTextEdit>(once), twice);
    REQUIRE_EQUAL(readBack<CleanTextEdit>(twice), twice);
    if (merged(once) == once)
        REQUIRE_EQUAL(twice, once);
    return 0;
}
