#pragma once

#include <QImage>
#include <QString>

namespace vellix {

/// One picture with many: square drawings in a tidy grid on a card each, a label under every card and a title
/// above. The sheet grows toward the shape of a screen and is never wider or higher than MAX_SIDE pixels;
/// drawings are scaled down to fit. Each drawing is painted when it is added and not kept.
class ContactSheet {
public:
    static constexpr int MAX_SIDE = 8192;
    /// More drawings than this have no readable place on one sheet.
    static constexpr int MAX_COUNT = 10000;

    /// A sheet for count drawings, 1..MAX_COUNT.
    ContactSheet(int count, const QString& title);

    /// Puts the drawing on the next free card. More drawings than the sheet was made for are passed over.
    void Add(const QImage& drawing, const QString& label);

    const QImage& GetImage() const { return m_image; }

private:
    void PaintTitle(const QString& title);

    int m_count;
    int m_columns;
    int m_cell;
    int m_added = 0;
    QImage m_image;
};

} // namespace vellix
