#pragma once

#include <QImage>
#include <QString>

namespace vellix {

/// One image that shows many square drawings in a grid, each on a card with a label below, and a title at the
/// top. The grid has about three columns for every two rows and the image is never wider or higher than
/// MAX_SIDE pixels; drawings are scaled down to fit. Each drawing is painted when it is added, and the
/// last one is kept at the size of its card.
class ContactSheet {
public:
    static constexpr int MAX_SIDE = 8192;
    /// With more drawings the cards would be too small to read.
    static constexpr int MAX_COUNT = 10000;

    /// Makes a sheet for `count` drawings. The count is clamped to 1..MAX_COUNT.
    ContactSheet(int count, const QString& title);

    /// Puts the drawing on the next free card. Ignores drawings beyond the sheet's count. The same image
    /// again is not scaled again.
    void Add(const QImage& drawing, const QString& label);

    const QImage& GetImage() const { return image_; }

private:
    void PaintTitle(const QString& title);
    void Scale(const QImage& drawing);

    int count_;
    int columns_;
    int cell_;
    int added_ = 0;
    QImage image_;
    QImage small_;       // the drawing that was added last
    qint64 smallOf_ = 0; // its QImage::cacheKey
};

} // namespace vellix
