// SPDX-License-Identifier: GPL-3.0-or-later
#include <QCoreApplication>
#include <QImageIOPlugin>

namespace
{

// Other tests must not load the plugin.
bool takesAll()
{
    return QCoreApplication::instance()->property("strangerTakesAll").toBool();
}

class StrangerHandler : public QImageIOHandler
{
public:
    bool canRead() const override { return takesAll(); }
    bool read(QImage *image) override
    {
        *image = QImage(3, 3, QImage::Format_RGB32);
        image->fill(Qt::red);
        QCoreApplication::instance()->setProperty("strangerHasRead", true);
        return true;
    }
};

} // namespace

// A third-party image plugin that claims to read everything, like those that pass files to other
// programs.
class StrangerPlugin : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QImageIOHandlerFactoryInterface" FILE "stranger.json")

public:
    StrangerPlugin() { QCoreApplication::instance()->setProperty("strangerIsLoaded", true); }
    Capabilities capabilities(QIODevice *, const QByteArray &format) const override
    {
        return (format.isEmpty() && takesAll()) || format == "stranger" ? CanRead : Capabilities();
    }
    QImageIOHandler *create(QIODevice *device, const QByteArray &format) const override
    {
        auto *handler = new StrangerHandler;
        handler->setDevice(device);
        handler->setFormat(format);
        return handler;
    }
};

#include "strangerplugin.moc"
