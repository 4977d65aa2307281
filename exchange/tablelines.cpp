// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/tablelines.h"

#include "exchange/numbers.h"

#include <QRegularExpression>
#include <QString>
#include <QStringConverter>

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

QByteArrayList splitAtSpace(const QByteArray &line)
{
    const QByteArray text = line.simplified();
    return text.isEmpty() ? QByteArrayList() : text.split(' ');
}

// A separator between quotation marks does not separate; two of them there stand for one.
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
    QList<TableLine> lines;
    qsizetype number = 0;
    for (const QByteArray &line : text.split('\n'))
        lines.append({++number, line});
    return lines;
}

QByteArrayList fieldsOf(const QByteArray &line, const TableDialect &dialect)
{
    QByteArrayList fields =
        dialect.separator == ' ' ? splitAtSpace(line) : splitQuoted(line, dialect.separator);
    if (fields.size() > 1 && fields.last().isEmpty())
        fields.removeLast();
    return fields;
}

std::optional<double> fieldNumber(QByteArray field, const TableDialect &dialect)
{
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
    return form.match(QString::fromUtf8(field)).hasMatch();
}
