#include "commands/Variable.h"

namespace quillmark {

Json toJson(const Variable& variable) {
  return {{"id", variable.id.toString()},
          {"key", variable.key},
          {"value", variable.value},
          {"comment", variable.comment},
          {"isComputed", variable.isComputed}};
}

Variable variableFromJson(const Json& json, const std::string& path) {
  const JsonObject object(json, path);
  return {object.required<Uuid>("id"), object.required<std::string>("key"), object.required<std::string>("value"),
          object.required<std::string>("comment"), object.required<bool>("isComputed")};
}

}  // namespace quillmark
