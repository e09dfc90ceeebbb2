#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "platform/BackgroundQueue.h"
#include "platform/MainQueue.h"

namespace quillmark {

/// The comparison of the two texts that were last asked for, computed in the background. Main thread only.
template <class Row>
class BackgroundComparison {
 public:
  /// A pure function of the original and the improved text.
  using Calculation = std::vector<Row> (*)(const std::string& original, const std::string& improved);

  BackgroundComparison(BackgroundQueue& background, MainQueue& queue, Calculation calculation)
      : background_(background), queue_(queue), calculation_(calculation) {}

  /// Empty from the call of compare() until the result is there.
  Observable<std::vector<Row>> rows;

  /// Does nothing for the texts of the call before.
  void compare(const std::string& original, const std::string& improved) {
    if (texts_ && texts_->original == original && texts_->improved == improved) {
      return;
    }
    texts_ = std::make_shared<const Texts>(Texts{original, improved});
    rows.set({});
    // Texts that have been replaced by then are not worth the work.
    background_.async([wanted = std::weak_ptr(texts_), calculation = calculation_, &queue = queue_,
                       publish = lifetime_.guard([this](const auto& texts, auto& result) {
                         if (texts == texts_) {
                           rows.set(std::move(result));
                         }
                       })] {
      if (const auto texts = wanted.lock()) {
        queue.async([publish, texts, result = calculation(texts->original, texts->improved)]() mutable {
          publish(texts, result);
        });
      }
    });
  }

 private:
  struct Texts {
    std::string original;
    std::string improved;
  };

  BackgroundQueue& background_;
  MainQueue& queue_;
  Calculation calculation_;
  std::shared_ptr<const Texts> texts_;  // of the last call
  Lifetime lifetime_;
};

}  // namespace quillmark
