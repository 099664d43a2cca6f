#pragma once

#include "openmaya/DrawList.h"
#include "scene/DagNode.h"
#include "scene/DataValue.h"
#include "scene/Plug.h"

#include <maya/M3dView.h>
#include <maya/MCursor.h>
#include <maya/MDagPath.h>
#include <maya/MEvent.h>
#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MPxCommand.h>
#include <maya/MPxContext.h>
#include <maya/MPxContextCommand.h>
#include <maya/MPxNode.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <memory>
#include <string>

class QCursor;

namespace lightbox {

class CameraView;
class UserInterface;

namespace mel {
class Value;
}

/// The one way from OpenMaya's classes to what stands behind them and back.
class ApiBridge {
public:
    static MObject Wrap(std::shared_ptr<Object> object);
    static MDagPath Wrap(DagNode& node);
    static MPlug Wrap(const Plug& plug);
    static MString Wrap(std::string text);

    static const std::shared_ptr<Object>& Get(const MObject& object) { return object.handle_; }
    static std::shared_ptr<Node> GetNode(const MObject& object);
    static std::shared_ptr<DagNode> GetDagNode(const MObject& object);
    static std::shared_ptr<DagNode> GetDagNode(const MDagPath& path) { return GetDagNode(path.node_); }
    static std::shared_ptr<Attribute> GetAttribute(const MObject& object);
    static std::shared_ptr<DataValue> GetData(const MObject& object);
    static Plug GetPlug(const MPlug& plug);
    static const std::string& Text(const MString& string) { return string.text_; }
    /// A value as an argument that is a text; never refuses.
    static bool ReadString(const mel::Value& value, MString& result);
    /// The host's window; null in batch, and where there is no host.
    static UserInterface* Ui();

    /// A failing status with its text.
    static MStatus Fail(MStatus::MStatusCode code, const std::string& text);
    /// Hands the status to a caller who asked for it.
    static void Report(MStatus* returnStatus, const MStatus& status) {
        if (returnStatus) {
            *returnStatus = status;
        }
    }

    static void Bind(MPxNode& userNode, Node* node) { userNode.node_ = node; }
    static MPxCommand::State& StateOf(MPxCommand& command) { return *command.state_; }
    static MPxContext::State& StateOf(MPxContext& context) { return *context.state_; }
    static MPxContextCommand::ContextState& ContextStateOf(MPxContextCommand& command) {
        return *command.contextState_;
    }

    static M3dView Wrap(View& view);
    static std::shared_ptr<Texture> TextureOf(const MHWRender::MTexture& texture);
    /// For one drawing: view, camera and list have to outlive the answer.
    static std::unique_ptr<MHWRender::MFrameContext> MakeFrameContext(const View& view,
                                                                      const CameraView& camera);
    static std::unique_ptr<MHWRender::MUIDrawManager> MakeDrawManager(DrawList& list);
    static QCursor ToQt(const MCursor& cursor);
    /// Position in view pixels; button and modifiers as MEvent has them.
    static MEvent MakeEvent(int x, int y, int viewHeight, unsigned button, unsigned modifiers);
};

} // namespace lightbox
