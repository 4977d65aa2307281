// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/tablelines.h"

#include "exchange/numbers.h"

#include <QRegularExpression>
#include <QString>
#include <QStringConverter>

#include <algorithm>

namespace
{

QByteArray asUtf8(const QByteArray &bytes, QByteArray &warning)
{
    if (const auto encoding = QStringConverter::encodingForData(bytes)) {
        const QString text = QStringDecoder(*encoding).decode(bytes);
        return text.toUtf8();
    }
    if (QUtf8StringView(bytes).isValidUtf8())
        return bytes;
    warning = "the text is not UTF-8; read as Latin-1";
    return QString::fromLatin1(bytes).toUtf8();
}

// Only ASCII spaces separate: others may stand between the thousands of a number.
QByteArrayList splitAtSpace(const QByteArray &line)
{
    const QByteArray text = line.simplified();
    QByteArrayList fields = text.isEmpty() ? QByteArrayList() : text.split(' ');
    fields.removeIf([](const QByteArray &field) { return plainField(field).isEmpty(); });
    return fields;
}

// A separator within quotation marks does not separate; two quotation marks there stand for one.
QByteArrayList splitQuoted(const QByteArray &line, char separator)
{
    QByteArrayList fields;
    QByteArray field;
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '"' && quoted && i + 1 < line.size() && line[i + 1] == '"') {
            field += line[++i];
        } else if (c == '"' && (quoted || field.trimmed().isEmpty())) {
            quoted = !quoted;
        } else if (c == separator && !quoted) {
            fields.append(field.trimmed());
            field.clear();
        } else {
            field += c;
        }
    }
    fields.append(field.trimmed());
    return fields;
}

} // namespace

QList<TableLine> linesOfText(const QByteArray &bytes, QByteArray &warning)
{
    QByteArray text = asUtf8(bytes, warning);
    text.replace("\r\n", "\n").replace('\r', '\n');
    // Ctrl+Z ends a text of DOS.
    constexpr char controlZ = '\x1a';
    qsizetype end = text.size();
    while (end > 0 && (text[end - 1] == controlZ || text[end - 1] == ' ' || text[end - 1] == '\n'))
        --end;
    if (text.indexOf(controlZ, end) >= 0)
        text.truncate(end);
    QList<TableLine> lines;
    qsizetype number = 0;
    for (const QByteArray &line : text.split('\n'))
        lines.append({++number, line});
    return lines;
}

QByteArray plainField(const QByteArray &field)
{
    const auto isAscii = [](char c) { return static_cast<signed char>(c) >= 0; };
    if (std::all_of(field.begin(), field.end(), isAscii))
        return field.trimmed();
    QString text = QString::fromUtf8(field).trimmed();
    // The minus sign, the small and the full-width hyphen-minus.
    for (const char16_t minus : {u'\u2212', u'\ufe63', u'\uff0d'})
        text.replace(QChar(minus), QLatin1Char('-'));
    return text.toUtf8();
}

QByteArrayList fieldsOf(const QByteArray &line, const TableDialect &dialect)
{
    QByteArrayList fields =
        dialect.separator == ' ' ? splitAtSpace(line) : splitQuoted(line, dialect.separator);
    if (fields.size() > 1 && fields.last().isEmpty())
        fields.removeLast();
    return fields;
}

std::optional<double> fieldNumber(const QByteArray &text, const TableDialect &dialect)
{
    QByteArray field = plainField(text);
    if (dialect.decimal == ',') {
        if (field.contains('.'))
            return std::nullopt;
        field.replace(',', '.');
    }
    return numberIn(field);
}

bool looksLikeThousands(const QByteArray &field)
{
    static const QRegularExpression form(QStringLiteral("^[-+]?[1-9][0-9]{0,2}(,[0-9]{3})+$"));
    return form.match(QString::fromUtf8(plainField(field))).hasMatch();
}
