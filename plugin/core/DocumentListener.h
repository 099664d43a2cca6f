#pragma once

#include <QFlags>

namespace vellix {

class LayerManager;

/// What has changed in a drawing.
enum class DocumentChange {
    None = 0,
    Layers = 0x01,        ///< layers were added, removed or moved
    LayerSettings = 0x02, ///< a layer's name, visibility, opacity or state
    ActiveLayer = 0x04,
    ActiveCamera = 0x08,
    Frames = 0x10,   ///< frames were added, removed or moved in time
    Pictures = 0x20, ///< pixels of a layer or of the stroke
    Ghosting = 0x40, ///< the user's ghosting settings, marked layers and pinned drawings
    Flip = 0x80,     ///< a flip begins, shows another drawing or ends; the drawing itself stays
};
Q_DECLARE_FLAGS(DocumentChanges, DocumentChange)
Q_DECLARE_OPERATORS_FOR_FLAGS(DocumentChanges)

/// Receives the changes of all drawings.
class DocumentListener {
public:
    virtual ~DocumentListener() = default;
    /// Called once per operation, after its changes.
    virtual void OnDocumentChanged(LayerManager& document, DocumentChanges changes) = 0;
};

} // namespace vellix
