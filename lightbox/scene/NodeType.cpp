#include "scene/NodeType.h"

namespace lightbox {

NodeType::NodeType(std::string name, std::shared_ptr<const NodeType> base, MFn::Type apiType)
    : name_(std::move(name))
    , base_(std::move(base))
    , apiType_(apiType) {
    if (base_) {
        attributes_ = base_->attributes_;
        byName_ = base_->byName_;
        compute_ = base_->compute_;
    }
}

bool NodeType::HasFn(MFn::Type type) const {
    if (type == MFn::kBase || type == MFn::kNamedObject || type == MFn::kDependencyNode) {
        return true;
    }
    for (const NodeType* nodeType = this; nodeType; nodeType = nodeType->base_.get()) {
        if (nodeType->apiType_ == type) {
            return true;
        }
    }
    return false;
}

bool NodeType::IsA(const std::string& typeName) const {
    for (const NodeType* nodeType = this; nodeType; nodeType = nodeType->base_.get()) {
        if (nodeType->name_ == typeName) {
            return true;
        }
    }
    return false;
}

namespace {

bool AnyNameTaken(const std::unordered_map<std::string, std::shared_ptr<Attribute>>& names,
                  const Attribute& attribute) {
    if (names.count(attribute.LongName()) != 0 || names.count(attribute.ShortName()) != 0) {
        return true;
    }
    for (const std::shared_ptr<Attribute>& child : attribute.Children()) {
        if (AnyNameTaken(names, *child)) {
            return true;
        }
    }
    return false;
}

} // namespace

bool NodeType::AddAttribute(std::shared_ptr<Attribute> attribute) {
    if (AnyNameTaken(byName_, *attribute)) {
        return false;
    }
    Index(attribute);
    attributes_.push_back(std::move(attribute));
    return true;
}

void NodeType::Index(const std::shared_ptr<Attribute>& attribute) {
    byName_[attribute->LongName()] = attribute;
    byName_[attribute->ShortName()] = attribute;
    for (const std::shared_ptr<Attribute>& child : attribute->Children()) {
        Index(child);
    }
}

std::shared_ptr<Attribute> NodeType::FindAttribute(const std::string& name) const {
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : found->second;
}

} // namespace lightbox
