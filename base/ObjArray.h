#pragma once

#include <algorithm>
#include <memory>
#include <new>
#include <vector>

// An array that owns its elements and deletes them with itself.
template <typename T>
class CShdObjArray {
public:
    CShdObjArray() = default;
    CShdObjArray(const CShdObjArray&) = delete;
    CShdObjArray& operator=(const CShdObjArray&) = delete;
    CShdObjArray(CShdObjArray&&) = default;
    CShdObjArray& operator=(CShdObjArray&&) = default;

    size_t GetCount() const { return m_items.size(); }
    T* GetAt(size_t index) const { return m_items[index].get(); }
    T* operator[](size_t index) const { return m_items[index].get(); }

    // Takes ownership; returns the new index, or -1 (and deletes the item)
    // when the array cannot grow.
    int Add(T* item)
    {
        std::unique_ptr<T> owned(item);
        try {
            m_items.push_back(std::move(owned));
        } catch (const std::bad_alloc&) {
            return -1;
        }
        return static_cast<int>(m_items.size() - 1);
    }

    void RemoveAt(size_t index) { m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(index)); }
    void RemoveAll() { m_items.clear(); }

    // Stable sort by a three-way comparison of two elements.
    template <typename Compare>
    void Sort(Compare compare)
    {
        std::stable_sort(m_items.begin(), m_items.end(),
                         [&](const std::unique_ptr<T>& a, const std::unique_ptr<T>& b) { return compare(*a, *b) < 0; });
    }

private:
    std::vector<std::unique_ptr<T>> m_items;
};
