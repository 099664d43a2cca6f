#include "node/BaseNodePointer.h"

#include "node/BaseNode.h"

namespace vellix {

BaseNodePointer::BaseNodePointer(BaseNode* node)
    : node_(node)
    , object_(node ? MObjectHandle(node->thisMObject()) : MObjectHandle()) {}

BaseNode* BaseNodePointer::Get() const {
    return node_ != nullptr && object_.isValid() ? node_ : nullptr;
}

BaseNode* BaseNodePointer::GetAlive() const {
    return node_ != nullptr && object_.isAlive() ? node_ : nullptr;
}

} // namespace vellix
