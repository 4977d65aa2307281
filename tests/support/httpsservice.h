// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QNetworkProxy>
#include <QSslCertificate>
#include <QSslKey>
#include <QTcpServer>

#include <functional>

class QSslSocket;

// A real HTTPS server for any host, reached as the proxy of a network access manager: the client
// asks it for a tunnel to the host and then speaks TLS to it, checking the certificate for that
// host. Lives on the loopback address.
class HttpsService : public QTcpServer
{
    Q_OBJECT

public:
    // Answers one request; it may write in pieces or close the connection.
    using Answer = std::function<void(QSslSocket *socket)>;

    // A certificate for host, made anew; folder takes its files.
    HttpsService(const QString &host, const QString &folder);

    [[nodiscard]] QNetworkProxy proxy() const;
    [[nodiscard]] QSslCertificate certificate() const { return m_certificate; }

    // The answers to the requests that follow, one each.
    void answerWith(QList<Answer> answers) { m_answers = std::move(answers); }
    // Answers with a whole response.
    static Answer response(const QByteArray &status, const QByteArray &body,
                           const QByteArray &headers = {});

    // Makes every request from now on trust this server, and no other.
    void makeTrusted() const;
    // Takes no notice of a request.
    static void stall(QSslSocket * /*socket*/) {}

    QList<QByteArray> requests;  // request line and headers
    QList<QByteArray> tunnels;   // hosts with ports
    QList<QByteArray> protocols; // agreed on; the server would rather speak HTTP/2

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void read(QSslSocket *socket);

    QSslCertificate m_certificate;
    QSslKey m_key;
    QList<Answer> m_answers;
};
