#include "cli/Settings.h"

#include <charconv>
#include <cstdio>

#include "base/Json.h"
#include "cli/Session.h"
#include "platform/posix/DataDirectory.h"

namespace quillmark::cli {
namespace {

std::string describe(const DefaultsValue& value) {
  struct {
    std::string operator()(bool flag) const { return flag ? "true" : "false"; }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(double number) const { return toText(Json(number)); }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(const Data& data) const { return data.bytes; }
    std::string operator()(const std::vector<std::string>& list) const { return toText(Json(list)); }
  } words;
  return std::visit(words, value);
}

template <class Number>
std::optional<DefaultsValue> parseNumber(const std::string& text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? std::optional<DefaultsValue>(number) : std::nullopt;
}

std::optional<DefaultsValue> parse(const std::string& type, const std::string& text) {
  if (type == "string") {
    return text;
  }
  if (type == "bool" && (text == "true" || text == "false")) {
    return text == "true";
  }
  if (type == "int") {
    return parseNumber<std::int64_t>(text);
  }
  return type == "double" ? parseNumber<double>(text) : std::nullopt;
}

}  // namespace

int readSettings(const std::string& dataDirectory, const std::string& key) {
  const SqliteUserDefaults defaults(defaultsFile(quillmark::dataDirectory(dataDirectory)));
  const auto value = defaults.value(key);
  if (!value) {
    complain("nothing is stored under " + key);
    return 1;
  }
  std::printf("%s\n", describe(*value).c_str());
  return 0;
}

int writeSetting(const std::string& dataDirectory, const std::string& key, const std::string& type,
                 const std::string& value) {
  const auto parsed = parse(type, value);
  if (!parsed) {
    complain("'" + value + "' is no " + type);
    return 1;
  }
  SqliteUserDefaults defaults(defaultsFile(quillmark::dataDirectory(dataDirectory)));
  return defaults.set(key, *parsed) ? 0 : 1;
}

int removeSetting(const std::string& dataDirectory, const std::string& key) {
  SqliteUserDefaults defaults(defaultsFile(quillmark::dataDirectory(dataDirectory)));
  defaults.remove(key);
  return 0;
}

}  // namespace quillmark::cli
