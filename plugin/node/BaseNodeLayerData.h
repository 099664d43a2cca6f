#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MPxData.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>

#include <memory>

namespace vellix {

class LayerManager;

/// The value of a drawing node's layer data attribute: the whole drawing, which writes itself into scene
/// files and reads itself back. Copies of a value share one drawing.
class BaseNodeLayerData : public MPxData {
public:
    static void* Creator();
    static MTypeId GetTypeID();
    static MString GetTypeName();

    ~BaseNodeLayerData() override;

    /// Both readers append to a drawing that is there already.
    MStatus readASCII(const MArgList& args, unsigned int& element) override;
    MStatus readBinary(std::istream& in, unsigned int length) override;
    /// Both writers fail, without a drawing to write, when the value holds none.
    MStatus writeASCII(std::ostream& out) override;
    MStatus writeBinary(std::ostream& out) override;

    /// Shares the other value's drawing; a value of another type changes nothing.
    void copy(const MPxData& other) override;
    MTypeId typeId() const override;
    MString name() const override;

    /// Gives the value an empty drawing, unless it holds one.
    void CreateLayerManager();
    std::shared_ptr<LayerManager> GetLayerManager() const;

private:
    std::shared_ptr<LayerManager> layers_;
};

} // namespace vellix
