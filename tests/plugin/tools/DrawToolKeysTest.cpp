// The keys of the draw tool, text, and the pen.
#include "host/panels/DialogManager.h"
#include "plugin/tools/DrawToolFixture.h"
#include "scene/Timeline.h"
#include "scene/UndoQueue.h"
#include "viewport/PanelLayout.h"

#include <QInputMethodEvent>
#include <QScreen>
#include <QTabletEvent>

#include <cmath>

namespace vellix {

namespace {

using Renderer = lightbox::ViewOptions::Renderer;

constexpr unsigned ESCAPE = 0xff1b;
constexpr unsigned RETURN = 0xff0d;
constexpr unsigned BACKSPACE = 0xff08;
constexpr unsigned DELETE = 0xffff;
constexpr unsigned HOME = 0xff50;
constexpr unsigned LEFT = 0xff51;
constexpr unsigned UP = 0xff52;
constexpr unsigned RIGHT = 0xff53;
constexpr unsigned DOWN = 0xff54;
constexpr unsigned END = 0xff57;

class DrawToolKeysTest : public DrawToolFixture {
protected:
    /// The view as it is on the screen: to draw it once more would take away what a tool drew over it.
    QImage Seen() {
        Settle(80);
        const QPoint corner = View().mapToGlobal(QPoint(0, 0));
        return QGuiApplication::primaryScreen()
            ->grabWindow(0, corner.x(), corner.y(), View().width(), View().height())
            .toImage()
            .convertToFormat(QImage::Format_RGB32);
    }
    /// Number of pixels that differ.
    static int Difference(const QImage& left, const QImage& right) {
        int count = 0;
        for (int y = 0; y < left.height(); ++y) {
            for (int x = 0; x < left.width(); ++x) {
                count += left.pixel(x, y) != right.pixel(x, y);
            }
        }
        return count;
    }
    /// The largest difference of a channel.
    static int Contrast(const QImage& left, const QImage& right) {
        int largest = 0;
        for (int y = 0; y < left.height(); ++y) {
            for (int x = 0; x < left.width(); ++x) {
                const QColor a = left.pixelColor(x, y);
                const QColor b = right.pixelColor(x, y);
                for (const int difference : {a.red() - b.red(), a.green() - b.green(), a.blue() - b.blue()}) {
                    largest = std::max(largest, std::abs(difference));
                }
            }
        }
        return largest;
    }
    void Compose(const QString& composed, const QString& committed = QString()) {
        QInputMethodEvent event(composed, {});
        event.setCommitString(committed);
        QApplication::sendEvent(&View(), &event);
    }
    /// Where the caret is on the view, as an input method is told.
    QRect Caret() {
        QInputMethodQueryEvent query(Qt::ImCursorRectangle);
        QApplication::sendEvent(&View(), &query);
        return query.value(Qt::ImCursorRectangle).toRect();
    }
    QString Text() { return ActiveStroke() ? ActiveStroke()->text : QString("<none>"); }
    void BeginText(const QPoint& point) {
        Run("qmVellixUtil -textTool; qmVellixUtil -textOptions 30 100 \"DejaVu Sans\"");
        PressAndWait(point);
        Release();
    }
    void SendText(const QString& text) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, text);
        QApplication::sendEvent(&View(), &press);
    }
    void SendPen(QEvent::Type type, double pressure, QTabletEvent::PointerType pointer = QTabletEvent::Pen) {
        const QPointF at(300, 200);
        QCoreApplication::postEvent(&View(),
                                    new QTabletEvent(type, at, View().mapToGlobal(at.toPoint()),
                                                     QTabletEvent::Stylus, pointer, pressure, 0, 0, 0.0, 0.0,
                                                     0, Qt::NoModifier, 7, Qt::LeftButton, Qt::LeftButton));
        Settle(5);
    }
};

class NotingOptions : public QWidget, public ToolOptionsPanel {
public:
    void Refresh() override { ++refreshes; }
    static int refreshes;
};
int NotingOptions::refreshes = 0;

} // namespace

TEST_F(DrawToolKeysTest, DraggingWithAKeyHeldAdjustsTheTool) {
    const struct {
        const char* tool;
        char key;
        int start;
        int distance;
        int size;
        int opacity;
    } rows[] = {
        {"pencil", 'b', 10, 25, 12, 50},  {"pencil", 'b', 10, -25, 8, 50}, {"brush", 'b', 98, 90, 100, 50},
        {"eraser", 'b', 10, -200, 1, 50}, {"line", 'm', 10, 39, 10, 53},   {"text", 'm', 10, -700, 10, 1},
    };
    for (const Renderer renderer : {Renderer::Viewport2, Renderer::Legacy}) {
        Use(renderer);
        for (const auto& row : rows) {
            SCOPED_TRACE(::testing::Message() << row.tool << row.key << row.distance);
            Run(std::string("qmVellixUtil -") + row.tool + "Tool");
            const ToolType tool = Settings::activeTool;
            Settings::SetToolSize(tool, row.start);
            Settings::SetToolOpacity(tool, 50);
            const auto edits = host_->undo().Names();
            const int start = row.distance < 0 ? 900 : 100;
            MoveTo({start, 300});
            Settle(20);
            input_.PressKey(static_cast<unsigned>(row.key));
            Settle(20);
            Press({start, 300});
            MoveTo({start + row.distance, 250}); // what is vertical does not count
            Settle(50);
            Release();
            input_.ReleaseKey(static_cast<unsigned>(row.key));
            Settle(20);
            EXPECT_EQ(Settings::GetToolSize(tool), row.size);
            EXPECT_EQ(Settings::GetToolOpacity(tool), row.opacity);
            EXPECT_FALSE(Node().HasActiveStroke());
            EXPECT_EQ(host_->undo().Names(), edits);
        }
    }
    // The eraser has no opacity to adjust: it draws.
    Run("qmVellixUtil -eraserTool");
    input_.PressKey('m');
    Settle(20);
    PressAndWait({300, 200});
    EXPECT_EQ(ActiveStroke()->tool, ToolType::Eraser);
    Release();
    input_.ReleaseKey('m');
    Settle(20);
}

TEST_F(DrawToolKeysTest, TheCircleIsAsLargeAsTheToolAndGoesAgain) {
    DialogManager::RegisterPanel(DialogManager::Panel::ToolOptions,
                                 [](QWidget*) { return std::make_unique<NotingOptions>(); });
    DialogManager::GetToolOptionsDialog();
    Run("qmVellixUtil -brushTool; qmVellixUtil -brushOptions 60 100 100 0");
    for (const Renderer renderer : {Renderer::Viewport2, Renderer::Legacy}) {
        Use(renderer);
        MoveTo({500, 300});
        Settle(50);
        const QImage before = Seen();
        const int refreshes = NotingOptions::refreshes;
        input_.PressKey('b');
        Settle(20);
        Press({500, 300});
        for (const int distance : {0, 100, 200}) {
            MoveTo({500 + distance, 300});
            // The pointer rests, and something else draws the view anew.
            Settle(distance == 0 ? 500 : 60);
            if (distance == 200) {
                Run("refresh");
                Settle(60);
            }
            const QImage with = Seen();
            const int radius = Settings::brushSize / 2;
            EXPECT_EQ(radius, 30 + distance / 20);
            // A ring of that radius, and nothing of the one before it.
            for (int degree = 0; degree < 360; degree += 45) {
                const auto differs = [&](double length) {
                    const double angle = degree * M_PI / 180.0;
                    const QPoint at(qRound(500 + length * std::cos(angle)),
                                    qRound(300 - length * std::sin(angle)));
                    const QRect around(at - QPoint(2, 2), at + QPoint(2, 2));
                    return Contrast(with.copy(around), before.copy(around)) > 60;
                };
                EXPECT_TRUE(differs(radius)) << degree << " " << radius;
                EXPECT_FALSE(differs(radius + 8)) << degree << " " << radius;
            }
        }
        EXPECT_GE(NotingOptions::refreshes, refreshes + 2);
        Release();
        input_.ReleaseKey('b');
        Settle(20);
        EXPECT_EQ(Difference(Seen(), before), 0);
        Settings::brushSize = 60;
    }
}

TEST_F(DrawToolKeysTest, KeysGoIntoTheText) {
    BeginText({300, 200});
    const auto arrangement = Window().Layout().Current();
    // Some of them are keys of the host otherwise.
    for (const char key : {'a', 'b', 'm', 's', ' ', 'z', 'f'}) {
        Type(static_cast<unsigned>(key));
    }
    Type(RETURN);
    Type('1');
    EXPECT_EQ(Text(), "abms zf\n1");
    EXPECT_EQ(Window().Layout().Current(), arrangement);
    for (const char* text : {"\xc3\xa9", "\xd0\x96", "\xe6\xbc\xa2", "\xd7\xa9", "\xf0\x9f\x98\x80"}) {
        SendText(QString::fromUtf8(text));
    }
    EXPECT_EQ(Text(), QString::fromUtf8("abms zf\n1\xc3\xa9\xd0\x96\xe6\xbc\xa2\xd7\xa9\xf0\x9f\x98\x80"));
    Type(BACKSPACE);
    EXPECT_EQ(Text(), QString::fromUtf8("abms zf\n1\xc3\xa9\xd0\x96\xe6\xbc\xa2\xd7\xa9"));
    for (int i = 0; i < 20; ++i) {
        Type(BACKSPACE);
    }
    EXPECT_EQ(Text(), "");
    Type('x');
    Type(ESCAPE);
    EXPECT_FALSE(Node().HasActiveStroke());
    Type(' ');
    EXPECT_NE(Window().Layout().Current(), arrangement) << "keys are the host's again";
}

TEST_F(DrawToolKeysTest, TheFrameOfTheTextGoesWithTheKeyThatEndsIt) {
    for (const Renderer renderer : {Renderer::Viewport2, Renderer::Legacy}) {
        Use(renderer);
        BeginText({300, 200});
        Type('w');
        const QImage typed = Seen();
        Type(ESCAPE);
        EXPECT_GT(Difference(Seen(), typed), 60);
        Run("undo");
    }
}

// A dead key and the letter after it, or a word from a list, come as one composed text.
TEST_F(DrawToolKeysTest, ComposedCharactersGoIntoTheText) {
    EXPECT_FALSE(View().testAttribute(Qt::WA_InputMethodEnabled));
    BeginText({300, 200});
    EXPECT_TRUE(View().testAttribute(Qt::WA_InputMethodEnabled));
    for (const char* text : {"\xc3\xaa", "\xe6\x9d\xb1\xe4\xba\xac"}) {
        Compose({}, QString::fromUtf8(text));
    }
    const QString typed = QString::fromUtf8("\xc3\xaa\xe6\x9d\xb1\xe4\xba\xac");
    EXPECT_EQ(Text(), typed);

    // What is being composed is seen at the caret, and the list of words opens there.
    Type(HOME);
    const QRect atStart = Caret();
    Compose("kyo");
    EXPECT_EQ(Text(), "kyo" + typed);
    EXPECT_GT(Caret().left(), atStart.left() + 20);
    EXPECT_EQ(Caret().top(), atStart.top());
    Compose("to");
    EXPECT_EQ(Text(), "to" + typed);
    Compose({}, "T");
    EXPECT_EQ(Text(), "T" + typed);
    QInputMethodEvent replaced;
    replaced.setCommitString("U", -1, 1);
    QApplication::sendEvent(&View(), &replaced);
    EXPECT_EQ(Text(), "U" + typed);
    TypeWithControl('z');
    EXPECT_EQ(Text().right(typed.size()), typed) << "undo takes back what was typed, not what was seen";

    // What is still being composed when the text ends stays as it is seen.
    Compose("ka");
    const int left = Caret().left();
    Type(ESCAPE);
    EXPECT_FALSE(View().testAttribute(Qt::WA_InputMethodEnabled));
    EXPECT_FALSE(Node().HasActiveStroke());
    EXPECT_GT(left, atStart.left());
    const QImage drawn = Drawing();
    BeginText({300, 200});
    Type('k');
    Type('a');
    Type(ESCAPE);
    Run("undo");
    EXPECT_EQ(Drawing(), drawn);
}

TEST_F(DrawToolKeysTest, TheCaretMovesAndEditsInTheText) {
    BeginText({300, 200});
    for (const char key : {'a', 'b', 'c'}) {
        Type(static_cast<unsigned>(key));
    }
    Type(RETURN);
    for (const char key : {'d', 'e'}) {
        Type(static_cast<unsigned>(key));
    }
    const QRect atEnd = Caret();
    const int time = static_cast<int>(host_->time().CurrentTime());
    const struct {
        QList<unsigned> keys;
        const char* text;
    } rows[] = {
        {{LEFT, '1'}, "abc\nd1e"},         {{HOME, '2'}, "abc\n2d1e"},
        {{UP, '3'}, "a3bc\n2d1e"},         {{END, '4'}, "a3bc4\n2d1e"},
        {{DELETE}, "a3bc42d1e"},           {{LEFT, LEFT, BACKSPACE}, "a3c42d1e"},
        {{RIGHT, DELETE}, "a3c2d1e"},      {{HOME, BACKSPACE}, "a3c2d1e"},
        {{DOWN, '5'}, "a3c2d1e5"},         {{RIGHT, DELETE}, "a3c2d1e5"},
        {{UP, RIGHT, '\\'}, "a\\3c2d1e5"}, {{0xff09}, "a\\\t3c2d1e5"},
    };
    for (const auto& row : rows) {
        for (const unsigned key : row.keys) {
            Type(key);
        }
        EXPECT_EQ(Text(), row.text);
    }
    EXPECT_EQ(static_cast<int>(host_->time().CurrentTime()), time);
    EXPECT_TRUE(View().hasFocus());
    // A letter with a mark is one character to the caret.
    SendText(QString::fromUtf8("e\xcc\x81"));
    Type(LEFT);
    Type(DELETE);
    EXPECT_EQ(Text(), "a\\\t3c2d1e5");
    EXPECT_LT(Caret().top(), atEnd.top());

    // It is seen where it is said to be, and is no part of the drawing.
    for (const Renderer renderer : {Renderer::Viewport2, Renderer::Legacy}) {
        Use(renderer);
        const QRect there = Caret().adjusted(0, 4, 1, -4);
        const QImage with = Seen();
        Type(HOME);
        const QImage without = Seen();
        EXPECT_GT(Contrast(with.copy(there), without.copy(there)), 60);
        Type(RIGHT);
        Type(RIGHT);
        Type(RIGHT);
    }
}

TEST_F(DrawToolKeysTest, WhatEndsTheTextCommitsIt) {
    const struct {
        const char* what;
        std::function<void()> end;
    } rows[] = {
        {"Escape", [this] { Type(ESCAPE); }},
        {"a press",
         [this] {
             Press({700, 400});
         }},
        {"a right click",
         [this] {
             input_.PressKey(0xffe1), Press({700, 400}, 3);
         }},
        {"another tool", [this] { Run("setToolTo selectSuperContext"); }},
        {"another drawing tool", [this] { Run("qmVellixUtil -brushTool"); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Run("file -force -new; qmVellixNode -l -f -c persp");
        BeginText({300, 200});
        Type('w');
        Type('w');
        const std::size_t before = host_->undo().Names().size();
        row.end();
        EXPECT_EQ(host_->undo().Names().size(), before + 1);
        // Its first letters stand where the pointer was.
        const QImage drawn = Drawing();
        int covered = 0;
        for (int x = 300; x < 340; ++x) {
            for (int y = 400; y < 460; ++y) {
                covered += drawn.pixelColor(x, y).alpha() > 0;
            }
        }
        EXPECT_GT(covered, 100);
        input_.Release(1);
        input_.Release(3);
        input_.ReleaseKey(0xffe1);
        Settle(20);
    }
}

TEST_F(DrawToolKeysTest, AKeyThatWasHeldWhenTheWindowLostItIsForgotten) {
    Run("qmVellixUtil -brushTool");
    MoveTo({300, 200});
    Settle(20);
    input_.PressKey('b');
    Settle(20);
    QEvent deactivated(QEvent::WindowDeactivate);
    QApplication::sendEvent(&Window(), &deactivated);
    PressAndWait({300, 200});
    EXPECT_TRUE(Node().HasActiveStroke());
    Release();
    input_.ReleaseKey('b');
    Settle(20);
}

TEST_F(DrawToolKeysTest, ThePenHasPressureAndAnEraser) {
    const struct {
        double pressure;
        float stored;
    } rows[] = {{0.04, 0.0f}, {0.1, 0.15f}, {0.0, 0.15f}, {0.5, 0.5f}, {0.75, 0.875f}, {0.99, 1.0f}};
    Run("qmVellixUtil -eraserOptions 40 100 100 0; qmVellixUtil -brushTool");
    Run("qmVellixUtil -brushOptions 30 100 100 1");
    for (const auto& row : rows) {
        SendPen(QEvent::TabletMove, row.pressure);
        EXPECT_FLOAT_EQ(Settings::tabletPressure, row.stored) << row.pressure;
    }
    SendPen(QEvent::TabletPress, 0.75);
    PressAndWait({300, 200});
    SendPen(QEvent::TabletMove, 0.75);
    for (int i = 1; i <= 6; ++i) {
        MoveAndWait({300 + 20 * i, 200});
    }
    EXPECT_FLOAT_EQ(ActiveStroke()->points.last().opacity, 0.875f);
    EXPECT_EQ(ActiveStroke()->points.last().size, 30) << "pressure changes the opacity only";
    Release();
    EXPECT_EQ(Settings::tabletPressure, 1.0f);
    EXPECT_NEAR(Drawing().pixelColor(370, 424).alpha(), 223, 3);

    SendPen(QEvent::TabletPress, 0.9, QTabletEvent::Eraser);
    EXPECT_TRUE(Settings::tabletEraserEnabled);
    PressAndWait({370, 150});
    EXPECT_EQ(ActiveStroke()->tool, ToolType::Eraser);
    for (int i = 1; i <= 5; ++i) {
        MoveAndWait({370, 150 + 25 * i});
    }
    Release();
    EXPECT_EQ(Settings::activeTool, ToolType::Brush);
    EXPECT_FALSE(Settings::tabletEraserEnabled);
    EXPECT_EQ(Drawing().pixelColor(370, 424).alpha(), 0);
}

} // namespace vellix
