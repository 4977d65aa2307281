// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/finding.h"
#include "check/jsontext.h"
#include "check/utf8text.h"

#include <QList>

#include <optional>

// Where a finding of a document stands.
struct Place {
    QString pointer;
    int line = 1;
    int column = 1;
};

// Collects what the checks find in one file. Findings of checks that are not asked for are dropped.
class FindingList
{
    Q_DISABLE_COPY_MOVE(FindingList)

public:
    // bytes, the file's text or a part of it that starts at start, must outlive it.
    FindingList(QString path, const QByteArray &bytes, const CheckSet &enabled,
                TextPosition start = {});

    // At a value, or at the key of an object's member. A milder severity than the check's own may
    // be given.
    void add(Check check, const JsonValue &value, const QString &message, const QString &hint = {},
             std::optional<Severity> severity = {});
    void addAtKey(Check check, const JsonValue &member, const QString &message,
                  const QString &hint = {});
    // At a byte of a document, for what has no pointer.
    void addAt(Check check, qsizetype offset, const QString &message, const QString &hint = {});
    // At a byte where reading ends, as the text is no document; shows the line and a caret.
    void addAtByte(Check check, qsizetype offset, const QString &message, const QString &hint = {});
    // At a place where reading ends, which the bytes need not hold.
    void addUnread(Check check, const Place &place, const QString &message);
    // At a place that the bytes need not hold.
    void addAtPlace(Check check, const Place &place, const QString &message,
                    const QString &hint = {});

    // Whether the check has found something, asked for or not.
    [[nodiscard]] bool has(Check check) const
    {
        return m_found.test(static_cast<std::size_t>(check));
    }

    // Whether one has of those for which belongs is true.
    [[nodiscard]] bool hasAny(bool (*belongs)(Check)) const;
    [[nodiscard]] bool isAsked(Check check) const
    {
        return m_enabled.test(static_cast<std::size_t>(check));
    }

    [[nodiscard]] Place placeOf(const JsonValue &value);
    [[nodiscard]] Place placeOfKey(const JsonValue &member);
    [[nodiscard]] QList<Finding> take() { return std::move(m_findings); }

private:
    void append(Check check, const Place &place, const QString &message, const QString &hint,
                std::optional<Severity> severity, const QString &source = {},
                bool endsReading = false);

    QString m_path;
    const QByteArray &m_bytes;
    PositionFinder m_positions;
    CheckSet m_enabled;
    CheckSet m_found;
    QList<Finding> m_findings;
};
