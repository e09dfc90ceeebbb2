#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/Lifetime.h"
#include "base/Signal.h"
#include "platform/BackgroundQueue.h"
#include "platform/MainQueue.h"

namespace quillmark {

/// The comparison of the two texts last passed to compare(), computed in the background. Main thread only.
template <class Row>
class BackgroundComparison {
 public:
  /// A pure function of the original and the improved text.
  using Calculation = std::vector<Row> (*)(const std::string& original, const std::string& improved);

  BackgroundComparison(BackgroundQueue& background, MainQueue& queue, Calculation calculation)
      : background_(background), queue_(queue), calculation_(calculation) {}

  /// Null before the first compare(), and after each call until its result arrives.
  const Observable<std::optional<std::vector<Row>>>& rows() const { return rows_; }

  /// Does nothing for the same texts as in the last call.
  void compare(const std::string& original, const std::string& improved) {
    if (texts_ && texts_->original == original && texts_->improved == improved) {
      return;
    }
    texts_ = std::make_shared<const Texts>(Texts{original, improved});
    rows_.set(std::nullopt);
    // Texts that have been replaced meanwhile are not worth the work.
    background_.async([wanted = std::weak_ptr(texts_), calculation = calculation_, &queue = queue_,
                       publish = lifetime_.guard([this](const auto& texts, auto& result) {
                         if (texts == texts_) {
                           rows_.set(std::move(result));
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
  Observable<std::optional<std::vector<Row>>> rows_;
  std::shared_ptr<const Texts> texts_;  // of the last call
  Lifetime lifetime_;
};

}  // namespace quillmark
