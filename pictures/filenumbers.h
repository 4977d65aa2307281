// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QtEndian>

#include <optional>

// Reads numbers from the bytes of a file, which must outlive it. Places count from the start;
// outside the file there is no number.
class FileNumbers
{
public:
    enum class Order { LittleEndian, BigEndian };

    FileNumbers(QByteArrayView bytes, Order order) : m_bytes(bytes), m_order(order) {}

    // The size of the file in bytes.
    [[nodiscard]] quint64 size() const { return static_cast<quint64>(m_bytes.size()); }

    // Whether length bytes from a place on lie within the file.
    [[nodiscard]] bool holds(quint64 place, quint64 length) const
    {
        return place <= size() && length <= size() - place;
    }

    // The number at a place: quint8, quint16, quint32, ...
    template <typename Number>
    [[nodiscard]] std::optional<Number> at(quint64 place) const
    {
        if (!holds(place, sizeof(Number)))
            return std::nullopt;
        const char *data = m_bytes.data() + place;
        return m_order == Order::LittleEndian ? qFromLittleEndian<Number>(data)
                                              : qFromBigEndian<Number>(data);
    }

private:
    QByteArrayView m_bytes;
    Order m_order;
};
