// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/metadata.h"

#include "files/jsonfile.h"
#include "spectrum/spectrumobject.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace
{

bool isPlain(const QString &text)
{
    const auto isControl = [](QChar c) { return c < QLatin1Char(' ') || c == QChar(0x7f); };
    return text == text.trimmed() && !text.startsWith(QLatin1Char('"'))
           && std::none_of(text.begin(), text.end(), isControl);
}

} // namespace

QByteArrayList metadataKeys()
{
    QByteArrayList keys{spectrumTypeKey.data(), lineSpectrumKey.data()};
    for (const SpectrumTextField &field : spectrumTextFields)
        keys.append(field.key.data());
    return keys;
}

QByteArray metadataKey(const QByteArray &name)
{
    for (const QByteArray &key : metadataKeys()) {
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return key;
    }
    return {};
}

bool setMetadata(QJsonObject &metadata, const QByteArray &key, const QByteArray &text)
{
    const QString name = QString::fromUtf8(key);
    const QString value = QString::fromUtf8(text);
    if (name == spectrumTypeKey) {
        const auto it = std::find_if(
            spectrumTypeNames.begin(), spectrumTypeNames.end(),
            [&](QLatin1String type) { return value.compare(type, Qt::CaseInsensitive) == 0; });
        bool isIndex = false;
        const int index = value.toInt(&isIndex);
        if (it == spectrumTypeNames.end() && !isIndex)
            return false;
        metadata.insert(name, isIndex ? index : int(it - spectrumTypeNames.begin()));
    } else if (name == lineSpectrumKey) {
        if (text != "true" && text != "false")
            return false;
        metadata.insert(name, text == "true");
    } else {
        metadata.insert(name, value);
    }
    return true;
}

QByteArray metadataText(const QString &key, const QJsonValue &value)
{
    const int type = value.toInt(-1);
    if (key == spectrumTypeKey && type >= 0 && type < int(spectrumTypeNames.size()))
        return spectrumTypeNames[type].data();
    if (value.isString() && isPlain(value.toString()))
        return value.toString().toUtf8();
    return jsonOnOneLine(value);
}

QByteArray unquoted(const QByteArray &text)
{
    if (!text.startsWith('"'))
        return text;
    const QJsonValue value = QJsonDocument::fromJson('[' + text + ']').array().at(0);
    return value.isString() ? value.toString().toUtf8() : text;
}
