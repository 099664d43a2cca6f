#include "node/BaseNodePointer.h"

#include "node/BaseNode.h"

namespace vellix {

BaseNodePointer::BaseNodePointer(BaseNode* node)
    : m_node(node)
    , m_object(node != nullptr ? MObjectHandle(node->thisMObject()) : MObjectHandle()) {}

BaseNode* BaseNodePointer::Get() const {
    return m_node != nullptr && m_object.isValid() ? m_node : nullptr;
}

BaseNode* BaseNodePointer::GetAlive() const {
    return m_node != nullptr && m_object.isAlive() ? m_node : nullptr;
}

} // namespace vellix
