// Command ports, spoken to as other programs do.

#include "ControlsFixture.h"

#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTcpServer>
#include <QTcpSocket>

namespace {

class CommandPortTest : public ControlsFixture {
protected:
    std::string Path() const { return prefs_.filePath("port").toStdString(); }
    /// Sends a text and gives what came back within a moment, with the zero bytes as '|'.
    static std::string Ask(QIODevice& socket, const QByteArray& text, int answers = 1) {
        socket.write(text);
        QByteArray answer;
        WaitFor([&] {
            answer += socket.readAll();
            return answer.count('\0') >= answers;
        });
        return answer.replace('\0', '|').toStdString();
    }
    static void Connect(QLocalSocket& socket, const std::string& path) {
        socket.connectToServer(QString::fromStdString(path));
        ASSERT_TRUE(WaitFor([&] { return socket.state() == QLocalSocket::ConnectedState; }));
    }
};

TEST_F(CommandPortTest, AnswersEveryLine) {
    Run("commandPort -name \"" + Path() + "\"");
    QLocalSocket socket;
    Connect(socket, Path());
    const std::pair<const char*, const char*> cases[] = {
        {"1 + 2\n", "3\n|"},
        {"int $i = 4\n", "4\n|"},
        {"ls -type \"camera\"\n", "frontShape\tperspShape\tsideShape\ttopShape\n|"},
        {"button -q -label none\n", "// Error: line 1.1: Object 'none' not found. //\n|"},
        {"this is no mel\n", ""},
        {"\xc3\xa4 = 1\n", ""},
        {"print \"a\"\n", "\n|"},
        {"\"two\\nlines\"\n", "two\nlines\n|"},
    };
    for (const auto& [line, answer] : cases) {
        const std::string got = Ask(socket, line);
        if (*answer) {
            EXPECT_EQ(got, answer) << line;
        } else {
            EXPECT_EQ(got.find("// Error: "), 0U) << line;
        }
    }
    EXPECT_EQ(Ask(socket, "1\n2\n3\n", 3), "1\n|2\n|3\n|");
    EXPECT_EQ(Shown("commandPort -q -name \"" + Path() + "\""), "1");
    // Its own end comes through it, too.
    EXPECT_EQ(Ask(socket, "commandPort -close -name \"" + QByteArray::fromStdString(Path()) + "\"\n"), "\n|");
    EXPECT_EQ(Shown("commandPort -listPorts"), "");
    Settle();
    EXPECT_FALSE(QFile::exists(QString::fromStdString(Path())));
}

TEST_F(CommandPortTest, KeepsItsLimits) {
    Run("commandPort -bufferSize 300 -name \"" + Path() + "\"");
    QLocalSocket socket;
    Connect(socket, Path());
    EXPECT_EQ(Ask(socket, "string $s; for ($k = 0; $k < 400; ++$k) $s += \"x\"; $s\n").find("// Error"), 0U);
    socket.write(QByteArray(5000, 'x'));
    EXPECT_TRUE(WaitFor([&] { return socket.state() == QLocalSocket::UnconnectedState; }));
    QLocalSocket second;
    Connect(second, Path());
    EXPECT_EQ(Ask(second, "5\n"), "5\n|");
}

TEST_F(CommandPortTest, RunsWhatAClientLeavesWithoutALineBreak) {
    Run("commandPort -name \"" + Path() + "\"");
    QLocalSocket socket;
    Connect(socket, Path());
    socket.write("createNode transform -n left");
    socket.flush();
    socket.disconnectFromServer();
    EXPECT_TRUE(WaitFor([&] { return Shown("objExists left") == "1"; }));
}

TEST_F(CommandPortTest, RunsEveryLineOfAClientThatDoesNotWaitForAnswers) {
    for (const std::string options : {"", "-returnNumCommands "}) {
        Run("file -force -new");
        Run("commandPort " + options + "-name \"" + Path() + "\"");
        QLocalSocket socket;
        Connect(socket, Path());
        socket.write("createNode transform -n first\ncreateNode transform -n second\n"
                     "createNode transform -n third");
        socket.flush();
        socket.abort();
        EXPECT_TRUE(WaitFor([&] { return Shown("ls first second third") == "first second third"; }))
            << options;
        // The client is gone for good: closing the port has nothing to do with it any more.
        Settle();
        QLocalSocket next;
        Connect(next, Path());
        EXPECT_EQ(Ask(next, "commandPort -close -name \"" + QByteArray::fromStdString(Path()) + "\"\n"),
                  options.empty() ? "\n|" : "1\n|");
        Settle();
        EXPECT_FALSE(QFile::exists(QString::fromStdString(Path())));
    }
}

TEST_F(CommandPortTest, TakesOverASocketThatWasLeftBehindButNothingElse) {
    {
        QFile file(QString::fromStdString(Path()));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("mine");
    }
    EXPECT_NE(ErrorOf("commandPort -name \"" + Path() + "\"").find("in use"), std::string::npos);
    EXPECT_TRUE(QFile::remove(QString::fromStdString(Path())));
    // A server that dies leaves its file: listening and renaming the file does the same.
    const QString stale = QString::fromStdString(Path()) + "2";
    {
        QLocalServer server;
        ASSERT_TRUE(server.listen(stale));
        QFile::rename(stale, QString::fromStdString(Path()));
    }
    ASSERT_TRUE(QFile::exists(QString::fromStdString(Path())));
    EXPECT_EQ(ErrorOf("commandPort -name \"" + Path() + "\""), "none");
    QLocalSocket socket;
    Connect(socket, Path());
    EXPECT_EQ(Ask(socket, "6\n"), "6\n|");
    EXPECT_NE(ErrorOf("commandPort -name \"" + Path() + "\""), "none");
}

TEST_F(CommandPortTest, HangsUpOnABrowser) {
    QTcpServer probe;
    ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
    const quint16 port = probe.serverPort();
    probe.close();
    Run("commandPort -name \":" + std::to_string(port) + "\"");
    const std::vector<std::vector<QByteArray>> requests{
        {"POST / HTTP/1.1\r\nHost: localhost\r\n\r\ncreateNode transform -n evil\n"},
        {"GE", "T /createNode HTTP/1.1\r\n\r\n", "createNode transform -n evil\n"},
        {"GET /\ncreateNode transform -n evil\n"},
        {"PROPFIND / HTTP/1.1\ncreateNode transform -n evil"}};
    for (const std::vector<QByteArray>& pieces : requests) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port);
        ASSERT_TRUE(WaitFor([&] { return socket.state() == QTcpSocket::ConnectedState; }));
        for (const QByteArray& piece : pieces) {
            socket.write(piece);
            socket.flush();
            Settle();
        }
        EXPECT_TRUE(WaitFor([&] { return socket.state() == QTcpSocket::UnconnectedState; }))
            << pieces[0].constData();
        EXPECT_EQ(Shown("objExists evil"), "0") << pieces[0].constData();
    }
    // Only the beginning counts.
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    ASSERT_TRUE(WaitFor([&] { return socket.state() == QTcpSocket::ConnectedState; }));
    EXPECT_EQ(Ask(socket, "string $a = \"GET / HTTP/1.1\"\n"), "GET / HTTP/1.1\n|");
}

TEST_F(CommandPortTest, NeverListensBeyondThisMachine) {
    for (const char* const name : {"0.0.0.0:7001", "example.com:7001", ":0", ":99999", ":x"}) {
        EXPECT_NE(ErrorOf(std::string("commandPort -name \"") + name + "\""), "none") << name;
    }
    QTcpServer probe;
    ASSERT_TRUE(probe.listen(QHostAddress::LocalHost));
    const quint16 port = probe.serverPort();
    probe.close();
    const std::string name = ":" + std::to_string(port);
    Run("commandPort -echoOutput -name \"" + name + "\"");
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, port);
    ASSERT_TRUE(WaitFor([&] { return socket.state() == QTcpSocket::ConnectedState; }));
    EXPECT_EQ(Ask(socket, "print \"hello\\n\"; 7\n"), "hello\n7\n|");
    // Another address of this machine does not reach it.
    QTcpSocket other;
    other.connectToHost("127.0.0.2", port);
    EXPECT_TRUE(WaitFor([&] { return other.state() == QTcpSocket::UnconnectedState; }));
}

} // namespace
