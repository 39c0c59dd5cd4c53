#pragma once

#include <QTcpServer>
#include <QTcpSocket>

/// A host of the network on this machine: counts who comes, and answers every request with one page.
class LocalServer : public QTcpServer
{
public:
    int connections = 0;
    QByteArray page = "<html><title>Network</title><body>there</body></html>";

    LocalServer()
    {
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket *socket = nextPendingConnection();
            ++connections;
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                if (!socket->readAll().contains("\r\n\r\n") || page.isEmpty())
                    return; // without a page it never answers
                socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\n"
                              "Content-Length: " +
                              QByteArray::number(page.size()) + "\r\n\r\n" + page);
                socket->disconnectFromHost();
            });
        });
        listen(QHostAddress::LocalHost);
    }
    QByteArray address() const { return "http://127.0.0.1:" + QByteArray::number(serverPort()) + "/"; }

    /// A page that reaches for the network in every way it can without a click; what the user could click on
    /// lies in its upper left corner.
    QByteArray hostilePage(const QByteArray &link) const
    {
        QByteArray text =
            "<html><head><title>Local</title><meta http-equiv='refresh' content='0;url=~m'>"
            "<link rel='stylesheet' href='~s.css'><link rel='icon' href='~i.ico'>"
            "<link rel='preconnect' href='~'><link rel='prefetch' href='~p'><link rel='preload' as='image' "
            "href='~q'>"
            "<style>@import url(~c.css); body { margin: 0; background: #f0e0d0 url(~b.png) }"
            "@font-face { font-family: f; src: url(~f.woff) }</style></head><body>"
            "<a href='" +
            link +
            "' style='display: block; font-size: 80px'>Link link link</a>"
            "<script>document.title = 'script'; fetch('~x'); location = '~l'; new Image().src = '~n'</script>"
            "<img src='~1.png' srcset='~2.png 2x' onerror='location=\"~o\"'><iframe src='~frame'></iframe>"
            "<iframe srcdoc=\"<meta http-equiv='refresh' content='0;url=~d'><img src='~e'>\"></iframe>"
            "<object data='~obj'></object><embed src='~emb'><video src='~v' poster='~w'></video>"
            "<form action='~form'><input></form><p style='font-family: f'>x</p></body></html>";
        return text.replace('~', address());
    }
};
