#include "platform/posix/IcuLocaleInfo.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/uloc.h>

#include "base/Localization.h"
#include "base/Text.h"

namespace quillmark {
namespace {

constexpr std::string_view fallbackLanguage = "en";

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool isLanguage(std::string_view part) {
  return part.size() >= 2 && part.size() <= 3 && std::ranges::all_of(part, isLetter);
}

bool isRegion(std::string_view part) {
  return (part.size() == 2 && std::ranges::all_of(part, isLetter)) ||
         (part.size() == 3 && std::ranges::all_of(part, isDigit));
}

std::string mapped(std::string_view part, char (*change)(char)) {
  std::string result(part);
  std::ranges::transform(result, result.begin(), change);
  return result;
}

/// The script or variant meant by the modifier of a locale name; most, such as "euro", mean neither.
struct Modifier {
  std::string_view name;
  std::string_view script;
  std::string_view variant;
};
constexpr std::array modifiers{
    Modifier{"latin", "Latn", ""},
    Modifier{"cyrillic", "Cyrl", ""},
    Modifier{"devanagari", "Deva", ""},
    Modifier{"valencia", "", "valencia"},
};

}  // namespace

std::optional<std::string> languageTag(std::string_view localeName) {
  const std::string_view modifier =
      localeName.find('@') == localeName.npos ? "" : localeName.substr(localeName.find('@') + 1);
  const std::string_view name = localeName.substr(0, localeName.find_first_of(".@"));
  if (name == "C" || name == "POSIX") {
    return std::string(fallbackLanguage);
  }
  const auto parts = text::split(name, '_');
  if (parts.size() > 2 || !isLanguage(parts[0]) || (parts.size() == 2 && !isRegion(parts[1]))) {
    return std::nullopt;
  }
  const auto known = std::ranges::find(modifiers, modifier, &Modifier::name);
  std::string tag = mapped(parts[0], lower);
  const auto append = [&tag](std::string_view part) {
    if (!part.empty()) {
      tag += '-';
      tag += part;
    }
  };
  if (known != modifiers.end()) {
    append(known->script);
  }
  if (parts.size() == 2) {
    append(mapped(parts[1], upper));
  }
  if (known != modifiers.end()) {
    append(known->variant);
  }
  return tag;
}

struct IcuLocaleInfo::Order {
  std::unique_ptr<icu::Collator> collator;
};

IcuLocaleInfo::IcuLocaleInfo(std::string interfaceLanguage) : interfaceLanguage_(std::move(interfaceLanguage)) {}

IcuLocaleInfo::~IcuLocaleInfo() = default;

std::vector<std::string> languagesOfEnvironment() {
  std::vector<std::string> result;
  const auto append = [&result](std::string_view localeName) {
    if (auto tag = languageTag(localeName); tag && std::ranges::find(result, *tag) == result.end()) {
      result.push_back(std::move(*tag));
    }
  };
  const std::string wanted = localization::languageOfEnvironment().value_or("");
  for (const std::string_view name : text::split(wanted, ':')) {
    append(name);
  }
  if (result.empty()) {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
      if (const auto name = environment(variable); !name.empty()) {
        append(name);
        break;
      }
    }
  }
  if (result.empty()) {
    result.emplace_back(fallbackLanguage);
  }
  return result;
}

std::vector<std::string> IcuLocaleInfo::availableIdentifiers() const {
  std::vector<std::string> result;
  const int32_t count = uloc_countAvailable();
  result.reserve(static_cast<std::size_t>(count));
  for (int32_t i = 0; i < count; ++i) {
    result.emplace_back(uloc_getAvailable(i));
  }
  return result;
}

std::string IcuLocaleInfo::canonicalIdentifier(std::string_view identifier) const {
  std::array<char, ULOC_FULLNAME_CAPACITY> name{};
  UErrorCode status = U_ZERO_ERROR;
  const int32_t length = uloc_canonicalize(std::string(identifier).c_str(), name.data(), name.size(), &status);
  if (U_FAILURE(status) || length == 0) {
    return std::string(identifier);
  }
  return {name.data(), static_cast<std::size_t>(length)};
}

std::optional<std::string> IcuLocaleInfo::displayName(std::string_view identifier, std::string_view inLocale) const {
  const icu::Locale named(std::string(identifier).c_str());
  const icu::Locale language(std::string(inLocale).c_str());

  // Where ICU has no name it returns the code, which is not a name.
  std::array<UChar, ULOC_FULLNAME_CAPACITY> languageName{};
  UErrorCode status = U_ZERO_ERROR;
  uloc_getDisplayLanguage(named.getName(), language.getName(), languageName.data(), languageName.size(), &status);
  if (named.isBogus() || *named.getLanguage() == '\0' || U_FAILURE(status) || status == U_USING_DEFAULT_WARNING) {
    return std::nullopt;
  }
  icu::UnicodeString name;
  named.getDisplayName(language, name);
  std::string result;
  name.toUTF8String(result);
  return result;
}

std::optional<std::string> IcuLocaleInfo::displayName(std::string_view identifier) const {
  return displayName(identifier, interfaceLanguage_);
}

int IcuLocaleInfo::compareLocalized(std::string_view a, std::string_view b) const {
  UErrorCode status = U_ZERO_ERROR;
  if (!order_) {
    order_ = std::make_unique<Order>();
    order_->collator.reset(icu::Collator::createInstance(icu::Locale(interfaceLanguage_.c_str()), status));
    if (U_FAILURE(status)) {
      order_->collator.reset();
    }
  }
  if (!order_->collator) {
    return a.compare(b);
  }
  return order_->collator->compareUTF8(icu::StringPiece(a.data(), static_cast<int32_t>(a.size())),
                                       icu::StringPiece(b.data(), static_cast<int32_t>(b.size())), status);
}

}  // namespace quillmark
