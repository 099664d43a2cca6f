#pragma once

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
#include <vector>

class QCursor;

namespace lightbox {

class CameraView;
class UserInterface;
class View;
struct DrawItem;
struct Texture;

namespace mel {
class Value;
}

/// The only bridge between OpenMaya's classes and the objects that they stand for.
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
    /// Reads any value as a text argument; never fails.
    static bool ReadString(const mel::Value& value, MString& result);
    /// Read a number in the unit of the user interface, or a number with its own unit. Return false for
    /// anything else.
    static bool ReadAngle(const mel::Value& value, MAngle& result);
    static bool ReadDistance(const mel::Value& value, MDistance& result);
    /// The host's window; null in batch and without a host.
    static UserInterface* Ui();

    /// Makes a failing status with a text.
    static MStatus Fail(MStatus::MStatusCode code, const std::string& text);
    /// Stores the status for a caller who passed a pointer.
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
    /// For one drawing pass. View, camera and list must outlive the returned object.
    static std::unique_ptr<MHWRender::MFrameContext> MakeFrameContext(const View& view,
                                                                      const CameraView& camera);
    static std::unique_ptr<MHWRender::MUIDrawManager> MakeDrawManager(std::vector<DrawItem>& list);
    static QCursor ToQt(const MCursor& cursor);
    /// Position in view pixels; button and modifiers as in MEvent.
    static MEvent MakeEvent(int x, int y, int viewHeight, unsigned button, unsigned modifiers);
};

} // namespace lightbox
