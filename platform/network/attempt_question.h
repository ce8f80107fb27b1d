// An answer that its asker may withdraw while what was asked for goes on.
#pragma once

#include <memory>
#include <utility>

#include "backend.h"

namespace network {

class AttemptQuestion final : public Question {
  public:
    // Empties the shared answer when the question is withdrawn.
    explicit AttemptQuestion(std::shared_ptr<Answer> answer) : answer_(std::move(answer)) {}
    ~AttemptQuestion() override { *answer_ = nullptr; }
    AttemptQuestion(const AttemptQuestion&) = delete;
    AttemptQuestion& operator=(const AttemptQuestion&) = delete;

  private:
    std::shared_ptr<Answer> answer_;
};

// Tells whoever still listens. From a copy: the receiver may withdraw the question meanwhile, or release the network.
inline void tell(const std::shared_ptr<Answer>& answer, int result) {
    if (const Answer told = *answer) told(result);
}

}  // namespace network
