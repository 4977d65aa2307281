// SPDX-License-Identifier: GPL-3.0-or-later
#include "reading/variants.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QList>
#include <QRandomGenerator>
#include <QStringList>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

int classOf(char byte)
{
    const auto c = static_cast<unsigned char>(byte);
    if (c >= '0' && c <= '9')
        return 0;
    if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'))
        return 1;
    if (c == '"')
        return 2;
    if (c == '{' || c == '}' || c == '[' || c == ']')
        return 3;
    if (c == ':' || c == ',')
        return 4;
    if (c == ' ' || c == '\n')
        return 5;
    if (c == '.' || c == '+' || c == '-')
        return 6;
    return c < 0x80 ? 7 : 8;
}

QByteArray textOf(const QJsonValue &value)
{
    // Only objects and arrays can be documents.
    QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return text.mid(1, text.size() - 2);
}

using Member = std::pair<QString, QJsonValue>;

// The object's text with these members in place of the one at path.
QByteArray textWith(const QJsonObject &object, const QStringList &path,
                    const QList<Member> &members)
{
    QList<QByteArray> texts;
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QByteArray key = textOf(it.key()) + ": ";
        if (it.key() != path.first()) {
            texts.append(key + textOf(it.value()));
        } else if (path.size() > 1) {
            texts.append(key + textWith(it.value().toObject(), path.sliced(1), members));
        } else {
            for (const auto &[name, value] : members)
                texts.append(textOf(name) + ": " + textOf(value));
        }
    }
    return '{' + texts.join(",\n") + '}';
}

// The object with the last of these members, if any, in place of the one at path.
QJsonObject objectWith(QJsonObject object, const QStringList &path, const QList<Member> &members)
{
    const QString &key = path.first();
    if (path.size() > 1) {
        object[key] = objectWith(object[key].toObject(), path.sliced(1), members);
        return object;
    }
    object.remove(key);
    if (!members.isEmpty())
        object[members.last().first] = members.last().second;
    return object;
}

const QList<QJsonValue> &otherValues()
{
    static const QList<QJsonValue> values{QJsonValue(),
                                          true,
                                          false,
                                          0,
                                          4,
                                          -12.5,
                                          u""_s,
                                          u"12.5"_s,
                                          u"a<b>b</b>\nc"_s,
                                          QJsonArray{},
                                          QJsonArray{1, u"x"_s, QJsonValue()},
                                          QJsonObject{},
                                          QJsonObject{{u"E"_s, 1}}};
    return values;
}

// The array without its last element, and with each other value in its middle.
QList<QJsonValue> otherArrays(const QJsonArray &array)
{
    QList<QJsonValue> others;
    if (array.isEmpty())
        return others;
    QJsonArray other = array;
    for (const QJsonValue &element : otherValues()) {
        other[other.size() / 2] = element;
        others.append(other);
    }
    other = array;
    other.removeLast();
    others.append(other);
    return others;
}

// The file without all but one of the spectra beside the object under key: to make a window of each
// takes most of the time, and one is enough to see whether a fault spreads.
QJsonObject withOneNeighbour(const QJsonObject &file, const QString &key)
{
    QJsonObject small;
    bool hasNeighbour = false;
    for (auto it = file.begin(); it != file.end(); ++it) {
        const bool isNeighbour = it.key().startsWith("Dataset"_L1) && it.key() != key;
        if (isNeighbour && std::exchange(hasNeighbour, true))
            continue;
        small.insert(it.key(), it.value());
    }
    return small;
}

void useFaultsAt(const QJsonObject &file, const QStringList &path, const QJsonValue &value,
                 const VariantUser &use)
{
    const auto give = [&](const QString &fault, const QList<Member> &members) {
        use({textWith(file, path, members), path.join(u'/') + u' ' + fault,
             objectWith(file, path, members)});
    };
    const QString &key = path.last();
    give(u"removed"_s, {});
    give(u"under another key"_s, {{key.toLower() + u'1', value}});
    give(u"given twice"_s, {{key, value}, {key, value}});
    for (const QJsonValue &other : {QJsonValue(u"other"_s), QJsonValue(QJsonObject())}) {
        give(u"given again"_s, {{key, value}, {key, other}});
        give(u"given before"_s, {{key, other}, {key, value}});
    }
    for (const QJsonValue &other : otherValues() + otherArrays(value.toArray()))
        give(u"is "_s + QString::fromUtf8(textOf(other).left(40)), {{key, other}});
}

} // namespace

void forEachCut(const QByteArray &file, qsizetype step, const VariantUser &use)
{
    for (qsizetype size = 0; size < file.size(); size += step)
        use({file.first(size), u"cut off after %1 bytes"_s.arg(size), std::nullopt});
}

void forEachFlip(const QByteArray &file, int count, QRandomGenerator &random,
                 const VariantUser &use)
{
    std::array<QList<qsizetype>, 9> places;
    for (qsizetype i = 0; i < file.size(); ++i)
        places[static_cast<std::size_t>(classOf(file[i]))].append(i);
    for (int done = 0; done < count;) {
        const QList<qsizetype> &chosen =
            places[static_cast<std::size_t>(random.bounded(static_cast<int>(places.size())))];
        if (chosen.isEmpty())
            continue;
        const qsizetype at = chosen[random.bounded(chosen.size())];
        Variant variant{file, u"byte %1 is %2"_s, std::nullopt};
        // Half of them stay within the printable characters: the rest seldom is JSON.
        const int byte = random.bounded(2) ? random.bounded(0x20, 0x7f) : random.bounded(256);
        if (file[at] == static_cast<char>(byte))
            continue;
        variant.bytes[at] = static_cast<char>(byte);
        variant.fault = variant.fault.arg(at).arg(byte, 2, 16);
        use(variant);
        ++done;
    }
}

void forEachKeyFault(const QJsonObject &file, const VariantUser &use)
{
    for (auto it = file.begin(); it != file.end(); ++it) {
        useFaultsAt(file, {it.key()}, it.value(), use);
        const QJsonObject small = withOneNeighbour(file, it.key());
        const QJsonObject inner = it.value().toObject();
        for (auto member = inner.begin(); member != inner.end(); ++member)
            useFaultsAt(small, {it.key(), member.key()}, member.value(), use);
    }
}
