#include "scene/DataValue.h"

#include "scene/DataType.h"
#include "scene/TypeRegistry.h"

namespace lightbox {

DataValue::DataValue(std::shared_ptr<const DataType> type, std::unique_ptr<MPxData> data)
    : type_(std::move(type))
    , data_(std::move(data)) {
    ++type_->liveValues;
}

DataValue::~DataValue() {
    --type_->liveValues;
}

bool DataValue::HasFn(MFn::Type type) const {
    return type == MFn::kPluginData || type == MFn::kData || type == MFn::kBase;
}

std::shared_ptr<DataValue> DataValue::Copy() const {
    std::shared_ptr<DataValue> copy = TypeRegistry::MakeData(type_);
    if (copy) {
        copy->data_->copy(*data_);
    }
    return copy;
}

} // namespace lightbox
