#include "timeline/FrameField.h"

#include "mel/Interpreter.h"
#include "scene/Host.h"
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

/// In the order of FrameField::Role.
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

const FieldRow& RowOf(FrameField::Role role) {
    return FIELDS[static_cast<int>(role)];
}

} // namespace

FrameField::FrameField(Host& host, Role role, QWidget* parent)
    : QLineEdit(parent)
    , host_(host)
    , events_(host.events())
    , role_(role) {
    setObjectName(RowOf(role).objectName);
    setToolTip(tr(RowOf(role).tip));
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
    switch (role_) {
    case Role::AnimationStart:
        return time.AnimationStart();
    case Role::PlaybackStart:
        return time.MinTime();
    case Role::PlaybackEnd:
        return time.MaxTime();
    case Role::AnimationEnd:
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
        host_.interpreter().ExecuteReporting(RowOf(role_).command + Quoted(text().toStdString()));
    }
    ShowFrame();
}

} // namespace lightbox
