#include "providers/AIProvider.h"

namespace quillmark {

void AIProvider::validateApiKey(std::function<void(bool)> completion) {
  chat("Hello World!", "Just return True if API key is valid", defaultModel(),
       [completion = std::move(completion)](const std::optional<std::string>& answer) {
         completion(answer && !answer->empty());
       });
}

}  // namespace quillmark
