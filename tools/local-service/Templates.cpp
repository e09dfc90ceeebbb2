#include "local-service/Templates.h"

namespace quillmark::service {
namespace {

constexpr const char* writtenOn = "2025-01-15T09:00:00Z";

Json record(const char* id, const char* slug, const char* title, const char* description, const char* category,
            std::vector<std::string> tags, const char* prompt) {
  return {{"id", id},
          {"slug", slug},
          {"title", title},
          {"description", description},
          {"content", nullptr},
          {"prompt", prompt},
          {"category", category},
          {"tags", std::move(tags)},
          {"created_at", writtenOn},
          {"updated_at", writtenOn},
          {"profile_id", nullptr},
          {"is_public", true}};
}

}  // namespace

const Json& templates() {
  static const Json all = Json::array({
      record("8f6a1c52-6a0e-4f0b-9a36-1d2f5b1f7c01", "bullet-points", "Bullet Points",
             "Turns a paragraph into a short list", "Rewrite", {"list", "structure"},
             "Turn the text into a list of bullet points, one thought each, in the order of the text. Begin each line "
             "with \"- \". Keep the language, the names and the numbers. Reply with the list only."),
      record("8f6a1c52-6a0e-4f0b-9a36-1d2f5b1f7c02", "commit-message", "Commit Message",
             "Writes a commit message for a described change or a diff", "Development", {"git"},
             "Write a commit message for the change in the text, which is a description or a diff. The first line is "
             "an imperative sentence of at most 72 characters without a full stop. Then an empty line and, if there is "
             "more to say, why the change was made. Reply with the message only."),
      record("8f6a1c52-6a0e-4f0b-9a36-1d2f5b1f7c03", "action-items", "Action Items",
             "Finds out who has to do what in meeting notes", "Writing", {"meeting", "notes"},
             "List the tasks that follow from these notes, one on each line, in the form \"Name: task (date)\". Leave "
             "the name or the date out where the notes don't give it, and invent nothing. Keep the language of the "
             "notes."),
      record("8f6a1c52-6a0e-4f0b-9a36-1d2f5b1f7c04", "meta-description", "Meta Description",
             "Describes a page in one search result's length", "SEO & Copywriting", {"web"},
             "Write a description of the page whose text follows, in its language, in at most 155 characters. Say what "
             "a reader finds there, in plain words. Reply with the description only."),
  });
  return all;
}

}  // namespace quillmark::service
