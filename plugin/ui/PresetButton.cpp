#include "ui/PresetButton.h"

#include "paint/BrushPreset.h"
#include "paint/ToolTable.h"
#include "ui/BrushSample.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPalette>

#include <utility>

namespace vellix {

namespace {

// Sides of the square that the stroke is drawn in, pixels: thick brushes are shown from farther away.
constexpr int LEAST_SIDE = 64;
constexpr int MOST_SIDE = 220;
constexpr int SIDE_PER_SIZE = 3;
constexpr int LEAST_OPACITY = 35; // percent; less would hardly be seen

QImage StrokeOf(BrushPreset preset) {
    preset.opacity = qMax(preset.opacity, LEAST_OPACITY);
    const int side = qBound(LEAST_SIDE, preset.size * SIDE_PER_SIZE, MOST_SIDE);
    const QSize size(side, side);
    return BrushSample::Paint(size, preset, {BrushSample::SwellingWave(size)});
}

/// Draws a coverage in the palette's colours of the time.
class StrokeIconEngine : public QIconEngine {
public:
    explicit StrokeIconEngine(QImage coverage)
        : coverage_(std::move(coverage)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        const QPalette palette = QGuiApplication::palette();
        const QColor color = mode == QIcon::Disabled ? palette.color(QPalette::Disabled, QPalette::ButtonText)
                             : mode == QIcon::Selected
                                 ? palette.color(QPalette::Active, QPalette::HighlightedText)
                                 : palette.color(QPalette::Active, QPalette::ButtonText);
        const qreal ratio = painter->device()->devicePixelRatioF();
        QImage small = coverage_.scaled(rect.size() * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        small = BrushSample::InColor(small, color);
        painter->drawImage(rect, small);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new StrokeIconEngine(*this); }

private:
    QImage coverage_;
};

} // namespace

PresetButton::PresetButton(int number, int size, QWidget* parent)
    : IconButton(ToolType::Pencil, QString(), size, parent)
    , number_(number) {}

void PresetButton::SetPreset(const BrushPreset& preset) {
    const ToolRow* const tool = FindTool(preset.tool);
    if (!tool || preset.ToText() == shown_) {
        return;
    }
    shown_ = preset.ToText();
    const QImage stroke = StrokeOf(preset);
    setIcon(stroke.isNull() ? Icons::Get(preset.tool) : QIcon(new StrokeIconEngine(stroke)));
    const QString name = QStringLiteral("Preset %1: %2").arg(number_).arg(preset.name);
    setAccessibleName(name);
    setToolTip(QStringLiteral("%1 (%2, %3 %4, %5 %); key %6")
                   .arg(name, QLatin1String(tool->label))
                   .arg(preset.size)
                   .arg(QString(QLatin1String(tool->SizeUnit())))
                   .arg(preset.opacity)
                   .arg(number_ % 10));
}

} // namespace vellix
