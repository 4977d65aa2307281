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

// Reads the text of a layer, which must outlive it, from its front.
class InchiScanner
{
public:
    explicit InchiScanner(QStringView text) : m_text(text) {}

    [[nodiscard]] bool atEnd() const { return m_text.isEmpty(); }
    [[nodiscard]] QChar peek() const { return atEnd() ? QChar() : m_text.front(); }
    [[nodiscard]] bool atDigit() const;
    bool take(char c);
    QChar takeAny();
    // A number, or the default where none stands; without a default one has to stand there.
    int number(int otherwise);
    int number();
    void expect(char c);

private:
    QStringView m_text;
};
