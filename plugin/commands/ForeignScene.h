#pragma once

#include "paint/NonCopyable.h"

#include <maya/MString.h>

#include <QString>

namespace vellix {

class BaseNode;

/// Another scene, read beside this one for a look at its drawing: the host imports it into a namespace, and
/// the destructor takes all of that out again. Leaves no undo step.
class ForeignScene : private NonCopyable {
public:
    explicit ForeignScene(const QString& path);

    /// The drawing that is edited there; null, with Fault(), if the scene cannot be read or has none.
    BaseNode* Drawing() const { return drawing_; }
    /// What is wrong, in a sentence without a full stop; empty while nothing is.
    const QString& Fault() const { return fault_; }
    /// The name there of a camera as it is called here.
    QString NameThere(const QString& camera) const;

private:
    /// Takes the other scene out, also when memory runs out while it is looked for. Needs none of its own.
    class Removal : private NonCopyable {
    public:
        Removal();
        ~Removal();

    private:
        const MString line_;
    };

    Removal removal_;
    QString namespace_;
    BaseNode* drawing_ = nullptr;
    QString fault_;
};

} // namespace vellix
