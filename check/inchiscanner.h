// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QChar>
#include <QString>
#include <QStringView>

// An error of a layer; thrown, as the grammars are recursive, and caught by parseInchi().
struct InchiLayerError {
    QString message; // a sentence without a full stop
};
[[noreturn]] void failInchi(const QString &message);

// Reads a layer from its front; the text must outlive it.
class InchiScanner
{
public:
    explicit InchiScanner(QStringView text) : m_text(text) {}

    [[nodiscard]] bool atEnd() const { return m_text.isEmpty(); }
    [[nodiscard]] QChar peek() const { return atEnd() ? QChar() : m_text.front(); }
    [[nodiscard]] bool atDigit() const;
    bool take(char c);
    QChar takeAny();
    // The next number; the default if there is none, or an error without a default.
    int number(int otherwise);
    int number();
    void expect(char c);

private:
    QStringView m_text;
};
