// Owners for the handles of the C interfaces that the backend stands on.
#pragma once

#include <Ecore.h>
#include <glib-object.h>
#include <unistd.h>

#include <memory>
#include <utility>

namespace network {

class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ >= 0) close(number_);
    }
    int number() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }

  private:
    int number_ = -1;
};

struct FdHandlerDeleter {
    void operator()(Ecore_Fd_Handler* handler) const { ecore_main_fd_handler_del(handler); }
};
using FdHandler = std::unique_ptr<Ecore_Fd_Handler, FdHandlerDeleter>;

struct JobDeleter {
    void operator()(Ecore_Job* job) const { ecore_job_del(job); }
};
using EcoreJob = std::unique_ptr<Ecore_Job, JobDeleter>;

struct ObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using Object = std::unique_ptr<T, ObjectUnref>;

}  // namespace network
