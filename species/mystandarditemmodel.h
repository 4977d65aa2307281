// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStandardItemModel>

// The item model under both records. It refuses a write that changes nothing visible: it returns
// false, stores nothing and emits nothing, so that leaving a field untouched does not modify the
// document. Values of different types differ unless both are numbers; empty text equals an unset
// cell.
class MyStandardItemModel : public QStandardItemModel
{
    Q_OBJECT

public:
    using QStandardItemModel::QStandardItemModel;
    ~MyStandardItemModel() override;

    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
};
