#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <span>
#include <type_traits>

// A fixed array of numbers, laid at an address on which vector operations and transforms are fastest.
// Memory that cannot be had is a false result, never an exception.
template <class T>
class CAlignedArray {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    static constexpr std::align_val_t ALIGNMENT{64};

    // Takes room for nCount entries, all zero; what was held before is released. False, and empty, when
    // nCount is negative or there is no memory.
    bool Allocate(int nCount) {
        Free();
        if (nCount < 0) {
            return false;
        }
        const std::size_t nBytes = static_cast<std::size_t>(nCount) * sizeof(T);
        void* pRoom = ::operator new(nBytes, ALIGNMENT, std::nothrow);
        if (pRoom == nullptr) {
            return false;
        }
        T* pFirst = static_cast<T*>(pRoom);
        std::uninitialized_fill_n(pFirst, nCount, T{});
        m_pRoom.reset(pFirst);
        m_nCount = static_cast<std::size_t>(nCount);
        return true;
    }
    void Free() {
        m_pRoom.reset();
        m_nCount = 0;
    }
    void FillZero() { std::fill_n(m_pRoom.get(), m_nCount, T{}); }

    T* Data() { return m_pRoom.get(); }
    const T* Data() const { return m_pRoom.get(); }
    int Count() const { return static_cast<int>(m_nCount); }
    T& operator[](int i) { return m_pRoom.get()[i]; }
    const T& operator[](int i) const { return m_pRoom.get()[i]; }
    std::span<T> All() { return {m_pRoom.get(), m_nCount}; }
    std::span<const T> All() const { return {m_pRoom.get(), m_nCount}; }

private:
    struct Releaser {
        void operator()(T* pRoom) const { ::operator delete(pRoom, ALIGNMENT); }
    };
    std::unique_ptr<T, Releaser> m_pRoom;
    std::size_t m_nCount = 0;
};
