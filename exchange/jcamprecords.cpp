// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/jcamprecords.h"

#include "exchange/tablelines.h"

#include <algorithm>

namespace
{

QByteArray nameOf(const QByteArray &label)
{
    QByteArray name;
    const QByteArray upper = label.toUpper();
    for (const char c : upper) {
        if (!QByteArrayView(" -/_").contains(c))
            name += c;
    }
    return name;
}

// Removes the comment of a line. Returns whether there was one.
bool takeComment(QByteArray &line)
{
    const qsizetype comment = line.indexOf("$$");
    if (comment < 0)
        return false;
    line.truncate(comment);
    return true;
}

} // namespace

const JcampRecord *JcampBlock::find(const char *name) const
{
    const auto it = std::find_if(records.begin(), records.end(),
                                 [&](const JcampRecord &record) { return record.name == name; });
    return it != records.end() ? &*it : nullptr;
}

QByteArray JcampBlock::value(const char *name) const
{
    const JcampRecord *record = find(name);
    return record ? record->lines.join(' ').simplified() : QByteArray();
}

std::variant<QList<JcampBlock>, ExchangeError> jcampBlocks(const QByteArray &bytes)
{
    QByteArray warning;
    QList<JcampBlock> open; // a block may stand within another, which links them
    QList<JcampBlock> closed;
    JcampRecord *record = nullptr;
    qsizetype last = 0;
    for (const TableLine &line : linesOfText(bytes, warning)) {
        QByteArray text = line.text;
        const bool hasComment = takeComment(text);
        if (hasComment && !open.isEmpty())
            ++open.last().comments;
        last = line.number;
        if (!text.startsWith("##")) {
            if (record)
                record->lines.append(text);
            else if (!text.trimmed().isEmpty())
                return ExchangeError{line.number, "text outside a labelled data record"};
            continue;
        }
        const qsizetype equals = text.indexOf('=');
        if (equals < 0)
            return ExchangeError{line.number, "a label without \"=\""};
        const QByteArray label = text.sliced(2, equals - 2);
        const QByteArray name = nameOf(label);
        if (name == "TITLE") {
            open.append(JcampBlock());
        } else if (open.isEmpty()) {
            return ExchangeError{line.number, "the file does not begin with ##TITLE="};
        } else if (name == "END") {
            if (pointTable(open.last()) || open.last().find("BLOCKS") == nullptr)
                closed.append(open.last());
            open.removeLast();
            record = nullptr;
            continue;
        }
        open.last().records.append({line.number, label, name, {text.sliced(equals + 1)}});
        record = &open.last().records.last();
    }
    if (!open.isEmpty())
        return ExchangeError{last, "the end is missing: no ##END="};
    if (closed.isEmpty())
        return ExchangeError{0, "there is no data block"};
    return closed;
}

const JcampRecord *pointTable(const JcampBlock &block)
{
    for (const char *name : {"XYDATA", "XYPOINTS", "PEAKTABLE"}) {
        if (const JcampRecord *record = block.find(name))
            return record;
    }
    return nullptr;
}
