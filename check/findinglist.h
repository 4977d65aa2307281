// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "check/finding.h"
#include "check/jsontext.h"
#include "check/utf8text.h"

#include <QList>

#include <optional>

// The place of a finding in a document.
struct Place {
    QString pointer;
    int line = 1;
    int column = 1;
};

// Collects the findings of one file. Findings of checks that are not enabled are dropped.
class FindingList
{
    Q_DISABLE_COPY_MOVE(FindingList)

public:
    // bytes must outlive this: the file's text, or a part of it that begins at start.
    FindingList(QString path, const QByteArray &bytes, const CheckSet &enabled,
                TextPosition start = {});

    // Adds a finding at a value, or at the key of a member. The severity may be milder than the
    // check's own.
    void add(Check check, const JsonValue &value, const QString &message, const QString &hint = {},
             std::optional<Severity> severity = {});
    void addAtKey(Check check, const JsonValue &member, const QString &message,
                  const QString &hint = {});
    // Adds a finding at a byte of a document, where there is no pointer.
    void addAt(Check check, qsizetype offset, const QString &message, const QString &hint = {});
    // Adds a finding at the byte where reading ends because the text is no document; shows the line
    // and a caret.
    void addAtByte(Check check, qsizetype offset, const QString &message, const QString &hint = {});
    // Adds a finding at the place where reading ends, which may be outside the bytes.
    void addUnread(Check check, const Place &place, const QString &message);
    // Adds a finding at a place that may be outside the bytes.
    void addAtPlace(Check check, const Place &place, const QString &message,
                    const QString &hint = {});

    // Whether the check has found something, enabled or not.
    [[nodiscard]] bool has(Check check) const
    {
        return m_found.test(static_cast<std::size_t>(check));
    }

    // Whether a check that belongs() has found something.
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
