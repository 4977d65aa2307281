// SPDX-License-Identifier: GPL-3.0-or-later
#include "pictures/ownsvg.h"

#include "pictures/drawing.h"
#include "pictures/picture.h"

#include <QHash>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <vector>

namespace
{

constexpr int deepest = 200;              // elements within each other
constexpr qint64 mostDrawn = 200'000;     // elements, each as often as it is used
constexpr qint64 mostPixels = 16'000'000; // of the pictures in it
constexpr qsizetype longest = 8'000'000;  // bytes of what is written

// The element's name without the prefix of its name space.
QStringView localName(QStringView name)
{
    return name.sliced(name.lastIndexOf(QLatin1Char(':')) + 1);
}

// The picture that an address itself contains; a null image if it is elsewhere or refused.
QImage ownPicture(QStringView address)
{
    const qsizetype comma = address.indexOf(QLatin1Char(','));
    if (!address.startsWith(QLatin1String("data:")) || comma < 0
        || !address.first(comma).endsWith(QLatin1String(";base64")))
        return {};
    const QByteArray bytes = QByteArray::fromBase64(address.sliced(comma + 1).toLatin1());
    return isDrawing(bytes) ? QImage() : decodePicture(bytes);
}

// Counts how often elements are drawn, through "use" too.
class Uses
{
public:
    void begin(const QString &id, const QString &used)
    {
        m_open.push_back(static_cast<int>(m_elements.size()));
        m_elements.emplace_back().used = used;
        if (!id.isEmpty())
            m_ids.insert(id, m_open.back());
    }

    void end()
    {
        const int element = m_open.back();
        m_open.pop_back();
        if (!m_open.empty())
            m_elements[m_open.back()].children.push_back(element);
    }

    [[nodiscard]] bool areFew() { return drawnBy(0, 0) <= mostDrawn; }

private:
    struct Element {
        QString used; // the id of another one
        std::vector<int> children;
        qint64 drawn = 0; // 0 if it is not known yet, -1 while it is being found
        int depth = 1;    // of what is in it and what that uses
    };

    // An element that uses itself, or lies too deep, counts as too many.
    qint64 drawnBy(int index, int level)
    {
        Element &element = m_elements[index];
        if (element.drawn > 0)
            return element.drawn;
        if (element.drawn < 0 || level > deepest)
            return mostDrawn + 1;
        element.drawn = -1;
        std::vector<int> within = element.children;
        const auto used = m_ids.constFind(element.used);
        if (!element.used.isEmpty() && used != m_ids.constEnd())
            within.push_back(*used);
        qint64 drawn = 1;
        for (const int each : within) {
            drawn += drawnBy(each, level + 1);
            element.depth = std::max(element.depth, m_elements[each].depth + 1);
            if (drawn > mostDrawn || element.depth > deepest)
                return element.drawn = mostDrawn + 1;
        }
        return element.drawn = drawn;
    }

    std::vector<Element> m_elements;
    std::vector<int> m_open;
    QHash<QString, int> m_ids;
};

class OwnSvg
{
public:
    explicit OwnSvg(const QByteArray &text) : m_reader(text), m_writer(&m_own)
    {
        m_reader.setNamespaceProcessing(false);
    }

    QByteArray take()
    {
        while (!m_reader.atEnd() && m_isGood) {
            m_reader.readNext();
            if (m_reader.isStartElement())
                begin();
            else if (m_reader.isEndElement())
                end();
            else if (m_reader.isCharacters())
                m_writer.writeCharacters(m_reader.text().toString());
            m_isGood = m_isGood && m_own.size() <= longest;
        }
        return m_isGood && !m_reader.hasError() && m_depth == 0 && m_hasRoot && m_uses.areFew()
                   ? m_own
                   : QByteArray();
    }

private:
    void begin()
    {
        const QStringView name = localName(m_reader.qualifiedName());
        if (m_depth == 0) {
            m_isGood = name == QLatin1String("svg") && !m_hasRoot;
            m_hasRoot = true;
        }
        if (name == QLatin1String("script") || name == QLatin1String("foreignObject"))
            return m_reader.skipCurrentElement();
        m_isGood = m_isGood && ++m_depth <= deepest;
        m_writer.writeStartElement(m_reader.qualifiedName().toString());
        QString id;
        QString used;
        for (const QXmlStreamAttribute &attribute : m_reader.attributes())
            take(attribute, name, id, used);
        m_uses.begin(id, used);
    }

    void end()
    {
        --m_depth;
        m_writer.writeEndElement();
        m_uses.end();
    }

    void take(const QXmlStreamAttribute &attribute, QStringView element, QString &id, QString &used)
    {
        const QString qualified = attribute.qualifiedName().toString();
        QString value = attribute.value().toString();
        const QStringView name = localName(qualified);
        if (name == QLatin1String("id"))
            id = value;
        if (name == QLatin1String("href") && !value.startsWith(QLatin1Char('#'))) {
            if (element != QLatin1String("image"))
                return;
            const QImage picture = ownPicture(value);
            m_pixels += qint64{picture.width()} * picture.height();
            m_isGood = m_isGood && m_pixels <= mostPixels;
            if (picture.isNull() || !m_isGood)
                return;
            value = QLatin1String("data:image/png;base64,")
                    + QLatin1String(encodePng(picture).toBase64());
        } else if (name == QLatin1String("href") && element == QLatin1String("use")) {
            used = value.sliced(1);
        }
        m_writer.writeAttribute(qualified, value);
    }

    QXmlStreamReader m_reader;
    QByteArray m_own;
    QXmlStreamWriter m_writer;
    Uses m_uses;
    qint64 m_pixels = 0;
    int m_depth = 0;
    bool m_hasRoot = false;
    bool m_isGood = true;
};

} // namespace

QByteArray ownSvg(const QByteArray &text)
{
    return OwnSvg(text).take();
}
