#include "shell/CommandPort.h"

#include "mel/Error.h"
#include "mel/Interpreter.h"
#include "mel/StatementChunk.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "text/Quoted.h"

#include <QByteArray>
#include <QFileInfo>
#include <QList>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

#include <algorithm>
#include <iterator>
#include <sys/stat.h>

namespace lightbox {

namespace {

bool IsSocket(const QString& path) {
    struct stat status {};
    return ::lstat(path.toLocal8Bit().constData(), &status) == 0 && S_ISSOCK(status.st_mode);
}

/// Whether a program still accepts connections at a socket's path.
bool IsAlive(const QString& path) {
    QLocalSocket probe;
    probe.connectToServer(path);
    constexpr int patience = 500;
    return probe.waitForConnected(patience);
}

/// The text of a result. The elements of an array are separated by tabs.
std::string Text(const mel::Value& value) {
    if (!value.IsArray()) {
        return value.IsNone() ? std::string() : value.AsString();
    }
    std::string text;
    for (std::size_t i = 0; i < value.Size(); ++i) {
        text += (i > 0 ? "\t" : "") + value.Element(i).AsString();
    }
    return text;
}

/// Whether a line is the first one of an HTTP request: "POST / HTTP/1.1".
bool IsHttpRequest(const QByteArray& line) {
    static const char* const methods[] = {"GET",     "HEAD",  "POST",  "PUT", "DELETE",
                                          "CONNECT", "TRACE", "PATCH", "PRI", "OPTIONS"};
    const QList<QByteArray> words = line.trimmed().split(' ');
    const bool isMethod = words.size() > 1 && std::any_of(std::begin(methods), std::end(methods),
                                                          [&](auto* name) { return words.front() == name; });
    return isMethod || (words.size() == 3 && words.back().startsWith("HTTP/"));
}

} // namespace

CommandPort::CommandPort(Host& host, const std::string& name, const Options& options)
    : host_(host)
    , options_(options) {
    if (name.find('/') == std::string::npos && name.find(':') != std::string::npos) {
        ListenToPort(name);
    } else {
        const QString path = QString::fromStdString(name);
        ListenToSocket(path.startsWith(QLatin1Char('/')) ? path : QStringLiteral("/tmp/") + path);
    }
}

CommandPort::~CommandPort() {
    // Close the remaining connections and drop their unread input.
    for (const auto& [client, text] : pending_) {
        client->disconnect(this);
        client->deleteLater();
    }
}

void CommandPort::Close() {
    tcp_ ? tcp_->close() : local_->close();
    deleteLater();
}

void CommandPort::ListenToPort(const std::string& name) {
    const std::size_t colon = name.rfind(':');
    const std::string machine = name.substr(0, colon);
    if (!machine.empty() && machine != "localhost" && machine != "127.0.0.1") {
        throw mel::Error("A command port listens on this machine only: \"" + name + "\".");
    }
    bool isNumber = false;
    const int port = QString::fromStdString(name.substr(colon + 1)).toInt(&isNumber);
    constexpr int highest = 65535;
    if (!isNumber || port < 1 || port > highest) {
        throw mel::Error("\"" + name + "\" is not a valid port: use \":1024\" to \":65535\".");
    }
    tcp_ = std::make_unique<QTcpServer>();
    if (!tcp_->listen(QHostAddress::LocalHost, static_cast<quint16>(port))) {
        throw mel::Error("Cannot listen to \"" + name + "\": " + tcp_->errorString().toStdString());
    }
    connect(tcp_.get(), &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* const client = tcp_->nextPendingConnection()) {
            connect(client, &QTcpSocket::disconnected, this, [this, client] { Disconnected(*client); });
            Connect(*client);
        }
    });
}

void CommandPort::ListenToSocket(const QString& path) {
    if (QFileInfo::exists(path) || IsSocket(path)) {
        // Replace only a socket that a crashed program left behind.
        if (!IsSocket(path) || IsAlive(path)) {
            throw mel::Error("Cannot listen to \"" + path.toStdString() + "\": it is in use.");
        }
        QLocalServer::removeServer(path);
    }
    local_ = std::make_unique<QLocalServer>();
    local_->setSocketOptions(QLocalServer::UserAccessOption);
    if (!local_->listen(path)) {
        throw mel::Error("Cannot listen to \"" + path.toStdString() +
                         "\": " + local_->errorString().toStdString());
    }
    connect(local_.get(), &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* const client = local_->nextPendingConnection()) {
            connect(client, &QLocalSocket::disconnected, this, [this, client] { Disconnected(*client); });
            Connect(*client);
        }
    });
}

void CommandPort::Connect(QIODevice& client) {
    client.setParent(this);
    pending_[&client];
    connect(&client, &QIODevice::readyRead, this, [this, &client] { Read(client); });
    Read(client);
}

void CommandPort::Read(QIODevice& client) {
    const QPointer<CommandPort> self = this;
    // A line may close the port, and the client may disconnect while the line runs or when it is answered.
    const auto isServed = [&] { return self && pending_.count(&client) != 0; };
    if (!isServed()) {
        return;
    }
    pending_[&client].text += client.readAll();
    int count = 0;
    while (isServed()) {
        if (HangsUpOnBrowser(client)) {
            return;
        }
        QByteArray& text = pending_[&client].text;
        const int end = text.indexOf('\n');
        if ((end < 0 ? text.size() : end) > options_.bufferSize) {
            client.close();
            return;
        }
        if (end < 0) {
            break;
        }
        const QByteArray line = text.left(end);
        text.remove(0, end + 1);
        const QByteArray answer = Run(line);
        ++count;
        if (isServed() && !options_.answersCount) {
            Send(client, answer);
        }
    }
    if (isServed() && options_.answersCount && count > 0) {
        Send(client, QByteArray::number(count));
    }
}

bool CommandPort::HangsUpOnBrowser(QIODevice& client) {
    Pending& pending = pending_[&client];
    const int end = pending.text.indexOf('\n');
    if (!tcp_ || pending.hasBegun || end < 0) {
        return false;
    }
    pending.hasBegun = true;
    if (!IsHttpRequest(pending.text.left(end))) {
        return false;
    }
    pending.text.clear();
    host_.output().Warning(
        "A command port was asked for a web page and hung up. If no program of yours did that, a "
        "page in a browser has tried to reach it.");
    client.close();
    return true;
}

void CommandPort::Disconnected(QIODevice& client) {
    const auto found = pending_.find(&client);
    if (found == pending_.end()) {
        return;
    }
    const bool isRequest = tcp_ && !found->second.hasBegun && IsHttpRequest(found->second.text);
    const QByteArray rest = isRequest ? QByteArray() : found->second.text;
    pending_.erase(found);
    client.deleteLater();
    // Run the remaining lines: many clients do not wait for answers or omit the last line break.
    const QPointer<CommandPort> self = this;
    for (const QByteArray& line : rest.split('\n')) {
        if (!self || line.size() > options_.bufferSize) {
            return;
        }
        if (!line.trimmed().isEmpty()) {
            Run(line);
        }
    }
}

QByteArray CommandPort::Run(const QByteArray& line) {
    std::string script = line.toStdString();
    if (!options_.prefix.empty()) {
        script = options_.prefix + " " + Quoted(script);
    }
    Host& host = host_;
    const bool echoes = options_.echoesOutput;
    QByteArray echoed;
    Output::Sink before;
    if (echoes) {
        before = host.output().SetSink(nullptr);
        host.output().SetSink([&echoed, before](Output::Kind kind, const std::string& text) {
            echoed += QByteArray::fromStdString(Output::Worded(kind, text));
            if (before) {
                before(kind, text);
            }
        });
    }
    std::string answer;
    try {
        const mel::StatementChunk chunk(host.undo(), !host.interpreter().IsRunning());
        answer = Text(host.interpreter().Execute(script));
    } catch (const mel::Error& error) {
        answer = Output::Worded(Output::Kind::Error, error.Described());
        answer.pop_back();
        host.interpreter().Report(error);
    }
    if (echoes) {
        host.output().SetSink(before);
    }
    return echoed + QByteArray::fromStdString(answer);
}

void CommandPort::Send(QIODevice& client, QByteArray answer) const {
    if (!options_.answers) {
        return;
    }
    if (answer.size() > options_.bufferSize) {
        answer = "// Error: The result is longer than the port's buffer. //";
    }
    client.write(answer.append('\n').append('\0'));
    if (auto* const socket = qobject_cast<QLocalSocket*>(&client)) {
        socket->flush();
    } else if (auto* const connection = qobject_cast<QTcpSocket*>(&client)) {
        connection->flush();
    }
}

} // namespace lightbox
