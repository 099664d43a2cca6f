#include "timeline/FrameField.h"

#include "mel/Interpreter.h"
#include "scene/Host.h"
#include "scene/Output.h"
#include "scene/TimeUnits.h"
#include "scene/Timeline.h"
#include "text/NumberText.h"
#include "text/Quoted.h"

#include <cmath>

namespace lightbox {

namespace {

struct FieldRow {
    const char* objectName;
    const char* command;
    const char* tip;
};

/// In the order of FrameField::Kind.
constexpr FieldRow FIELDS[] = {
    {"currentTimeField", "currentTime ", QT_TRANSLATE_NOOP("FrameField", "Current time")},
    {"animationStartField", "playbackOptions -animationStartTime ",
     QT_TRANSLATE_NOOP("FrameField", "Start of the animation")},
    {"playbackStartField", "playbackOptions -minTime ",
     QT_TRANSLATE_NOOP("FrameField", "Start of the playback range")},
    {"playbackEndField", "playbackOptions -maxTime ",
     QT_TRANSLATE_NOOP("FrameField", "End of the playback range")},
    {"animationEndField", "playbackOptions -animationEndTime ",
     QT_TRANSLATE_NOOP("FrameField", "End of the animation")}};

const FieldRow& RowOf(FrameField::Kind kind) {
    return FIELDS[static_cast<int>(kind)];
}

} // namespace

FrameField::FrameField(Host& host, Kind kind, QWidget* parent)
    : QLineEdit(parent)
    , host_(host)
    , events_(host.events())
    , kind_(kind) {
    setObjectName(RowOf(kind).objectName);
    setToolTip(tr(RowOf(kind).tip));
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QLineEdit::editingFinished, this, &FrameField::Commit);
    for (const char* event :
         {"timeChanged", "timeSliderChanged", "playbackRangeChanged", "timeUnitChanged"}) {
        events_.Add(event, [this] { ShowFrame(); });
    }
    ShowFrame();
}

QSize FrameField::sizeHint() const {
    return {fontMetrics().horizontalAdvance("00000.00") + 10, 24};
}

double FrameField::Frame() const {
    const Timeline& time = host_.time();
    switch (kind_) {
    case Kind::AnimationStart:
        return time.AnimationStart();
    case Kind::PlaybackStart:
        return time.MinTime();
    case Kind::PlaybackEnd:
        return time.MaxTime();
    case Kind::AnimationEnd:
        return time.AnimationEnd();
    default:
        return time.CurrentTime();
    }
}

void FrameField::ShowFrame() {
    const QString shown = QString::fromStdString(DecimalText(std::round(Frame() * 1000.0) / 1000.0));
    if (text() != shown) {
        setText(shown);
    }
}

void FrameField::Commit() {
    if (isModified()) {
        setModified(false);
        try {
            host_.interpreter().Execute(RowOf(kind_).command + Quoted(text().toStdString()));
        } catch (const mel::Error& error) {
            host_.output().Error(error.Described());
        }
    }
    ShowFrame();
}

} // namespace lightbox
