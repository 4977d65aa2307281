// SPDX-License-Identifier: GPL-3.0-or-later
#include "species/mystandarditemmodel.h"

#include <QMetaType>
#include <QVariant>

namespace
{

bool isNumeric(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

// QVariant's comparison converts first and finds the number 12.5 equal to the text "12.5".
bool sameValue(const QVariant &left, const QVariant &right)
{
    const bool comparable =
        left.metaType() == right.metaType() || (isNumeric(left) && isNumeric(right));
    return comparable && left == right;
}

bool isEmptyText(const QVariant &value)
{
    return value.typeId() == QMetaType::QString && value.toString().isEmpty();
}

} // namespace

MyStandardItemModel::~MyStandardItemModel() = default;

bool MyStandardItemModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid())
        return false;
    const QVariant current = QStandardItemModel::data(index, role);
    if (sameValue(value, current))
        return false;
    if (isEmptyText(value) && (current.isNull() || current.toString().isEmpty()))
        return false;
    return QStandardItemModel::setData(index, value, role);
}
