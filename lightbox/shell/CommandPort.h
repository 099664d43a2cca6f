#pragma once

#include <QByteArray>
#include <QObject>

#include <functional>
#include <map>
#include <memory>
#include <string>

class QIODevice;
class QLocalServer;
class QTcpServer;

namespace lightbox {

class Host;

/// Runs MEL that other programs on this machine send. Each line is answered with its result or error message,
/// followed by a line break and a zero byte. The port accepts connections from this machine only, and a local
/// socket only from the same user. A TCP port hangs up on a client that begins as HTTP does: the pages of
/// this user's browser reach the ports of this machine, and could send MEL in what they ask for.
class CommandPort : public QObject {
    Q_OBJECT

public:
    struct Options {
        /// In bytes. A longer line closes its connection; instead of a longer result an error is sent.
        int bufferSize = 1 << 20;
        bool answers = true;
        /// Answers with the number of lines run instead of their results.
        bool answersCount = false;
        /// Also sends a copy of all output while a line runs.
        bool echoesOutput = false;
        /// A command that is called with each line as its only argument; if empty, the line itself is run.
        std::string prefix;
    };

    /// `name` is the path of a socket (in /tmp if it has no leading slash), or ":PORT". Throws mel::Error
    /// when the port cannot listen there.
    CommandPort(Host& host, const std::string& name, const Options& options);
    ~CommandPort() override;

    /// Stops listening at once and deletes the port when the event loop runs next.
    void Close();

private:
    void ListenToPort(const std::string& name);
    void ListenToSocket(const QString& path);
    void Connect(QIODevice& client);
    void Read(QIODevice& client);
    void Disconnected(QIODevice& client);
    /// Hangs up on a client whose first line is a request of HTTP. Nothing of what it sends runs.
    bool HangsUpOnBrowser(QIODevice& client);
    /// Runs one line and returns the answer.
    QByteArray Run(const QByteArray& line);
    void Send(QIODevice& client, QByteArray answer) const;

    Host& host_;
    Options options_;
    std::unique_ptr<QTcpServer> tcp_;
    std::unique_ptr<QLocalServer> local_;
    struct Pending {
        QByteArray text;       ///< the received bytes of an incomplete line
        bool hasBegun = false; ///< the first line was looked at
    };
    std::map<QIODevice*, Pending> pending_; ///< by client
};

} // namespace lightbox
