// SPDX-License-Identifier: GPL-3.0-or-later
// Random actions in the real main window: monkey SEED ACTIONS FOLDER.
// Ends with 0 if nothing was wrong and the memory after all of it, with every spectrum closed, is
// within a tenth of that after the first two thousand actions and the largest document: until then
// Qt fills its caches.
#include "monkey/monkey.h"

#include <QApplication>
#include <QSettings>

#include <algorithm>
#include <cstdio>

#include <malloc.h>

namespace
{

// Bytes that the program has asked for and not given back; 0 under a sanitizer, which has its own.
std::size_t bytesInUse()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        std::fprintf(stderr, "usage: %s SEED ACTIONS FOLDER\n", argv[0]);
        return 2;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    const quint32 seed = arguments[1].toUInt();
    const int count = arguments[2].toInt();
    const QString &folder = arguments[3];
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder);

    Monkey monkey(seed, folder);
    const int warmUp = std::min(count, 2000);
    std::size_t atStart = 0;
    int done = 0;
    while (done < count && monkey.act()) {
        if (++done == warmUp) {
            monkey.discardAll();
            // Qt's tables of widgets never shrink.
            monkey.openLargest();
            monkey.discardAll();
            atStart = bytesInUse();
        }
    }
    monkey.discardAll();
    const std::size_t atEnd = bytesInUse();
    const double ratio = atStart > 0 ? double(atEnd) / double(atStart) : 1;
    const QByteArray what = QByteArrayLiteral("random actions, seed ") + QByteArray::number(seed);
    std::printf("%s\t%d\t%d\t%d saves compared\n", what.constData(), count, done,
                monkey.savesCompared());
    const bool memoryKept = ratio <= 1.1;
    if (atStart > 0 && done > warmUp)
        std::printf("memory with every spectrum closed\t1\t%d\t%.1f MB after %d actions, %.1f MB "
                    "after %d\n",
                    memoryKept, double(atStart) / 1e6, warmUp, double(atEnd) / 1e6, done);
    if (!monkey.error().isEmpty())
        std::fprintf(stderr, "%s\nreplay: %s %u %d FOLDER; actions: %s/actions.log\n",
                     qPrintable(monkey.error()), argv[0], seed, count, qPrintable(folder));
    return done == count && memoryKept ? 0 : 1;
}
