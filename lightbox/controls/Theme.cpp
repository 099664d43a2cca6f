#include "controls/Theme.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QString>
#include <QStyleOption>

#include <utility>

namespace lightbox {

namespace {

/// The colours of a theme.
struct Colors {
    QColor window;
    QColor field;
    QColor line;
    QColor outline; ///< of what can be switched or typed into
    QColor text;
    QColor faintText;
    QColor accent;
    QColor focus; ///< outline of what has the keyboard
    QColor button;
    QColor hover;
    QColor light;
    QColor midlight;
    QColor mid;
    QColor dark;
    QColor shadow;
};

const Colors DARK = {{0x3a, 0x3a, 0x3c}, {0x2a, 0x2a, 0x2c}, {0x24, 0x24, 0x26}, {0x90, 0x90, 0x94},
                     {0xd6, 0xd6, 0xd6}, {0x9a, 0x9a, 0x9e}, {0x44, 0x78, 0x9a}, {0x74, 0xac, 0xd0},
                     {0x4a, 0x4a, 0x4d}, {0x4c, 0x4c, 0x50}, {0x5c, 0x5c, 0x60}, {0x52, 0x52, 0x56},
                     {0x31, 0x31, 0x33}, {0x26, 0x26, 0x28}, {0x16, 0x16, 0x18}};
const Colors LIGHT = {{0xe6, 0xe6, 0xe6}, {0xff, 0xff, 0xff}, {0xc2, 0xc2, 0xc2}, {0x76, 0x76, 0x78},
                      {0x1c, 0x1c, 0x1e}, {0x62, 0x62, 0x66}, {0x2f, 0x6f, 0x9f}, {0x1f, 0x62, 0x94},
                      {0xf2, 0xf2, 0xf2}, {0xd4, 0xd8, 0xdc}, {0xff, 0xff, 0xff}, {0xf6, 0xf6, 0xf6},
                      {0xd2, 0xd2, 0xd2}, {0xb0, 0xb0, 0xb0}, {0x8c, 0x8c, 0x8c}};

Theme::Kind g_kind = Theme::Kind::Dark;

const Colors& Now() {
    return g_kind == Theme::Kind::Dark ? DARK : LIGHT;
}

/// Styles that the palette cannot express. The names in braces are the theme's colours. Only spin boxes
/// without buttons (buttonSymbols 2) are styled: a style sheet would remove the arrows of the others.
const char* const STYLE_SHEET = R"(
QToolTip { color: {text}; background: {field}; border: 1px solid {line}; padding: 3px; }
QMenuBar { background: {window}; padding: 1px 2px; }
QMenuBar::item { background: transparent; padding: 3px 8px; border-radius: 2px; }
QMenuBar::item:selected { background: {accent}; color: {selected}; }
QMenu { background: {window}; border: 1px solid {line}; padding: 4px 0; }
QMenu::item { padding: 4px 26px 4px 24px; }
QMenu::item:selected { background: {accent}; color: {selected}; }
QMenu::item:disabled { color: {faint}; }
QMenu::separator { height: 1px; background: {line}; margin: 4px 8px; }
QMenu::icon, QMenu::indicator { left: 5px; }
QMenu::tearoff { height: 9px; }
QSplitter::handle { background: {line}; }
QStatusBar::item { border: none; }
QToolBar { border: none; spacing: 1px; padding: 1px 3px; }
QToolBar::separator { width: 1px; background: {line}; margin: 3px 4px; }
QToolButton { border: none; border-radius: 2px; padding: 2px; }
QToolButton:hover { background: {hover}; }
QToolButton:checked { background: {accent}; }
QToolButton:pressed { background: {field}; }
QToolButton::menu-indicator { image: none; }
QLineEdit, QPlainTextEdit, QTextEdit, QSpinBox[buttonSymbols="2"], QDoubleSpinBox[buttonSymbols="2"] {
    background: {field}; border: 1px solid {outline}; border-radius: 2px; padding: 1px 3px;
    selection-background-color: {accent}; selection-color: {selected};
}
QLineEdit:focus, QPlainTextEdit:focus, QTextEdit:focus, QSpinBox[buttonSymbols="2"]:focus,
QDoubleSpinBox[buttonSymbols="2"]:focus { border-color: {focus}; }
)";

QString StyleSheet() {
    QString sheet = QString::fromLatin1(STYLE_SHEET);
    const Colors& now = Now();
    const std::pair<const char*, QColor> colors[] = {{"{window}", now.window},   {"{field}", now.field},
                                                     {"{line}", now.line},       {"{text}", now.text},
                                                     {"{faint}", now.faintText}, {"{accent}", now.accent},
                                                     {"{outline}", now.outline}, {"{focus}", now.focus},
                                                     {"{hover}", now.hover},     {"{selected}", Qt::white}};
    for (const auto& [name, color] : colors) {
        sheet.replace(QLatin1String(name), color.name());
    }
    return sheet;
}

/// Fusion with boxes and radio buttons that are seen when they are off, too: it outlines them in a shade of
/// the window.
class ThemeStyle : public QProxyStyle {
public:
    ThemeStyle()
        : QProxyStyle(QStringLiteral("Fusion")) {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        const bool isBox = element == PE_IndicatorCheckBox || element == PE_IndicatorItemViewItemCheck;
        if (!isBox && element != PE_IndicatorRadioButton) {
            QProxyStyle::drawPrimitive(element, option, painter, widget);
            return;
        }
        const bool isEnabled = (option->state & State_Enabled) != 0;
        const bool isOn = (option->state & (State_On | State_NoChange)) != 0;
        const QRectF area = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        QColor ground = isOn && isEnabled ? Now().accent : Now().field;
        if ((option->state & State_Sunken) != 0) {
            ground = ground.darker(120);
        }
        painter->setPen(
            QPen(isEnabled && (option->state & State_HasFocus) != 0 ? Now().focus : Now().outline, 1.0));
        painter->setBrush(ground);
        const QColor mark = isEnabled ? QColor(Qt::white) : Now().faintText;
        if (isBox) {
            painter->drawRoundedRect(area, 2.0, 2.0);
            DrawMark(*painter, area, mark, option->state);
        } else {
            painter->drawEllipse(area);
            if (isOn) {
                const double inset = area.width() * 0.3;
                painter->setPen(Qt::NoPen);
                painter->setBrush(mark);
                painter->drawEllipse(area.adjusted(inset, inset, -inset, -inset));
            }
        }
        painter->restore();
    }

private:
    static void DrawMark(QPainter& painter, const QRectF& area, const QColor& color, State state) {
        painter.setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const auto at = [&area](double x, double y) {
            return QPointF(area.left() + x * area.width(), area.top() + y * area.height());
        };
        if ((state & State_NoChange) != 0) {
            painter.drawLine(at(0.25, 0.5), at(0.75, 0.5));
        } else if ((state & State_On) != 0) {
            const QPointF check[] = {at(0.22, 0.52), at(0.42, 0.72), at(0.78, 0.28)};
            painter.setBrush(Qt::NoBrush);
            painter.drawPolyline(check, 3);
        }
    }
};

QPalette PaletteOf(const Colors& colors) {
    QPalette palette;
    const std::pair<QPalette::ColorRole, QColor> roles[] = {
        {QPalette::Window, colors.window},      {QPalette::WindowText, colors.text},
        {QPalette::Base, colors.field},         {QPalette::AlternateBase, colors.mid},
        {QPalette::Text, colors.text},          {QPalette::Button, colors.button},
        {QPalette::ButtonText, colors.text},    {QPalette::Light, colors.light},
        {QPalette::Midlight, colors.midlight},  {QPalette::Mid, colors.mid},
        {QPalette::Dark, colors.dark},          {QPalette::Shadow, colors.shadow},
        {QPalette::BrightText, Qt::white},      {QPalette::Highlight, colors.accent},
        {QPalette::HighlightedText, Qt::white}, {QPalette::ToolTipBase, colors.field},
        {QPalette::ToolTipText, colors.text},   {QPalette::PlaceholderText, colors.faintText},
        {QPalette::Link, colors.focus},
    };
    for (const auto& [role, color] : roles) {
        palette.setColor(role, color);
    }
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, colors.faintText);
    }
    return palette;
}

} // namespace

void Theme::Apply(QApplication& application, Kind kind) {
    g_kind = kind;
    QApplication::setStyle(new ThemeStyle); // the application owns it
    QApplication::setPalette(PaletteOf(Now()));
    application.setStyleSheet(StyleSheet());
}

Theme::Kind Theme::Current() {
    return g_kind;
}

QColor Theme::Window() {
    return Now().window;
}

QColor Theme::Field() {
    return Now().field;
}

QColor Theme::Line() {
    return Now().line;
}

QColor Theme::Text() {
    return Now().text;
}

QColor Theme::FaintText() {
    return Now().faintText;
}

QColor Theme::Accent() {
    return Now().accent;
}

QColor Theme::Word(const QColor& onDark) {
    constexpr double darker = 0.5;
    return g_kind == Kind::Dark
               ? onDark
               : QColor::fromHsvF(onDark.hsvHueF() < 0.0 ? 0.0 : onDark.hsvHueF(),
                                  qMin(1.0, onDark.hsvSaturationF() * 2.0), onDark.valueF() * darker);
}

} // namespace lightbox
