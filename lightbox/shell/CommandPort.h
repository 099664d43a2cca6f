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

/// A door for other programs on this machine: each line that they send is run as MEL and answered with its
/// result, a line break and a zero byte; an error is answered with its message. It never listens beyond this
/// machine, and a local socket lets only the same user in.
class CommandPort : public QObject {
    Q_OBJECT

public:
    struct Options {
        /// In bytes. A longer line closes its connection, a longer result is answered with an error.
        int bufferSize = 1 << 20;
        bool answers = true;
        /// Answers with the number of lines run instead of their results.
        bool answersCount = false;
        /// Sends a copy of everything that is shown while a line runs, too.
        bool echoesOutput = false;
        /// A command that gets each line as its one argument; empty to run the line itself.
        std::string prefix;
    };

    /// `name` is a socket's path (one without a slash stands in /tmp), or ":PORT". Throws mel::Error when it
    /// cannot be listened to.
    CommandPort(Host& host, const std::string& name, const Options& options);
    ~CommandPort() override;

    /// Stops listening at once and deletes itself when the event loop runs.
    void Close();

private:
    void ListenToPort(const std::string& name);
    void ListenToSocket(const QString& path);
    void Connect(QIODevice& client);
    void Read(QIODevice& client);
    void Disconnected(QIODevice& client);
    /// The answer to one line.
    QByteArray Run(const QByteArray& line);
    void Send(QIODevice& client, QByteArray answer) const;

    Host& host_;
    Options options_;
    std::unique_ptr<QTcpServer> tcp_;
    std::unique_ptr<QLocalServer> local_;
    /// What has come of a line so far.
    std::map<QIODevice*, QByteArray> pending_;
};

} // namespace lightbox
