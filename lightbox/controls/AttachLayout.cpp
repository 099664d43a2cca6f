#include "controls/AttachLayout.h"

#include <QWidget>

#include <algorithm>
#include <cmath>

namespace lightbox {

namespace {

enum class Step { Waiting, Running, Done };

} // namespace

/// The positions of both edges of every item in one direction, in pixels.
struct AttachLayout::Axis {
    struct Span {
        double low = 0.0;
        double high = 0.0;
        Step step = Step::Waiting;
    };

    Axis(const AttachLayout& solved, bool vertical, bool minimum, double size)
        : layout(solved)
        , isVertical(vertical)
        , isMinimum(minimum)
        , extent(size)
        , spans(solved.items_.size()) {
        for (std::size_t i = 0; i < spans.size(); ++i) {
            Solve(i);
        }
    }

    double Wish(std::size_t index) const {
        const QLayoutItem& item = *layout.items_[index].item;
        const QSize size = isMinimum ? item.minimumSize() : item.sizeHint().expandedTo(item.minimumSize());
        return isVertical ? size.height() : size.width();
    }
    const Attachment& EdgeOf(std::size_t index, bool isHigh) const {
        return layout.items_[index]
            .edges[static_cast<std::size_t>(isVertical ? Top : Left) + (isHigh ? 1U : 0U)];
    }

    void Solve(std::size_t index) {
        Span& span = spans[index];
        if (span.step != Step::Waiting) {
            return; // a circle of attachments: keep the current position
        }
        span.step = Step::Running;
        const bool hasLow = EdgeOf(index, false).to != To::None;
        const bool hasHigh = EdgeOf(index, true).to != To::None;
        const double low = hasLow ? Position(index, false) : 0.0;
        const double high = hasHigh ? Position(index, true) : 0.0;
        const double wish = Wish(index);
        spans[index].low = hasLow || !hasHigh ? low : high - wish;
        spans[index].high = hasHigh ? high : low + wish;
        spans[index].step = Step::Done;
    }

    double Position(std::size_t index, bool isHigh) {
        const Attachment& edge = EdgeOf(index, isHigh);
        // A positive offset moves the edge away from its attachment, towards the inside of the widget.
        const double inward = isHigh ? -edge.offset : edge.offset;
        switch (edge.to) {
        case To::Form:
            return (isHigh ? extent : 0.0) + inward;
        case To::OppositeForm:
            return (isHigh ? 0.0 : extent) + inward;
        case To::Position:
            return extent * edge.position / std::max(1, layout.divisions) + inward;
        case To::Widget:
        case To::OppositeWidget:
            break;
        case To::None:
            return 0.0;
        }
        for (std::size_t other = 0; other < spans.size(); ++other) {
            if (edge.widget && layout.items_[other].item->widget() == edge.widget) {
                Solve(other);
                const bool takesLow = isHigh == (edge.to == To::Widget);
                return (takesLow ? spans[other].low : spans[other].high) + inward;
            }
        }
        return inward;
    }

    const AttachLayout& layout;
    bool isVertical;
    bool isMinimum;
    double extent;
    std::vector<Span> spans;
};

AttachLayout::AttachLayout(QWidget* parent)
    : QLayout(parent) {
    setContentsMargins(0, 0, 0, 0);
}

AttachLayout::~AttachLayout() = default;

const AttachLayout::Item* AttachLayout::Find(const QWidget& widget) const {
    const auto found = std::find_if(items_.begin(), items_.end(),
                                    [&](const Item& item) { return item.item->widget() == &widget; });
    return found == items_.end() ? nullptr : &*found;
}

void AttachLayout::Attach(QWidget& widget, Edge edge, const Attachment& attachment) {
    for (Item& item : items_) {
        if (item.item->widget() == &widget) {
            item.edges[edge] = attachment;
        }
    }
    invalidate();
}

AttachLayout::Attachment AttachLayout::AttachmentOf(const QWidget& widget, Edge edge) const {
    const Item* const item = Find(widget);
    return item ? item->edges[edge] : Attachment();
}

void AttachLayout::addItem(QLayoutItem* item) {
    items_.push_back({std::unique_ptr<QLayoutItem>(item), {}});
}

int AttachLayout::count() const {
    return static_cast<int>(items_.size());
}

QLayoutItem* AttachLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].item.get() : nullptr;
}

QLayoutItem* AttachLayout::takeAt(int index) {
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    QLayoutItem* const item = items_[static_cast<std::size_t>(index)].item.release();
    items_.erase(items_.begin() + index);
    return item;
}

int AttachLayout::Needed(bool isVertical, bool isMinimum) const {
    double extent = 0.0;
    // Every round widens the form by the largest shortage. Attachments to fractions of the form may need
    // several.
    constexpr int mostRounds = 30;
    constexpr double most = 20000.0;
    for (int round = 0; round < mostRounds; ++round) {
        const Axis axis(*this, isVertical, isMinimum, extent);
        double missing = 0.0;
        for (std::size_t i = 0; i < items_.size(); ++i) {
            const Axis::Span& span = axis.spans[i];
            missing = std::max({missing, axis.Wish(i) - (span.high - span.low), -span.low,
                                axis.EdgeOf(i, true).to == To::None ? span.high - extent : 0.0});
        }
        if (missing < 0.5 || extent >= most) {
            break;
        }
        extent += missing;
    }
    return static_cast<int>(std::ceil(std::min(extent, most)));
}

QSize AttachLayout::sizeHint() const {
    return {Needed(false, false), Needed(true, false)};
}

QSize AttachLayout::minimumSize() const {
    return {Needed(false, true), Needed(true, true)};
}

void AttachLayout::setGeometry(const QRect& rectangle) {
    QLayout::setGeometry(rectangle);
    const Axis across(*this, false, false, rectangle.width());
    const Axis down(*this, true, false, rectangle.height());
    for (std::size_t i = 0; i < items_.size(); ++i) {
        const auto at = [](double position) { return static_cast<int>(std::lround(position)); };
        const Axis::Span& x = across.spans[i];
        const Axis::Span& y = down.spans[i];
        const QRect place(QPoint(at(x.low), at(y.low)), QPoint(at(x.high) - 1, at(y.high) - 1));
        // Set the widget's geometry directly: the item would limit a button to its default height.
        QLayoutItem& item = *items_[i].item;
        if (QWidget* const widget = item.widget()) {
            widget->setGeometry(place.translated(rectangle.topLeft()));
        } else {
            item.setGeometry(place.translated(rectangle.topLeft()));
        }
    }
}

} // namespace lightbox
