// Handles that cross the C boundary: numbers that are never used twice, so that a stale or foreign one is always known.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace network {

inline void* newHandle() {
    static constinit std::uintptr_t last = 0;
    last += alignof(std::max_align_t);
    return std::bit_cast<void*>(last);
}

// The live objects of one kind, in the order of their creation.
template <typename Object>
class HandleTable {
  public:
    void* add(Object object) {
        void* handle = newHandle();
        objects_.emplace(std::bit_cast<std::uintptr_t>(handle), std::make_unique<Object>(std::move(object)));
        return handle;
    }

    // The object behind a handle, or null when the handle is none of this table's. Stays in place until it is removed.
    Object* find(const void* handle) const {
        const auto found = objects_.find(std::bit_cast<std::uintptr_t>(handle));
        return found == objects_.end() ? nullptr : found->second.get();
    }

    void remove(const void* handle) { objects_.erase(std::bit_cast<std::uintptr_t>(handle)); }

    template <typename Predicate>
    void removeIf(Predicate predicate) {
        std::erase_if(objects_, [&](const auto& entry) { return predicate(*entry.second); });
    }

    bool empty() const { return objects_.empty(); }

    // A copy of the handles, to walk while callbacks add and remove objects.
    std::vector<void*> handles() const {
        std::vector<void*> all;
        for (const auto& [key, object] : objects_)
            all.push_back(std::bit_cast<void*>(key));
        return all;
    }

  private:
    std::map<std::uintptr_t, std::unique_ptr<Object>> objects_;
};

}  // namespace network
