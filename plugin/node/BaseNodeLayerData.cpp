#include "node/BaseNodeLayerData.h"

#include "core/LayerManager.h"
#include "host/Guarded.h"
#include "node/LayerDataAsciiReader.h"
#include "node/LayerDataAsciiWriter.h"
#include "node/LayerDataBinaryReader.h"
#include "node/LayerDataBinaryWriter.h"

#include <maya/MArgList.h>

#include <ostream>

namespace vellix {

namespace {

const char* const READING = "Reading the drawing";
const char* const WRITING = "Writing the drawing";

} // namespace

void* BaseNodeLayerData::Creator() {
    BaseNodeLayerData* data = nullptr;
    RunGuarded(READING, [&data] { data = new BaseNodeLayerData; });
    return data;
}

MTypeId BaseNodeLayerData::GetTypeID() {
    return MTypeId(0x11A887);
}

MString BaseNodeLayerData::GetTypeName() {
    return MString("qmLayerData");
}

BaseNodeLayerData::~BaseNodeLayerData() = default;

MStatus BaseNodeLayerData::readASCII(const MArgList& args, unsigned int& element) {
    return Guarded(READING, [&] {
        CreateLayerManager();
        if (args.length() == 0) {
            return MStatus(MS::kFailure);
        }
        const LayerManager::ChangeScope scope(*layers_);
        return LayerDataAsciiReader(*layers_, args, element).Read();
    });
}

MStatus BaseNodeLayerData::readBinary(std::istream& in, unsigned int length) {
    return Guarded(READING, [&] {
        CreateLayerManager();
        if (length == 0) {
            return MS::kFailure;
        }
        const LayerManager::ChangeScope scope(*layers_);
        LayerDataBinaryReader(*layers_, in, length).Read();
        return MS::kSuccess;
    });
}

MStatus BaseNodeLayerData::writeASCII(std::ostream& out) {
    return Guarded(WRITING, [&] {
        if (!layers_) {
            out << -1;
            return MS::kFailure;
        }
        return LayerDataAsciiWriter(*layers_, out).Write() && !out.fail() ? MS::kSuccess : MS::kFailure;
    });
}

MStatus BaseNodeLayerData::writeBinary(std::ostream& out) {
    return Guarded(WRITING, [&] {
        return layers_ && LayerDataBinaryWriter(*layers_, out).Write() && !out.fail() ? MS::kSuccess
                                                                                      : MS::kFailure;
    });
}

void BaseNodeLayerData::copy(const MPxData& other) {
    if (const auto* data = dynamic_cast<const BaseNodeLayerData*>(&other)) {
        layers_ = data->layers_;
    }
}

MTypeId BaseNodeLayerData::typeId() const {
    return GetTypeID();
}

MString BaseNodeLayerData::name() const {
    return GetTypeName();
}

void BaseNodeLayerData::CreateLayerManager() {
    if (!layers_) {
        layers_ = std::make_shared<LayerManager>();
    }
}

std::shared_ptr<LayerManager> BaseNodeLayerData::GetLayerManager() const {
    return layers_;
}

void BaseNodeLayerData::SetLayerManager(const std::shared_ptr<LayerManager>& layers) {
    layers_ = layers;
}

} // namespace vellix
