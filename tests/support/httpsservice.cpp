// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/httpsservice.h"

#include "support/files.h"

#include <QDir>
#include <QProcess>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTest>

HttpsService::HttpsService(const QString &host, const QString &folder)
{
    const QString key = QDir(folder).filePath(QStringLiteral("key.pem"));
    const QString certificate = QDir(folder).filePath(QStringLiteral("certificate.pem"));
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"),
                  {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                   QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-batch"),
                   QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"),
                   QStringLiteral("/CN=") + host, QStringLiteral("-addext"),
                   QStringLiteral("subjectAltName=DNS:") + host, QStringLiteral("-keyout"), key,
                   QStringLiteral("-out"), certificate});
    if (!openssl.waitForFinished() || openssl.exitCode() != 0)
        QTest::qFail("openssl cannot make a certificate", __FILE__, __LINE__);
    m_certificate = QSslCertificate(fileBytes(certificate));
    m_key = QSslKey(fileBytes(key), QSsl::Rsa);
    if (!listen(QHostAddress::LocalHost))
        QTest::qFail("the server cannot listen", __FILE__, __LINE__);
}

QNetworkProxy HttpsService::proxy() const
{
    return QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), serverPort());
}

void HttpsService::makeTrusted() const
{
    QSslConfiguration trusting = QSslConfiguration::defaultConfiguration();
    trusting.setCaCertificates({m_certificate});
    QSslConfiguration::setDefaultConfiguration(trusting);
}

HttpsService::Answer HttpsService::response(const QByteArray &status, const QByteArray &body,
                                            const QByteArray &headers)
{
    return [=](QSslSocket *socket) {
        socket->write("HTTP/1.1 " + status
                      + "\r\nContent-Length: " + QByteArray::number(body.size())
                      + "\r\nConnection: close\r\n" + headers + "\r\n" + body);
        socket->disconnectFromHost();
    };
}

void HttpsService::incomingConnection(qintptr descriptor)
{
    auto *socket = new QSslSocket(this);
    socket->setSocketDescriptor(descriptor);
    socket->setLocalCertificate(m_certificate);
    socket->setPrivateKey(m_key);
    QSslConfiguration configuration = socket->sslConfiguration();
    configuration.setAllowedNextProtocols(
        {QSslConfiguration::ALPNProtocolHTTP2, QSslConfiguration::NextProtocolHttp1_1});
    socket->setSslConfiguration(configuration);
    connect(socket, &QSslSocket::encrypted, this, [this, socket] {
        protocols.append(socket->sslConfiguration().nextNegotiatedProtocol());
    });
    connect(socket, &QSslSocket::readyRead, this, [this, socket] { read(socket); });
    connect(socket, &QSslSocket::disconnected, socket, &QObject::deleteLater);
}

void HttpsService::read(QSslSocket *socket)
{
    if (!socket->peek(1 << 16).contains("\r\n\r\n"))
        return;
    const QByteArray request = socket->readAll();
    if (request.startsWith("CONNECT ")) {
        tunnels.append(request.split(' ').value(1));
        socket->write("HTTP/1.1 200 Connection established\r\n\r\n");
        socket->flush();
        socket->startServerEncryption();
        return;
    }
    requests.append(request);
    if (m_answers.isEmpty())
        socket->abort();
    else
        m_answers.takeFirst()(socket);
}
