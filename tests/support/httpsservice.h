// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QNetworkProxy>
#include <QSslCertificate>
#include <QSslKey>
#include <QTcpServer>

#include <functional>

class QSslSocket;

// A real HTTPS server for any host on the loopback address. It acts as the proxy of a network
// access manager: the client asks it for a tunnel to the host, speaks TLS to it and checks the
// host's certificate.
class HttpsService : public QTcpServer
{
    Q_OBJECT

public:
    // Answers one request; it may write in pieces or close the connection.
    using Answer = std::function<void(QSslSocket *socket)>;

    // Makes a new certificate for host; its files go into folder.
    HttpsService(const QString &host, const QString &folder);

    [[nodiscard]] QNetworkProxy proxy() const;
    [[nodiscard]] QSslCertificate certificate() const { return m_certificate; }

    // The answers to the requests that follow, one each.
    void answerWith(QList<Answer> answers) { m_answers = std::move(answers); }
    // Answers with a whole response.
    static Answer response(const QByteArray &status, const QByteArray &body,
                           const QByteArray &headers = {});

    // Makes all later requests trust this server only.
    void makeTrusted() const;
    // Ignores a request.
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
