#include "commands/LanguageFlags.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quillmark {
namespace {

struct Row {
  std::string_view identifier;
  std::string_view region;  // ISO 3166-1, or in lower case an ISO 3166-2 subdivision without its hyphen
};

// By identifier.
// clang-format off
constexpr std::array rows{
    Row{"af", "ZA"}, Row{"af_ZA", "ZA"}, Row{"am", "ET"}, Row{"am_ET", "ET"}, Row{"ar", "SA"}, Row{"ar_AE", "AE"},
    Row{"ar_BH", "BH"}, Row{"ar_DZ", "DZ"}, Row{"ar_EG", "EG"}, Row{"ar_IQ", "IQ"}, Row{"ar_JO", "JO"},
    Row{"ar_KW", "KW"}, Row{"ar_LB", "LB"}, Row{"ar_LY", "LY"}, Row{"ar_MA", "MA"}, Row{"ar_OM", "OM"},
    Row{"ar_QA", "QA"}, Row{"ar_SA", "SA"}, Row{"ar_SY", "SY"}, Row{"ar_TN", "TN"}, Row{"ar_YE", "YE"}, Row{"as", "IN"},
    Row{"as_IN", "IN"}, Row{"be", "BY"}, Row{"be_BY", "BY"}, Row{"bg", "BG"}, Row{"bg_BG", "BG"}, Row{"bn", "BD"},
    Row{"bn_BD", "BD"}, Row{"bn_IN", "IN"}, Row{"bs", "BA"}, Row{"bs_BA", "BA"}, Row{"ca", "ES"}, Row{"ca_ES", "ES"},
    Row{"cs", "CZ"}, Row{"cs_CZ", "CZ"}, Row{"cy", "gbwls"}, Row{"cy_GB", "gbwls"}, Row{"da", "DK"}, Row{"da_DK", "DK"},
    Row{"da_GL", "GL"}, Row{"de", "DE"}, Row{"de_AT", "AT"}, Row{"de_CH", "CH"}, Row{"de_DE", "DE"}, Row{"el", "GR"},
    Row{"el_CY", "CY"}, Row{"el_GR", "GR"}, Row{"en", "US"}, Row{"en_AU", "AU"}, Row{"en_CA", "CA"}, Row{"en_GB", "GB"},
    Row{"en_IE", "IE"}, Row{"en_NZ", "NZ"}, Row{"en_US", "US"}, Row{"en_ZA", "ZA"}, Row{"es", "ES"}, Row{"es_AR", "AR"},
    Row{"es_BO", "BO"}, Row{"es_CL", "CL"}, Row{"es_CO", "CO"}, Row{"es_CR", "CR"}, Row{"es_CU", "CU"},
    Row{"es_DO", "DO"}, Row{"es_EC", "EC"}, Row{"es_ES", "ES"}, Row{"es_GT", "GT"}, Row{"es_HN", "HN"},
    Row{"es_MX", "MX"}, Row{"es_NI", "NI"}, Row{"es_PA", "PA"}, Row{"es_PE", "PE"}, Row{"es_PR", "PR"},
    Row{"es_PY", "PY"}, Row{"es_SV", "SV"}, Row{"es_UY", "UY"}, Row{"es_VE", "VE"}, Row{"et", "EE"}, Row{"et_EE", "EE"},
    Row{"eu", "ES"}, Row{"eu_ES", "ES"}, Row{"fa", "IR"}, Row{"fa_IR", "IR"}, Row{"fi", "FI"}, Row{"fi_FI", "FI"},
    Row{"fil", "PH"}, Row{"fil_PH", "PH"}, Row{"fo", "FO"}, Row{"fo_FO", "FO"}, Row{"fr", "FR"}, Row{"fr_BE", "BE"},
    Row{"fr_CA", "CA"}, Row{"fr_CH", "CH"}, Row{"fr_FR", "FR"}, Row{"fr_LU", "LU"}, Row{"fr_MC", "MC"}, Row{"ga", "IE"},
    Row{"ga_IE", "IE"}, Row{"gd", "gbsct"}, Row{"gd_GB", "gbsct"}, Row{"gl", "ES"}, Row{"gl_ES", "ES"}, Row{"gu", "IN"},
    Row{"gu_IN", "IN"}, Row{"ha", "NG"}, Row{"ha_NG", "NG"}, Row{"he", "IL"}, Row{"he_IL", "IL"}, Row{"hi", "IN"},
    Row{"hi_IN", "IN"}, Row{"hr", "HR"}, Row{"hr_HR", "HR"}, Row{"hu", "HU"}, Row{"hu_HU", "HU"}, Row{"id", "ID"},
    Row{"id_ID", "ID"}, Row{"ig", "NG"}, Row{"ig_NG", "NG"}, Row{"is", "IS"}, Row{"is_IS", "IS"}, Row{"it", "IT"},
    Row{"it_CH", "CH"}, Row{"it_IT", "IT"}, Row{"it_SM", "SM"}, Row{"it_VA", "VA"}, Row{"ja", "JP"}, Row{"ja_JP", "JP"},
    Row{"kn", "IN"}, Row{"kn_IN", "IN"}, Row{"ko", "KR"}, Row{"ko_KP", "KP"}, Row{"ko_KR", "KR"}, Row{"lt", "LT"},
    Row{"lt_LT", "LT"}, Row{"lv", "LV"}, Row{"lv_LV", "LV"}, Row{"mk", "MK"}, Row{"mk_MK", "MK"}, Row{"ml", "IN"},
    Row{"ml_IN", "IN"}, Row{"mr", "IN"}, Row{"mr_IN", "IN"}, Row{"ms", "MY"}, Row{"ms_BN", "BN"}, Row{"ms_MY", "MY"},
    Row{"mt", "MT"}, Row{"mt_MT", "MT"}, Row{"nb", "NO"}, Row{"nb_NO", "NO"}, Row{"nl", "NL"}, Row{"nl_BE", "BE"},
    Row{"nl_NL", "NL"}, Row{"nl_SR", "SR"}, Row{"nn_NO", "NO"}, Row{"no", "NO"}, Row{"no_NO", "NO"}, Row{"or", "IN"},
    Row{"or_IN", "IN"}, Row{"pa", "IN"}, Row{"pa_IN", "IN"}, Row{"pl", "PL"}, Row{"pl_PL", "PL"}, Row{"pt", "PT"},
    Row{"pt_AO", "AO"}, Row{"pt_BR", "BR"}, Row{"pt_MZ", "MZ"}, Row{"pt_PT", "PT"}, Row{"ro", "RO"}, Row{"ro_MD", "MD"},
    Row{"ro_RO", "RO"}, Row{"ru", "RU"}, Row{"ru_BY", "BY"}, Row{"ru_KG", "KG"}, Row{"ru_KZ", "KZ"}, Row{"ru_RU", "RU"},
    Row{"sk", "SK"}, Row{"sk_SK", "SK"}, Row{"sq", "AL"}, Row{"sq_AL", "AL"}, Row{"sr", "RS"}, Row{"sr_RS", "RS"},
    Row{"sv", "SE"}, Row{"sv_FI", "FI"}, Row{"sv_SE", "SE"}, Row{"sw", "KE"}, Row{"sw_KE", "KE"}, Row{"sw_TZ", "TZ"},
    Row{"ta", "IN"}, Row{"ta_IN", "IN"}, Row{"ta_LK", "LK"}, Row{"te", "IN"}, Row{"te_IN", "IN"}, Row{"th", "TH"},
    Row{"th_TH", "TH"}, Row{"tl", "PH"}, Row{"tl_PH", "PH"}, Row{"tr", "TR"}, Row{"tr_CY", "CY"}, Row{"tr_TR", "TR"},
    Row{"uk", "UA"}, Row{"uk_UA", "UA"}, Row{"ur", "PK"}, Row{"ur_PK", "PK"}, Row{"vi", "VN"}, Row{"vi_VN", "VN"},
    Row{"xh", "ZA"}, Row{"xh_ZA", "ZA"}, Row{"yo", "NG"}, Row{"yo_NG", "NG"}, Row{"zh", "CN"}, Row{"zh_CN", "CN"},
    Row{"zh_HK", "HK"}, Row{"zh_Hans", "CN"}, Row{"zh_Hant", "TW"}, Row{"zh_MO", "MO"}, Row{"zh_SG", "SG"},
    Row{"zh_TW", "TW"}, Row{"zu", "ZA"}, Row{"zu_ZA", "ZA"},
};
// clang-format on

static_assert(std::ranges::is_sorted(rows, {}, &Row::identifier));

std::optional<std::string_view> regionOf(std::string_view identifier) {
  const auto row = std::ranges::lower_bound(rows, identifier, {}, &Row::identifier);
  return row != rows.end() && row->identifier == identifier ? std::optional(row->region) : std::nullopt;
}

/// A character of the Supplementary Special-purpose Plane or of the emoji block: four bytes of UTF-8.
void append(std::string& text, char32_t character) {
  for (const int shift : {18, 12, 6, 0}) {
    text += static_cast<char>(shift == 18 ? 0xF0 | (character >> shift) : 0x80 | ((character >> shift) & 0x3F));
  }
}

/// Unicode Technical Standard 51: a pair of regional indicators, or a black flag with a tag sequence.
std::string flagOf(std::string_view region) {
  constexpr char32_t indicatorA = 0x1F1E6;
  constexpr char32_t blackFlag = 0x1F3F4;
  constexpr char32_t tagBase = 0xE0000;
  constexpr char32_t tagEnd = 0xE007F;
  std::string flag;
  if (region.size() == 2) {
    for (const char letter : region) {
      append(flag, indicatorA + static_cast<char32_t>(letter - 'A'));
    }
    return flag;
  }
  append(flag, blackFlag);
  for (const char letter : region) {
    append(flag, tagBase + static_cast<char32_t>(letter));
  }
  append(flag, tagEnd);
  return flag;
}

}  // namespace

std::optional<std::string> languageFlag(std::string_view identifier) {
  auto region = regionOf(identifier);
  if (!region) {
    region = regionOf(identifier.substr(0, identifier.find_first_of("_-")));
  }
  return region ? std::optional(flagOf(*region)) : std::nullopt;
}

}  // namespace quillmark
