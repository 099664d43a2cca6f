#pragma once

#include "core/DocumentListener.h"
#include "core/LayerManager.h"
#include "node/DocumentFollower.h"

#include <utility>

namespace vellix {

/// Counts the listener's calls, each of which refreshes views and panels; nothing refreshes while it exists.
class ChangeCounter : private DocumentListener {
public:
    ChangeCounter() { LayerManager::SetListener(this); }
    ChangeCounter(const ChangeCounter&) = delete;
    ChangeCounter& operator=(const ChangeCounter&) = delete;
    ~ChangeCounter() override { DocumentFollower::Start(); }

    /// The calls since the last question.
    int Take() { return std::exchange(calls_, 0); }

private:
    void OnDocumentChanged(LayerManager&, DocumentChanges) override { ++calls_; }

    int calls_ = 0;
};

} // namespace vellix
