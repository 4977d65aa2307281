// SPDX-License-Identifier: GPL-3.0-or-later
// dragsource <file>...: a window like a file manager's, from which these files can be dragged. It
// says on the standard output what becomes of the drag, a line each time: "accepts <action>" or
// "refuses" when the window under the mouse does so, "done <action>" at its end. Actions are
// numbers of Qt::DropAction.

#include <QApplication>
#include <QDrag>
#include <QFileInfo>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

#include <cstdio>

namespace
{

void say(const char *what, Qt::DropAction action)
{
    std::printf("%s %d\n", what, static_cast<int>(action));
    std::fflush(stdout);
}

class DragSource final : public QLabel
{
public:
    explicit DragSource(const QStringList &files) : QLabel(QStringLiteral("Drag me"))
    {
        for (const QString &file : files)
            m_urls.append(QUrl::fromLocalFile(QFileInfo(file).absoluteFilePath()));
        setWindowTitle(QStringLiteral("Drag source"));
        setAlignment(Qt::AlignCenter);
        setFixedSize(200, 100);
    }

protected:
    void mousePressEvent(QMouseEvent * /*event*/) override
    {
        auto *files = new QMimeData;
        files->setUrls(m_urls);
        auto *drag = new QDrag(this);
        drag->setMimeData(files);
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) {
            say(action == Qt::IgnoreAction ? "refuses" : "accepts", action);
        });
        std::puts("begins");
        std::fflush(stdout);
        // As file managers do within one disk: they offer to move the file.
        const Qt::DropAction action = drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
        say("done", action);
    }

private:
    QList<QUrl> m_urls;
};

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    DragSource source(QCoreApplication::arguments().mid(1));
    source.show();
    return QApplication::exec();
}
