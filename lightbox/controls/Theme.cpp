#include "controls/Theme.h"

#include <QApplication>
#include <QPalette>
#include <QString>
#include <QStyleFactory>

namespace lightbox {

namespace {

/// Styles that the palette cannot express. The names in braces are the theme's colours. Only spin boxes
/// without buttons (buttonSymbols 2) are styled: a style sheet would remove the arrows of the others.
const char* const STYLE_SHEET = R"(
QToolTip { color: {text}; background: {dark}; border: 1px solid {line}; padding: 3px; }
QMenuBar { background: {window}; padding: 1px 2px; }
QMenuBar::item { background: transparent; padding: 3px 8px; border-radius: 2px; }
QMenuBar::item:selected { background: {accent}; }
QMenu { background: {window}; border: 1px solid {line}; padding: 4px 0; }
QMenu::item { padding: 4px 26px 4px 24px; }
QMenu::item:selected { background: {accent}; }
QMenu::item:disabled { color: {faint}; }
QMenu::separator { height: 1px; background: {line}; margin: 4px 8px; }
QMenu::icon, QMenu::indicator { left: 5px; }
QMenu::tearoff { height: 9px; }
QSplitter::handle { background: {line}; }
QStatusBar::item { border: none; }
QToolBar { border: none; spacing: 1px; padding: 1px 3px; }
QToolBar::separator { width: 1px; background: {line}; margin: 3px 4px; }
QToolButton { border: none; border-radius: 2px; padding: 2px; }
QToolButton:hover { background: #4c4c50; }
QToolButton:checked { background: {accent}; }
QToolButton:pressed { background: {dark}; }
QToolButton::menu-indicator { image: none; }
QLineEdit, QPlainTextEdit, QTextEdit, QSpinBox[buttonSymbols="2"], QDoubleSpinBox[buttonSymbols="2"] {
    background: {dark}; border: 1px solid {line}; border-radius: 2px; padding: 1px 3px; selection-background-color: {accent};
}
QLineEdit:focus, QPlainTextEdit:focus, QTextEdit:focus, QSpinBox[buttonSymbols="2"]:focus,
QDoubleSpinBox[buttonSymbols="2"]:focus { border-color: {accent}; }
)";

QString StyleSheet() {
    QString sheet = QString::fromLatin1(STYLE_SHEET);
    const std::pair<const char*, QColor> colors[] = {
        {"{window}", Theme::Window()}, {"{dark}", Theme::Dark()},       {"{line}", Theme::Line()},
        {"{text}", Theme::Text()},     {"{faint}", Theme::FaintText()}, {"{accent}", Theme::Accent()}};
    for (const auto& [name, color] : colors) {
        sheet.replace(QLatin1String(name), color.name());
    }
    return sheet;
}

} // namespace

void Theme::Apply(QApplication& application) {
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    QPalette palette;
    palette.setColor(QPalette::Window, Window());
    palette.setColor(QPalette::WindowText, Text());
    palette.setColor(QPalette::Base, Dark());
    palette.setColor(QPalette::AlternateBase, Dark().lighter(112));
    palette.setColor(QPalette::Text, Text());
    palette.setColor(QPalette::Button, QColor(0x4a, 0x4a, 0x4d));
    palette.setColor(QPalette::ButtonText, Text());
    palette.setColor(QPalette::Light, QColor(0x5c, 0x5c, 0x60));
    palette.setColor(QPalette::Midlight, QColor(0x52, 0x52, 0x56));
    palette.setColor(QPalette::Mid, QColor(0x31, 0x31, 0x33));
    palette.setColor(QPalette::Dark, QColor(0x26, 0x26, 0x28));
    palette.setColor(QPalette::Shadow, QColor(0x16, 0x16, 0x18));
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Highlight, Accent());
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, Dark());
    palette.setColor(QPalette::ToolTipText, Text());
    palette.setColor(QPalette::PlaceholderText, FaintText());
    palette.setColor(QPalette::Link, Accent().lighter(130));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, FaintText());
    }
    QApplication::setPalette(palette);
    application.setStyleSheet(StyleSheet());
}

} // namespace lightbox
