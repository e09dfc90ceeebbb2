#include "cli/Settings.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "base/Json.h"
#include "cli/Session.h"

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

/// Empty for a key without a fallback.
std::string describeFallback(const AnyStoredKey& key) {
  struct {
    std::string operator()(NoFallback) const { return {}; }
    std::string operator()(const char* text) const { return text; }
    std::string operator()(bool flag) const { return describe(flag); }
    std::string operator()(std::int64_t number) const { return describe(number); }
    std::string operator()(double number) const { return describe(number); }
  } words;
  return std::visit(words, key.fallback);
}

template <class Number>
std::optional<DefaultsValue> parseNumber(const std::string& text) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? std::optional<DefaultsValue>(number) : std::nullopt;
}

struct FormName {
  StoredForm form;
  const char* type;  ///< on the command line
};
constexpr FormName formNames[] = {
    {StoredForm::boolean, "bool"},  {StoredForm::integer, "int"},  {StoredForm::number, "double"},
    {StoredForm::string, "string"}, {StoredForm::strings, "list"}, {StoredForm::data, "data"},
};

const char* typeOf(StoredForm form) { return std::ranges::find(formNames, form, &FormName::form)->type; }

std::optional<DefaultsValue> parse(StoredForm form, const std::string& text) {
  switch (form) {
    case StoredForm::string:
      return text;
    case StoredForm::boolean:
      return text == "true" || text == "false" ? std::optional<DefaultsValue>(text == "true") : std::nullopt;
    case StoredForm::integer:
      return parseNumber<std::int64_t>(text);
    case StoredForm::number:
      return parseNumber<double>(text);
    default:
      return std::nullopt;
  }
}

/// On one line, with secrets left out.
std::string summarize(const std::string& key, const DefaultsValue& value) {
  if (const auto* data = std::get_if<Data>(&value)) {
    return "(" + std::to_string(data->bytes.size()) + " bytes)";
  }
  std::string text = describe(value);
  const auto known = keys::find(key);
  const Disclosure shown = known ? known->shown : Disclosure::value;
  if (text.empty() || shown == Disclosure::value) {
    return text;
  }
  return shown == Disclosure::presence ? "(set)" : "(" + std::to_string(text.size()) + " bytes)";
}

void printRow(const std::string& key, const char* form, const std::string& value) {
  std::printf("%-36s %-7s %s\n", key.c_str(), form, value.c_str());
}

}  // namespace

int readSettings(const std::string& dataDirectory, const std::string& key) {
  const StoredData data(dataDirectory);
  const auto value = data.defaults.value(key);
  if (!value) {
    complain("nothing is stored under " + key);
    return 1;
  }
  std::printf("%s\n", describe(*value).c_str());
  return 0;
}

int listSettings(const std::string& dataDirectory) {
  const StoredData data(dataDirectory);
  const SqliteUserDefaults& defaults = data.defaults;
  for (const AnyStoredKey& key : keys::all) {
    if (key.isFamily()) {
      continue;  // a family's members are listed with what is stored
    }
    const auto value = defaults.value(key.name);
    printRow(key.name, typeOf(key.form), value ? summarize(key.name, *value) : describeFallback(key));
  }
  for (const auto& key : defaults.storedKeys()) {
    const auto known = keys::find(key);
    if (!known || key != known->name) {
      printRow(key, known ? typeOf(known->form) : "", summarize(key, *defaults.value(key)));
    }
  }
  return 0;
}

int writeSetting(const std::string& dataDirectory, const std::string& key, const std::optional<std::string>& type,
                 const std::string& value) {
  const auto known = keys::find(key);
  StoredForm form = known ? known->form : StoredForm::string;
  if (type) {
    const auto* named = std::ranges::find(formNames, *type, &FormName::type);
    if (named == std::end(formNames) || named->form == StoredForm::strings || named->form == StoredForm::data) {
      complain("the type is bool, int, double or string, not " + *type);
      return 2;
    }
    form = named->form;
  } else if (!known) {
    complain("nothing is known of " + key + "; say its type: bool, int, double or string");
    return 1;
  }
  if (known && form != known->form) {
    complain(key + " holds a " + typeOf(known->form) + ", not a " + typeOf(form));
    return 1;
  }
  const auto parsed = parse(form, value);
  if (!parsed) {
    complain(form == StoredForm::strings || form == StoredForm::data ? key + " can't be written by hand"
                                                                     : "'" + value + "' is no " + typeOf(form));
    return 1;
  }
  return StoredData(dataDirectory).defaults.set(key, *parsed) ? 0 : 1;
}

int removeSetting(const std::string& dataDirectory, const std::string& key) {
  return StoredData(dataDirectory).defaults.remove(key) ? 0 : 1;
}

}  // namespace quillmark::cli
