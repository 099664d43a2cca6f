#pragma once

#include <QFlags>

namespace vellix {

class LayerManager;

/// What has changed in a drawing.
enum class DocumentChange {
    Layers = 0x01,        ///< some were added, removed or moved
    LayerSettings = 0x02, ///< a layer's name, visibility, opacity or state
    ActiveLayer = 0x04,
    ActiveCamera = 0x08,
    Frames = 0x10, ///< some were added, removed or moved in time
    Pictures = 0x20,
    Ghosting = 0x40, ///< the user's settings of it
};
Q_DECLARE_FLAGS(DocumentChanges, DocumentChange)
Q_DECLARE_OPERATORS_FOR_FLAGS(DocumentChanges)

/// Follows the changes of all drawings.
class DocumentListener {
public:
    virtual ~DocumentListener() = default;
    /// Called after the changes, once for all of an operation.
    virtual void OnDocumentChanged(LayerManager& document, DocumentChanges changes) = 0;
};

} // namespace vellix
