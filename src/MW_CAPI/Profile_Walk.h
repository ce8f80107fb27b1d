// An iterator over the connection manager's profiles that is released on every way out.
#pragma once

#include "connection_manager.h"

class ProfileWalk {
  public:
    ProfileWalk() = default;
    ~ProfileWalk() {
        if (iterator_) connection_destroy_profile_iterator(iterator_);
    }
    ProfileWalk(const ProfileWalk&) = delete;
    ProfileWalk& operator=(const ProfileWalk&) = delete;

    // `which`: CONNECTION_ITERATOR_*.
    int open(connection_handle connection, int which) {
        return connection_get_profile_iterator(connection, which, &iterator_);
    }
    [[nodiscard]] bool hasNext() const { return connection_profile_iterator_has_next(iterator_); }
    int next(connection_profile_handle* profile) { return connection_profile_iterator_next(iterator_, profile); }

  private:
    connection_profile_iterator iterator_ = nullptr;
};
