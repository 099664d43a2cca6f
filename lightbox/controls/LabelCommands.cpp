// text, separator, image, picture.

#include "controls/ControlRegistry.h"
#include "controls/FlagTypes.h"
#include "controls/Icons.h"
#include "controls/Registration.h"
#include "controls/WindowCommandTable.h"

#include <QFontDatabase>
#include <QFrame>
#include <QLabel>

namespace lightbox {

namespace {

/// The font for one of the host's font names: bold, small, oblique, fixed width and their combinations.
QFont FontNamed(const QFont& usual, const std::string& name) {
    const auto has = [&name](const char* word) { return name.find(word) != std::string::npos; };
    constexpr double smaller = 0.85;
    QFont font =
        has("fixedWidth") || has("FixedWidth") ? QFontDatabase::systemFont(QFontDatabase::FixedFont) : usual;
    font.setBold(has("bold") || has("Bold"));
    font.setItalic(has("oblique") || has("Oblique"));
    if (has("small") || has("Small") || has("tiny")) {
        font.setPointSizeF(usual.pointSizeF() * smaller);
    }
    return font;
}

ControlFlags TextFlags() {
    return {
        ValueFlag<QLabel, QString>("-l", "-label", &QLabel::setText, &QLabel::text),
        NoteFlag("-al", "-align", TEXT,
                 [](Control& control, const std::string& where) {
                     control.As<QLabel>()->setAlignment(Qt::AlignVCenter |
                                                        (where == "right"    ? Qt::AlignRight
                                                         : where == "center" ? Qt::AlignHCenter
                                                                             : Qt::AlignLeft));
                 }),
        NoteFlag("-fn", "-font", TEXT,
                 [](Control& control, const std::string& name) {
                     control.Widget()->setFont(FontNamed(QFont(), name));
                 }),
        ValueFlag<QLabel, bool>("-ww", "-wordWrap", &QLabel::setWordWrap, &QLabel::wordWrap),
        ValueFlag<QLabel, bool>(
            "-hl", "-hyperlink",
            [](QLabel& label, bool on) {
                label.setOpenExternalLinks(on);
                label.setTextFormat(on ? Qt::RichText : Qt::PlainText);
            },
            &QLabel::openExternalLinks),
        NoteFlag("-rs", "-recomputeSize", ON),
    };
}

std::unique_ptr<Control> CreateText(const ControlCreation& creation) {
    auto* const label = new QLabel(ToQt(creation.name));
    // Do not interpret a script's text as HTML.
    label->setTextFormat(Qt::PlainText);
    return std::make_unique<Control>(creation, label);
}

ControlFlags SeparatorFlags() {
    return {
        NoteFlag("-st", "-style", TEXT,
                 [](Control& control, const std::string& style) {
                     const bool isVertical = control.notes["-horizontal"] == "0";
                     control.As<QFrame>()->setFrameShape(style == "none" ? QFrame::NoFrame
                                                         : isVertical    ? QFrame::VLine
                                                                         : QFrame::HLine);
                 }),
        ValueFlag<Control, bool>(
            "-hr", "-horizontal",
            [](Control& control, bool isHorizontal) {
                control.notes["-horizontal"] = isHorizontal ? "1" : "0";
                auto& line = *control.As<QFrame>();
                if (line.frameShape() != QFrame::NoFrame) {
                    line.setFrameShape(isHorizontal ? QFrame::HLine : QFrame::VLine);
                }
            },
            [](Control& control) { return control.notes["-horizontal"] != "0"; }),
    };
}

std::unique_ptr<Control> CreateSeparator(const ControlCreation& creation) {
    auto* const line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Plain);
    constexpr int brighter = 140;
    QPalette palette = line->palette();
    palette.setColor(QPalette::WindowText, palette.color(QPalette::Window).lighter(brighter));
    line->setPalette(palette);
    return std::make_unique<Control>(creation, line);
}

void ShowImage(Control& control, const std::string& name) {
    const QIcon icon = Icons::Named(ToQt(name));
    constexpr QSize largest(2048, 2048);
    const QSize size = icon.availableSizes().value(0, QSize(32, 32));
    control.As<QLabel>()->setPixmap(icon.pixmap(size.boundedTo(largest)));
}

} // namespace

void RegisterLabelCommands(WindowCommandTable& table) {
    using Family = ControlType::Family;
    table.Add({"text", Family::Control, TextFlags() + CommonFlags(), CreateText});
    table.Add({"separator", Family::Control, SeparatorFlags() + CommonFlags(), CreateSeparator});
    const ControlFlags imageFlags = {NoteFlag("-i", "-image", TEXT, ShowImage),
                                     NoteFlag("-til", "-tile", ON)};
    for (const char* const name : {"image", "picture"}) {
        table.Add({name, Family::Control, imageFlags + CommonFlags(), [](const ControlCreation& creation) {
                       return std::make_unique<Control>(creation, new QLabel);
                   }});
    }
}

} // namespace lightbox
