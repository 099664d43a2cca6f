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

using mel::CommandCall;
using mel::Value;

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

ControlType TextType() {
    ControlType type;
    type.name = "text";
    type.flags =
        ControlFlags{
            ValueFlag<QLabel, QString>(
                "-l", "-label", [](QLabel& label, const QString& text) { label.setText(text); },
                [](const QLabel& label) { return label.text(); }),
            {"-al",
             "-align",
             {TEXT},
             [](Control& control, const CommandCall& call) {
                 const std::string& where = call.String("-align");
                 control.notes["-align"] = where;
                 control.As<QLabel>()->setAlignment(Qt::AlignVCenter | (where == "right"    ? Qt::AlignRight
                                                                        : where == "center" ? Qt::AlignHCenter
                                                                                            : Qt::AlignLeft));
             },
             [](Control& control) { return Value(control.notes["-align"]); }},
            {"-fn",
             "-font",
             {TEXT},
             [](Control& control, const CommandCall& call) {
                 control.notes["-font"] = call.String("-font");
                 control.Widget()->setFont(FontNamed(QFont(), call.String("-font")));
             },
             [](Control& control) { return Value(control.notes["-font"]); }},
            ValueFlag<QLabel, bool>(
                "-ww", "-wordWrap", [](QLabel& label, bool on) { label.setWordWrap(on); },
                [](const QLabel& label) { return label.wordWrap(); }),
            ValueFlag<QLabel, bool>(
                "-hl", "-hyperlink",
                [](QLabel& label, bool on) {
                    label.setOpenExternalLinks(on);
                    label.setTextFormat(on ? Qt::RichText : Qt::PlainText);
                },
                [](const QLabel& label) { return label.openExternalLinks(); }),
            NoteFlag("-rs", "-recomputeSize", ON),
        } +
        CommonFlags();
    type.create = [](const ControlCreation& creation) {
        auto* const label = new QLabel(ToQt(creation.name));
        // Do not interpret a script's text as HTML.
        label->setTextFormat(Qt::PlainText);
        return std::make_unique<Control>(creation.type, creation.name, creation.parent, label);
    };
    return type;
}

ControlType SeparatorType() {
    ControlType type;
    type.name = "separator";
    type.flags =
        ControlFlags{
            {"-st",
             "-style",
             {TEXT},
             [](Control& control, const CommandCall& call) {
                 control.notes["-style"] = call.String("-style");
                 const bool isNone = call.String("-style") == "none";
                 const bool isVertical = control.notes["-horizontal"] == "0";
                 control.As<QFrame>()->setFrameShape(isNone       ? QFrame::NoFrame
                                                     : isVertical ? QFrame::VLine
                                                                  : QFrame::HLine);
             },
             [](Control& control) { return Value(control.notes["-style"]); }},
            {"-hr",
             "-horizontal",
             {ON},
             [](Control& control, const CommandCall& call) {
                 const bool isHorizontal = call.Bool("-horizontal");
                 control.notes["-horizontal"] = isHorizontal ? "1" : "0";
                 auto& line = *control.As<QFrame>();
                 if (line.frameShape() != QFrame::NoFrame) {
                     line.setFrameShape(isHorizontal ? QFrame::HLine : QFrame::VLine);
                 }
             },
             [](Control& control) { return Value(control.notes["-horizontal"] != "0"); }},
        } +
        CommonFlags();
    type.create = [](const ControlCreation& creation) {
        auto* const line = new QFrame;
        line->setFrameShape(QFrame::HLine);
        line->setFrameShadow(QFrame::Plain);
        constexpr int brighter = 140;
        QPalette palette = line->palette();
        palette.setColor(QPalette::WindowText, palette.color(QPalette::Window).lighter(brighter));
        line->setPalette(palette);
        return std::make_unique<Control>(creation.type, creation.name, creation.parent, line);
    };
    return type;
}

ControlType ImageType(const char* name) {
    ControlType type;
    type.name = name;
    type.flags = ControlFlags{{"-i",
                               "-image",
                               {TEXT},
                               [](Control& control, const CommandCall& call) {
                                   control.notes["-image"] = call.String("-image");
                                   const QIcon icon = Icons::Named(ToQt(call.String("-image")));
                                   constexpr QSize largest(2048, 2048);
                                   const QSize size = icon.availableSizes().value(0, QSize(32, 32));
                                   control.As<QLabel>()->setPixmap(icon.pixmap(size.boundedTo(largest)));
                               },
                               [](Control& control) { return Value(control.notes["-image"]); }},
                              NoteFlag("-til", "-tile", ON)} +
                 CommonFlags();
    type.create = [](const ControlCreation& creation) {
        return std::make_unique<Control>(creation.type, creation.name, creation.parent, new QLabel);
    };
    return type;
}

} // namespace

void RegisterLabelCommands(WindowCommandTable& table) {
    table.Add(TextType());
    table.Add(SeparatorType());
    table.Add(ImageType("image"));
    table.Add(ImageType("picture"));
}

} // namespace lightbox
