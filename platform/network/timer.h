// A one-shot main-loop timer that is gone with its owner.
#pragma once

#include <Ecore.h>

#include <functional>
#include <utility>

namespace network {

class Timer {
  public:
    Timer() = default;
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer() { stop(); }

    // Runs the task once, in a later iteration at the earliest. The task may destroy the timer. False: no timer was
    // had.
    bool start(double seconds, std::function<void()> task) {
        stop();
        task_ = std::move(task);
        timer_ = ecore_timer_add(seconds, fire, this);
        return timer_ != nullptr;
    }

    void stop() {
        if (timer_ != nullptr) ecore_timer_del(std::exchange(timer_, nullptr));
    }

    bool isRunning() const { return timer_ != nullptr; }

  private:
    static Eina_Bool fire(void* data) {
        auto* self = static_cast<Timer*>(data);
        self->timer_ = nullptr;
        const auto task = std::move(self->task_);
        task();
        return ECORE_CALLBACK_CANCEL;
    }

    Ecore_Timer* timer_ = nullptr;
    std::function<void()> task_;
};

}  // namespace network
