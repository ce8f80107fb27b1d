// The data of asynchronous calls, whose callbacks may outlive who made them.
#pragma once

#include <glib.h>

#include <memory>

namespace network {

template <typename Owner>
class WeakSelf {
  public:
    explicit WeakSelf(Owner* owner) : owner_(std::make_shared<Owner*>(owner)) {}
    WeakSelf(const WeakSelf&) = delete;
    WeakSelf& operator=(const WeakSelf&) = delete;

    // For one call, whose callback gives it to `take`.
    gpointer data() const { return new Weak(owner_); }

    // Null once the owner is gone.
    static Owner* take(gpointer data) {
        const std::unique_ptr<Weak> weak(static_cast<Weak*>(data));
        const auto owner = weak->lock();
        return owner == nullptr ? nullptr : *owner;
    }

  private:
    using Weak = std::weak_ptr<Owner*>;
    std::shared_ptr<Owner*> owner_;
};

}  // namespace network
