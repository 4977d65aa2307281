// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/structureimage.h"
#include "species/speciesmodel.h"
#include "support/dialogs.h"
#include "support/files.h"
#include "support/httpsservice.h"
#include "support/mainwindowfixture.h"
#include "support/warnings.h"
#include "widgets/cleantextedit.h"

#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QElapsedTimer>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QNetworkAccessManager>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTest>
#include <QTimer>

namespace
{

QImage drawing(int width = 40, int height = 30)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int x = 0; x < width; ++x)
        image.setPixel(x, x % height, qRgb(x * 5 % 256, 10, 200));
    return image;
}

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, format))
        QTest::qFail("the picture cannot be encoded", __FILE__, __LINE__);
    return bytes;
}

const QByteArray ok = "200 OK";

} // namespace

// The structure image: its download from a real HTTPS server, the clipboard and the context menu.
class TestMainWindowImage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(QSslSocket::supportsSsl());
        const QString host = structureImageUrl(QStringLiteral("58-08-2")).host();
        m_service = std::make_unique<HttpsService>(host, m_folder.path());
        m_untrusting = QSslConfiguration::defaultConfiguration();
    }

    void init()
    {
        failOnWarnings();
        m_service->makeTrusted();
        m_service->requests.clear();
        m_service->tunnels.clear();
        m_service->protocols.clear();
    }

    void theAddressIsThatOfTheDigitsWithoutHyphens()
    {
        const QUrl url = structureImageUrl(QStringLiteral("58-08-2"));
        QCOMPARE(url.scheme(), QStringLiteral("https"));
        QVERIFY(!url.host().isEmpty());
        QCOMPARE(url.toString(QUrl::RemoveScheme | QUrl::RemoveAuthority),
                 QStringLiteral("/cgi/cbook.cgi?Struct=C58082&Type=Color"));
    }

    void blanksAroundTheNumberAreTrimmedAndItsDigitsRequested()
    {
        MainWindowFixture fixture;
        m_service->answerWith({HttpsService::response(ok, encoded(drawing(), "PNG"))});
        download(fixture, QStringLiteral("\u00a058-08-2 "));
        QTRY_VERIFY(!image(fixture).isNull());
        QCOMPARE(m_service->requests.size(), 1);
        const QByteArray request = m_service->requests.first();
        QVERIFY2(request.startsWith("GET /cgi/cbook.cgi?Struct=C58082&Type=Color HTTP/1.1\r\n"),
                 request.constData());
        const QByteArray host = structureImageUrl(QStringLiteral("58-08-2")).host().toLatin1();
        const QByteArray hostLine = "\r\nHost: " + host + "\r\n";
        QVERIFY(request.contains(hostLine));
        QCOMPARE(m_service->tunnels, QList<QByteArray>{host + ":443"});
        QVERIFY(!fixture.find<QLabel>(QStringLiteral("imageLabel"))->pixmap().isNull());
        QVERIFY(fixture.isModified());
    }

    void aWrongNumberIsSaidAndNothingIsSent_data()
    {
        QTest::addColumn<QString>("cas");
        for (const char *cas : {"58-08-3", "", "water", "58-08-2 x", "12345678-08-2"})
            QTest::newRow(cas) << QString::fromLatin1(cas);
    }
    void aWrongNumberIsSaidAndNothingIsSent()
    {
        QFETCH(QString, cas);
        MainWindowFixture fixture;
        Dialogs dialogs;
        dialogs.press();
        download(fixture, cas);
        QCOMPARE(dialogs.boxes.value(0).icon, QMessageBox::Warning);
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("Invalid Input"));
        QCOMPARE(dialogs.boxes.value(0).text,
                 QStringLiteral("Please enter a valid CAS number (e.g., 58-08-2)."));
        QCOMPARE(dialogs.boxes.value(0).parent, &fixture.window);
        QTest::qWait(50);
        QVERIFY(m_service->tunnels.isEmpty());
    }

    void theSameImageAgainMarksNothing()
    {
        MainWindowFixture fixture;
        const QImage picture = drawing();
        const QString file = fixture.path(QStringLiteral("a.json"));
        QJsonObject object = speciesFileWith(QStringLiteral("x"));
        object[QLatin1String("Species")] =
            QJsonObject{{QStringLiteral("StructuralFormula"),
                         QString::fromLatin1(encoded(picture, "PNG").toBase64())}};
        writeFile(file, object);
        QVERIFY(fixture.window.loadSpeciesFile(file));
        m_service->answerWith({HttpsService::response(ok, encoded(picture, "BMP"))});
        const QSignalSpy finished(manager(fixture), &QNetworkAccessManager::finished);
        download(fixture, QStringLiteral("58-08-2"));
        QTRY_COMPARE(finished.size(), 1);
        QVERIFY(!fixture.isModified());
    }

    void aSlowReplyIsWaitedFor()
    {
        MainWindowFixture fixture;
        const QByteArray body = encoded(drawing(), "PNG");
        m_service->answerWith({[&](QSslSocket *socket) {
            socket->write("HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size())
                          + "\r\n\r\n");
            auto *timer = new QTimer(socket);
            QObject::connect(timer, &QTimer::timeout, socket, [socket, body, sent = 0]() mutable {
                socket->write(body.mid(sent, 40));
                sent += 40;
            });
            timer->start(10);
        }});
        download(fixture, QStringLiteral("58-08-2"));
        QTRY_VERIFY(!image(fixture).isNull());
    }

    void itIsGivenUpAfterHalfAMinuteWithoutAByte_data()
    {
        QTest::addColumn<HttpsService::Answer>("answer");
        QTest::newRow("nothing comes") << HttpsService::Answer(HttpsService::stall);
        QTest::newRow("the answer stops within its headers") << HttpsService::Answer(
            [](QSslSocket *socket) { socket->write("HTTP/1.1 200 OK\r\n"); });
        QTest::newRow("the image stops") << HttpsService::Answer([](QSslSocket *socket) {
            socket->write("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\nabc");
        });
    }
    void itIsGivenUpAfterHalfAMinuteWithoutAByte()
    {
        QFETCH(HttpsService::Answer, answer);
        MainWindowFixture fixture;
        QCOMPARE(manager(fixture)->transferTimeout(), 30'000);
        manager(fixture)->setTransferTimeout(300);
        m_service->answerWith({answer});
        Dialogs dialogs;
        dialogs.press();
        download(fixture, QStringLiteral("58-08-2"));
        QTRY_COMPARE(dialogs.boxes.size(), 1);
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("Download Failed"));
        QCOMPARE(m_service->requests.size(), 1);
        QVERIFY(!fixture.isModified());
    }

    // A download may take longer than one allowed pause.
    void bytesThatKeepComingAreWaitedFor()
    {
        MainWindowFixture fixture;
        constexpr int patience = 1000; // ms
        manager(fixture)->setTransferTimeout(patience);
        const QByteArray body = encoded(drawing(), "PNG");
        m_service->answerWith({[&](QSslSocket *socket) {
            socket->write("HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size())
                          + "\r\n\r\n");
            auto *timer = new QTimer(socket);
            const qsizetype piece = body.size() / 15;
            QObject::connect(timer, &QTimer::timeout, socket,
                             [socket, body, piece, sent = 0]() mutable {
                                 socket->write(body.mid(sent, piece));
                                 sent += int(piece);
                             });
            timer->start(100);
        }});
        QElapsedTimer elapsed;
        elapsed.start();
        download(fixture, QStringLiteral("58-08-2"));
        QTRY_VERIFY(!image(fixture).isNull());
        QVERIFY(elapsed.elapsed() > patience);
    }

    void aServiceThatOffersHttp2IsAskedInHttp11()
    {
        MainWindowFixture fixture;
        m_service->answerWith({HttpsService::response(ok, encoded(drawing(), "PNG"))});
        download(fixture, QStringLiteral("58-08-2"));
        QTRY_VERIFY(!m_service->protocols.isEmpty());
        QVERIFY2(!m_service->protocols.contains("h2"), "the service's wish was granted");
        QTRY_VERIFY(!image(fixture).isNull());
        QVERIFY(m_service->requests.value(0).contains(" HTTP/1.1\r\n"));
    }

    // It belongs to no entry.
    void anImageThatComesLateGoesToTheEntryThenShown()
    {
        MainWindowFixture fixture;
        const QString next = fixture.path(QStringLiteral("next.json"));
        writeFile(next, speciesFileWith(QStringLiteral("ammonia")));
        QPointer<QSslSocket> waiting;
        m_service->answerWith({[&](QSslSocket *socket) { waiting = socket; }});
        download(fixture, QStringLiteral("58-08-2"));
        QTRY_VERIFY(waiting);
        QVERIFY(fixture.window.loadSpeciesFile(next));
        HttpsService::response(ok, encoded(drawing(), "PNG"))(waiting);
        QTRY_VERIFY(!image(fixture).isNull());
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit - next.json *"));
    }

    void errorsAreSaidAndChangeNothing_data()
    {
        QTest::addColumn<QList<HttpsService::Answer>>("answers");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("remark");
        const QString failed = QStringLiteral("Download Failed");
        const QString failedText = QStringLiteral("Failed to download the image.");
        const QString image = QStringLiteral("Image Error");
        const QString imageText = QStringLiteral("Failed to load the image data.");
        const QString none;
        using Answers = QList<HttpsService::Answer>;
        const QByteArray png = encoded(drawing(), "PNG");
        QTest::newRow("not found") << Answers{HttpsService::response("404 Not Found", png)}
                                   << failed << failedText << none;
        QTest::newRow("server error")
            << Answers{HttpsService::response("500 Oops", png)} << failed << failedText << none;
        QTest::newRow("broken") << Answers{[png](QSslSocket *socket) {
            socket->write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n" + png);
            socket->disconnectFromHost();
        }} << failed << failedText
                                << none;
        QTest::newRow("no answer")
            << Answers{[](QSslSocket *socket) { socket->abort(); }} << failed << failedText << none;
        QTest::newRow("redirected to plain http") << Answers{HttpsService::response(
            "302 Found", {}, "Location: http://127.0.0.1:9/image\r\n")}
                                                  << failed << failedText << none;
        QTest::newRow("web page") << Answers{HttpsService::response(ok, "<html>none</html>")}
                                  << image << imageText << none;
        QTest::newRow("empty") << Answers{HttpsService::response(ok, {})} << image << imageText
                               << none;
        QTest::newRow("cut off picture")
            << Answers{HttpsService::response(ok, png.first(20))} << image << imageText << none;
        QTest::newRow("more than 16 MB")
            << Answers{HttpsService::response(ok, png + QByteArray(17 << 20, 'x'))} << image
            << imageText << QStringLiteral("It is larger than 16 MB.");
        QImage large(10000, 10000, QImage::Format_Mono);
        large.fill(1);
        QTest::newRow("more than 64 megapixels")
            << Answers{HttpsService::response(ok, encoded(large, "PNG"))} << image << imageText
            << none;
    }
    void errorsAreSaidAndChangeNothing()
    {
        QFETCH(QList<HttpsService::Answer>, answers);
        QFETCH(QString, title);
        QFETCH(QString, text);
        MainWindowFixture fixture;
        m_service->answerWith(answers);
        Dialogs dialogs;
        dialogs.press();
        download(fixture, QStringLiteral("58-08-2"));
        QTRY_COMPARE_WITH_TIMEOUT(dialogs.boxes.size(), 1, 20000);
        QCOMPARE(dialogs.boxes.value(0).icon, QMessageBox::Critical);
        QCOMPARE(dialogs.boxes.value(0).title, title);
        QCOMPARE(dialogs.boxes.value(0).text, text);
        QTEST(dialogs.boxes.value(0).informativeText, "remark");
        QCOMPARE(dialogs.boxes.value(0).parent, &fixture.window);
        QVERIFY(image(fixture).isNull());
        QVERIFY(!fixture.isModified());
    }

    void aRedirectionWithinHttpsIsFollowed()
    {
        MainWindowFixture fixture;
        m_service->answerWith({HttpsService::response("302 Found", {}, "Location: /elsewhere\r\n"),
                               HttpsService::response(ok, encoded(drawing(), "PNG"))});
        download(fixture, QStringLiteral("58-08-2"));
        QTRY_VERIFY(!image(fixture).isNull());
        QVERIFY(m_service->requests.value(1).startsWith("GET /elsewhere "));
    }

    void aRedirectionToAnotherHostIsNotFollowed_data()
    {
        QTest::addColumn<QByteArray>("place");
        const QByteArray host = structureImageUrl(QStringLiteral("58-08-2")).host().toLatin1();
        QTest::newRow("another host") << QByteArray("https://elsewhere.example/image");
        QTest::newRow("a host of the same domain") << "https://images." + host + "/image";
        QTest::newRow("another port") << "https://" + host + ":8443/image";
        QTest::newRow("another host, of the same scheme")
            << QByteArray("//elsewhere.example/image");
    }
    void aRedirectionToAnotherHostIsNotFollowed()
    {
        QFETCH(QByteArray, place);
        MainWindowFixture fixture;
        m_service->answerWith(
            {HttpsService::response("302 Found", {}, "Location: " + place + "\r\n"),
             HttpsService::response(ok, encoded(drawing(), "PNG"))});
        Dialogs dialogs;
        dialogs.press();
        download(fixture, QStringLiteral("58-08-2"));
        QTRY_COMPARE(dialogs.boxes.size(), 1);
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("Download Failed"));
        QCOMPARE(m_service->tunnels.size(), 1);
        QVERIFY(image(fixture).isNull());
    }

    void aServerThatIsNotTrustedIsRefused()
    {
        QSslConfiguration::setDefaultConfiguration(m_untrusting);
        MainWindowFixture fixture;
        m_service->answerWith({HttpsService::response(ok, encoded(drawing(), "PNG"))});
        Dialogs dialogs;
        dialogs.press();
        download(fixture, QStringLiteral("58-08-2"));
        QTRY_COMPARE(dialogs.boxes.size(), 1);
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("Download Failed"));
        QVERIFY(m_service->requests.isEmpty());
    }

    void theLastImageToArriveIsKept()
    {
        MainWindowFixture fixture;
        m_service->answerWith({HttpsService::response(ok, encoded(drawing(40, 30), "PNG")),
                               HttpsService::response(ok, encoded(drawing(60, 20), "PNG"))});
        const QSignalSpy finished(manager(fixture), &QNetworkAccessManager::finished);
        download(fixture, QStringLiteral("58-08-2"));
        QTRY_COMPARE(finished.size(), 1);
        download(fixture, QStringLiteral("7732-18-5"));
        QTRY_COMPARE(finished.size(), 2);
        QCOMPARE(image(fixture).size(), QSize(60, 20));
    }

    void clearingAnEmptyImageChangesNothing()
    {
        MainWindowFixture fixture;
        chooseFromMenu(fixture, 0);
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit"));
        fixture.window.clearImage();
        QCOMPARE(fixture.window.windowTitle(), QStringLiteral("ZORAVEL Entry Edit"));
    }

    void aPastedPictureShowsAtOnceAndTextIsRefused()
    {
        MainWindowFixture fixture;
        QGuiApplication::clipboard()->setImage(drawing());
        chooseFromMenu(fixture, 1);
        QCOMPARE(image(fixture).size(), QSize(40, 30));
        QVERIFY(!fixture.find<QLabel>(QStringLiteral("imageLabel"))->pixmap().isNull());
        QVERIFY(fixture.isModified());

        fixture.window.updateWindowTitle(false);
        QGuiApplication::clipboard()->setText(QStringLiteral("no picture"));
        Dialogs dialogs;
        dialogs.press();
        fixture.window.pasteImageFromClipboard();
        QCOMPARE(dialogs.boxes.value(0).icon, QMessageBox::Warning);
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("No Image"));
        QCOMPARE(dialogs.boxes.value(0).text,
                 QStringLiteral("The clipboard does not contain an image."));
        QCOMPARE(image(fixture).size(), QSize(40, 30));
        QVERIFY(!fixture.isModified());
    }

    void aPictureTooLargeToBeLoadedAgainIsNotPasted()
    {
        MainWindowFixture fixture;
        QImage large(6000, 6000, QImage::Format_RGB32);
        large.fill(Qt::white);
        QGuiApplication::clipboard()->setImage(large);
        Dialogs dialogs;
        dialogs.press();
        fixture.window.pasteImageFromClipboard();
        QCOMPARE(dialogs.boxes.value(0).title, QStringLiteral("Image Error"));
        QCOMPARE(dialogs.boxes.value(0).informativeText,
                 QStringLiteral("It has more pixels than an entry can hold."));
        QVERIFY(image(fixture).isNull());
        QGuiApplication::clipboard()->clear();
    }

    void theMenuHasItsTwoEntriesAndClears()
    {
        MainWindowFixture fixture;
        QGuiApplication::clipboard()->setImage(drawing());
        fixture.window.pasteImageFromClipboard();
        QVERIFY(!image(fixture).isNull());
        const QStringList entries = chooseFromMenu(fixture, 0);
        QCOMPARE(entries, (QStringList{QStringLiteral("Clear Image"),
                                       QStringLiteral("Paste Image from Clipboard")}));
        QVERIFY(image(fixture).isNull());
        chooseFromMenu(fixture, -1);
        QVERIFY(image(fixture).isNull());
    }

    void aJpegThatArrivesIsSavedAsPng()
    {
        MainWindowFixture fixture;
        m_service->answerWith({HttpsService::response(ok, encoded(drawing(), "JPEG"))});
        download(fixture, QStringLiteral("58-08-2"));
        QTRY_VERIFY(!image(fixture).isNull());
        const QString file = fixture.path(QStringLiteral("a.json"));
        Dialogs dialogs;
        dialogs.choose(file);
        fixture.trigger(QStringLiteral("actionSaveSpecies"));
        const QByteArray saved = QByteArray::fromBase64(
            fileObject(file)[QLatin1String("Species")][QLatin1String("StructuralFormula")]
                .toString()
                .toLatin1());
        QVERIFY(saved.startsWith("\x89PNG\r\n"));
    }

private:
    static QNetworkAccessManager *manager(const MainWindowFixture &fixture)
    {
        return fixture.window.findChild<QNetworkAccessManager *>();
    }

    void download(MainWindowFixture &fixture, const QString &cas) const
    {
        manager(fixture)->setProxy(m_service->proxy());
        fixture.field(QStringLiteral("lineEditCAS"))->setPlainText(cas);
        fixture.find<QPushButton>(QStringLiteral("buttonDownload"))->click();
    }

    static QImage image(const MainWindowFixture &fixture)
    {
        return fixture.window.findChild<SpeciesModel *>()->getImage();
    }

    // Opens the image's context menu and chooses an entry; Escape for -1. Returns the entries.
    static QStringList chooseFromMenu(MainWindowFixture &fixture, int entry)
    {
        QStringList entries;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, &poll, [&] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            if (!menu)
                return;
            poll.stop();
            for (const QAction *action : menu->actions())
                entries.append(action->text());
            for (int i = 0; i <= entry; ++i)
                QTest::keyClick(menu, Qt::Key_Down);
            QTest::keyClick(menu, entry < 0 ? Qt::Key_Escape : Qt::Key_Return);
        });
        poll.start(5);
        auto *label = fixture.find<QLabel>(QStringLiteral("imageLabel"));
        emit label->customContextMenuRequested(QPoint(3, 3));
        return entries;
    }

    QTemporaryDir m_folder;
    std::unique_ptr<HttpsService> m_service;
    QSslConfiguration m_untrusting;
};

QTEST_MAIN(TestMainWindowImage)
#include "tst_mainwindow_image.moc"
