#pragma once

#include "scene/Object.h"

#include <maya/MPxData.h>

#include <memory>
#include <string>

namespace lightbox {

struct DataType;

/// A value of a plug-in's data type. Plugs, handles and undo items share values; only the plug-in itself
/// changes one in place.
class DataValue : public Object {
public:
    DataValue(std::shared_ptr<const DataType> type, std::unique_ptr<MPxData> data);
    ~DataValue() override;

    MFn::Type ApiType() const override { return MFn::kPluginData; }
    bool HasFn(MFn::Type type) const override;

    const std::shared_ptr<const DataType>& Type() const { return type_; }
    MPxData& Data() const { return *data_; }
    /// Returns a new value, filled by the plug-in's own copy().
    std::shared_ptr<DataValue> Copy() const;

private:
    std::shared_ptr<const DataType> type_;
    std::unique_ptr<MPxData> data_;
};

} // namespace lightbox
