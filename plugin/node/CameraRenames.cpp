#include "node/CameraRenames.h"

#include "host/Guarded.h"
#include "node/BaseNode.h"

#include <maya/MFnDependencyNode.h>
#include <maya/MGlobal.h>
#include <maya/MObjectHandle.h>
#include <maya/MString.h>

#include <QList>
#include <QScopedValueRollback>
#include <QString>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace vellix {

namespace {

/// A name in UTF-8 that needs no memory of its own.
class FixedName {
public:
    /// Returns false if the name is too long.
    bool Set(const MString& name) noexcept {
        const char* const text = name.asUTF8();
        const std::size_t size = std::strlen(text) + 1;
        if (size > text_.size()) {
            return false;
        }
        std::copy_n(text, size, text_.begin());
        return true;
    }
    QString Get() const { return QString::fromUtf8(text_.data()); }

private:
    std::array<char, 512> text_ = {};
};

struct LateRename {
    MObjectHandle camera;
    FixedName from;
    FixedName to;
    bool isUndo = false;
    int followed = 0; ///< by so many drawing nodes
};

std::array<LateRename, 16> g_late; // in their order
std::size_t g_lateCount = 0;
bool g_isFollowing = false;

void RenameIn(const QList<BaseNode*>& nodes, const QString& from, const QString& to, bool isUndo,
              int& followed) {
    while (followed < nodes.size()) {
        nodes.at(followed)->OnCameraRenamed(from, to, isUndo);
        ++followed;
    }
}

void DropFirst() {
    std::move(g_late.begin() + 1, g_late.begin() + g_lateCount, g_late.begin());
    --g_lateCount;
    g_late[g_lateCount] = LateRename();
}

} // namespace

void CameraRenames::Follow(const MObject& camera, const MString& before) {
    const MString name = MFnDependencyNode(camera).name();
    const bool isUndo = MGlobal::isUndoing();
    if (g_lateCount < g_late.size()) {
        LateRename& rename = g_late[g_lateCount];
        if (rename.from.Set(before) && rename.to.Set(name)) {
            rename.camera = MObjectHandle(camera);
            rename.isUndo = isUndo;
            ++g_lateCount;
            FollowLate();
            return;
        }
    }
    int followed = 0;
    RenameIn(BaseNode::GetAll(), QString::fromUtf8(before.asUTF8()), QString::fromUtf8(name.asUTF8()), isUndo,
             followed);
}

bool CameraRenames::FollowLate() noexcept {
    while (g_lateCount > 0 && !g_isFollowing) {
        LateRename& rename = g_late.front();
        const QScopedValueRollback<bool> following(g_isFollowing, true);
        const bool isDone = RunGuarded("Moving layers to the new name of their camera", [&rename] {
            if (rename.camera.isAlive()) { // else its scene is gone
                RenameIn(BaseNode::GetAll(), rename.from.Get(), rename.to.Get(), rename.isUndo,
                         rename.followed);
            }
        });
        if (!isDone) {
            return false;
        }
        DropFirst();
    }
    return true;
}

} // namespace vellix
