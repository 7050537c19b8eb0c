#pragma once

// A node of a doubly linked list of nodes of one kind, which somebody else owns. The list's head is a node
// too.
template <class Node>
class CMidiLinked {
public:
    // Takes this node out of any list that it stands in and places it behind `node`.
    void InsertAfter(Node& node) {
        auto& self = static_cast<Node&>(*this);
        if (&node == &self) {
            return;
        }
        Unlink();
        m_pPrev = &node;
        m_pNext = node.m_pNext;
        if (m_pNext != nullptr) {
            m_pNext->m_pPrev = &self;
        }
        node.m_pNext = &self;
        m_bLinked = true;
    }
    void Unlink() {
        if (!m_bLinked) {
            return;
        }
        m_pPrev->m_pNext = m_pNext;
        if (m_pNext != nullptr) {
            m_pNext->m_pPrev = m_pPrev;
        }
        m_pPrev = nullptr;
        m_pNext = nullptr;
        m_bLinked = false;
    }
    // Null at the end.
    Node* GetNext() const { return m_pNext; }

protected:
    Node* m_pPrev = nullptr;
    Node* m_pNext = nullptr;
    bool m_bLinked = false;
};
