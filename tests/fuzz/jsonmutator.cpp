// SPDX-License-Identifier: GPL-3.0-or-later
#include "fuzz/invariant.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

#include <array>
#include <cmath>
#include <cstring>

using namespace Qt::StringLiterals;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t *data, std::size_t size, std::size_t maxSize);

namespace
{

// Keys of all the formats: the wrong one in a place is worth a try too.
const QStringList &keys()
{
    static const QStringList all{u"Type"_s,
                                 u"Species"_s,
                                 u"Dataset1"_s,
                                 u"Dataset2"_s,
                                 u"Dataset10"_s,
                                 u"Dataset007"_s,
                                 u"Name"_s,
                                 u"Aliases"_s,
                                 u"Mass"_s,
                                 u"Formula"_s,
                                 u"InChI"_s,
                                 u"CAS"_s,
                                 u"PubChem"_s,
                                 u"AIE"_s,
                                 u"VIE"_s,
                                 u"AIE_Comment"_s,
                                 u"VIE_Comment"_s,
                                 u"StructuralFormula"_s,
                                 u"Title"_s,
                                 u"Uploader"_s,
                                 u"DOI"_s,
                                 u"SpectType"_s,
                                 u"FurtherRefs"_s,
                                 u"T"_s,
                                 u"FurtherComments"_s,
                                 u"CreatedDate"_s,
                                 u"FacilityDate"_s,
                                 u"LineSpectrum"_s,
                                 u"Source"_s,
                                 u"Resolution"_s,
                                 u"Normalization"_s,
                                 u"LevelOfTheory"_s,
                                 u"ConvolutionFWHM"_s,
                                 u"E"_s,
                                 u"I"_s,
                                 u"Spectrum"_s};
    return all;
}

class Mutator
{
public:
    explicit Mutator(quint32 seed) : m_random(seed) {}

    QJsonObject mutated(QJsonObject object)
    {
        // One level down in half of the cases where there is one.
        const QStringList present = object.keys();
        if (!present.isEmpty() && m_random.bounded(2)) {
            const QString key = present[below(present.size())];
            if (object[key].isObject()) {
                object[key] = mutated(object[key].toObject());
                return object;
            }
            if (m_random.bounded(4) == 0)
                object.remove(key);
            else
                object[key] = mutated(object[key]);
            return object;
        }
        object[keys()[below(keys().size())]] = fresh();
        return object;
    }

private:
    qsizetype below(qsizetype count) { return m_random.bounded(static_cast<qint64>(count)); }

    QJsonValue fresh()
    {
        static const QList<QJsonValue> values{QJsonValue(),
                                              true,
                                              false,
                                              0,
                                              -1,
                                              4,
                                              1.5e300,
                                              -2.5e-310,
                                              12.345678,
                                              u""_s,
                                              u"Species v1"_s,
                                              u"Spectrum v1"_s,
                                              u"H<sub>2</sub>O"_s,
                                              u"a<b & c\r\nd"_s,
                                              QJsonArray{},
                                              QJsonArray{1, 2.5},
                                              QJsonArray{3, u"x"_s},
                                              QJsonObject{},
                                              QJsonObject{{u"E"_s, 10.5}, {u"I"_s, 2}},
                                              QJsonArray{QJsonObject{{u"E"_s, 10.5}}}};
        return values[below(values.size())];
    }

    QJsonValue mutated(const QJsonValue &value)
    {
        if (value.isString())
            return mutatedText(value.toString());
        if (value.isDouble() && m_random.bounded(2))
            return mutatedNumber(value.toDouble());
        if (value.isArray() && m_random.bounded(4)) {
            QJsonArray array = value.toArray();
            const qsizetype at = below(array.size() + 1);
            if (at == array.size())
                array.append(fresh());
            else if (m_random.bounded(4) == 0)
                array.removeAt(at);
            else
                array[at] = mutated(array[at]);
            return array;
        }
        return fresh();
    }

    QJsonValue mutatedNumber(double number)
    {
        std::array<std::uint8_t, sizeof number> bytes;
        std::memcpy(bytes.data(), &number, sizeof number);
        LLVMFuzzerMutate(bytes.data(), sizeof number, sizeof number);
        std::memcpy(&number, bytes.data(), sizeof number);
        return std::isfinite(number) ? number : 0.0;
    }

    QJsonValue mutatedText(const QString &text)
    {
        QByteArray bytes = text.toUtf8();
        const qsizetype size = bytes.size();
        bytes.resize(size + 64);
        auto *data = reinterpret_cast<std::uint8_t *>(bytes.data());
        bytes.resize(static_cast<qsizetype>(LLVMFuzzerMutate(
            data, static_cast<std::size_t>(size), static_cast<std::size_t>(bytes.size()))));
        return QString::fromUtf8(bytes);
    }

    QRandomGenerator m_random;
};

} // namespace

// Every other mutation is one of the JSON tree instead of its bytes: plain flips seldom get past
// the parser.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t *data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed)
{
    const QJsonDocument document = QJsonDocument::fromJson(bytesOf(data, size));
    if (!document.isObject() || seed % 2 == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    const QByteArray result =
        QJsonDocument(Mutator(seed).mutated(document.object())).toJson(QJsonDocument::Compact);
    if (static_cast<std::size_t>(result.size()) > maxSize)
        return LLVMFuzzerMutate(data, size, maxSize);
    std::memcpy(data, result.constData(), static_cast<std::size_t>(result.size()));
    return static_cast<std::size_t>(result.size());
}
