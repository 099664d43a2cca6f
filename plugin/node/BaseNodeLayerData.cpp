#include "node/BaseNodeLayerData.h"

#include "core/LayerManager.h"
#include "node/LayerDataAsciiReader.h"
#include "node/LayerDataAsciiWriter.h"
#include "node/LayerDataBinaryReader.h"
#include "node/LayerDataBinaryWriter.h"

#include <maya/MArgList.h>

#include <ostream>

namespace vellix {

void* BaseNodeLayerData::Creator() {
    return new BaseNodeLayerData;
}

MTypeId BaseNodeLayerData::GetTypeID() {
    return MTypeId(0x11A887);
}

MString BaseNodeLayerData::GetTypeName() {
    return MString("qmLayerData");
}

BaseNodeLayerData::~BaseNodeLayerData() = default;

MStatus BaseNodeLayerData::readASCII(const MArgList& args, unsigned int& element) {
    CreateLayerManager();
    if (args.length() == 0) {
        return MS::kFailure;
    }
    const LayerManager::ChangeScope together(*m_layers);
    return LayerDataAsciiReader(*m_layers, args, element).Read();
}

MStatus BaseNodeLayerData::readBinary(std::istream& in, unsigned int length) {
    CreateLayerManager();
    if (length == 0) {
        return MS::kFailure;
    }
    const LayerManager::ChangeScope together(*m_layers);
    LayerDataBinaryReader(*m_layers, in, length).Read();
    return MS::kSuccess;
}

MStatus BaseNodeLayerData::writeASCII(std::ostream& out) {
    if (!m_layers) {
        out << -1;
        return MS::kFailure;
    }
    LayerDataAsciiWriter(*m_layers, out).Write();
    return MS::kSuccess;
}

MStatus BaseNodeLayerData::writeBinary(std::ostream& out) {
    if (!m_layers) {
        return MS::kFailure;
    }
    LayerDataBinaryWriter(*m_layers, out).Write();
    return out.fail() ? MS::kFailure : MS::kSuccess;
}

void BaseNodeLayerData::copy(const MPxData& other) {
    if (const auto* data = dynamic_cast<const BaseNodeLayerData*>(&other)) {
        m_layers = data->m_layers;
    }
}

MTypeId BaseNodeLayerData::typeId() const {
    return GetTypeID();
}

MString BaseNodeLayerData::name() const {
    return GetTypeName();
}

void BaseNodeLayerData::CreateLayerManager() {
    if (!m_layers) {
        m_layers = std::make_shared<LayerManager>();
    }
}

std::shared_ptr<LayerManager> BaseNodeLayerData::GetLayerManager() const {
    return m_layers;
}

} // namespace vellix
