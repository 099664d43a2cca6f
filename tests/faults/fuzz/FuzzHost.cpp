// The host around a reader: without a window, silent, with the part of the plug-in that files hold.
#include "app/LightboxHost.h"
#include "app/PluginManager.h"
#include "faults/fuzz/Readers.h"
#include "node/BaseNode.h"
#include "node/BaseNodeLayerData.h"
#include "scene/Output.h"
#include "scene/UndoQueue.h"

#include <maya/MFnPlugin.h>
#include <maya/MObject.h>
#include <maya/MStatus.h>

#include <QApplication>
#include <QTemporaryDir>

#include <cstdlib>
#include <cstring>

namespace {

MStatus RegisterDrawing(MObject object) {
    using namespace vellix;
    MFnPlugin plugin(object);
    const MStatus status = plugin.registerData(BaseNodeLayerData::GetTypeName(),
                                               BaseNodeLayerData::GetTypeID(), BaseNodeLayerData::Creator);
    return status ? plugin.registerNode(BaseNode::GetTypeName(), BaseNode::GetTypeID(), BaseNode::Creator,
                                        BaseNode::Initialize, MPxNode::kLocatorNode)
                  : status;
}

MStatus DeregisterNothing(MObject) {
    return MS::kSuccess;
}

} // namespace

// All of it lives until the process ends.
extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static int one = 1; // Qt takes arguments out of the list
    new QApplication(one, *arguments);
    static const QTemporaryDir folder;
    lightbox::Host::Options options;
    options.batch = true;
    options.prefsFolder = folder.path().toStdString();
    auto* const host = new lightbox::LightboxHost(options);
    host->output().SetSink([](lightbox::Output::Kind, const std::string&) {});
    host->plugins().LoadBuiltin("vellix2", RegisterDrawing, DeregisterNothing);
    host->undo().SetEnabled(false);
    readers::Confine(*host, *count > 0 && std::strstr((*arguments)[0], "mel") != nullptr);
    return 0;
}
