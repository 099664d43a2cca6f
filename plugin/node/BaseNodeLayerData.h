#pragma once

#include <maya/MApiNamespace.h>
#include <maya/MPxData.h>
#include <maya/MString.h>
#include <maya/MTypeId.h>

#include <memory>

namespace vellix {

class LayerManager;

/// The value of a drawing node's layer data attribute. It holds the whole drawing, writes it to scene files
/// and reads it back. Copies of a value share one drawing.
class BaseNodeLayerData : public MPxData {
public:
    static void* Creator();
    static MTypeId GetTypeID();
    static MString GetTypeName();

    ~BaseNodeLayerData() override;

    /// Both readers append to an existing drawing.
    MStatus readASCII(const MArgList& args, unsigned int& element) override;
    MStatus readBinary(std::istream& in, unsigned int length) override;
    /// Both writers fail if the value holds no drawing.
    MStatus writeASCII(std::ostream& out) override;
    MStatus writeBinary(std::ostream& out) override;

    /// Shares the other value's drawing; ignores a value of another type.
    void copy(const MPxData& other) override;
    MTypeId typeId() const override;
    MString name() const override;

    /// Gives the value an empty drawing if it holds none.
    void CreateLayerManager();
    std::shared_ptr<LayerManager> GetLayerManager() const;
    void SetLayerManager(const std::shared_ptr<LayerManager>& layers);

private:
    std::shared_ptr<LayerManager> layers_;
};

} // namespace vellix
