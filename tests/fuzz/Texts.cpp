// The operations on the characters of texts from outside.

#include "base/Slug.h"
#include "base/Text.h"
#include "fuzz/Fuzz.h"
#include "providers/HttpTransport.h"

using namespace quillmark;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::Input input(data, size);
  const std::string decoded = text::decodeUtf8(input.text);
  fuzz::expect(text::decodeUtf8(decoded) == decoded, "decoded text is valid");

  std::size_t length = 0;
  for (const auto piece : text::splitAtNewlines(decoded)) {
    length += piece.size();
    fuzz::expect(text::splitAtNewlines(piece).size() == 1, "a piece has no newline");
  }
  fuzz::expect(length <= decoded.size(), "the pieces are parts of the text");

  const auto trimmed = text::trimmed(decoded);
  fuzz::expect(text::trimmed(trimmed) == trimmed, "trimmed text has nothing to trim");
  text::lowerCased(decoded);
  fuzz::expect(text::graphemeCount(decoded) <= decoded.size(), "a character has a byte or more");

  const auto blocks = input.inTwo();
  const int order = text::compareNumerically(blocks[0], blocks[1]);
  const int reverse = text::compareNumerically(blocks[1], blocks[0]);
  fuzz::expect((order < 0) == (reverse > 0) && (order == 0) == (reverse == 0), "an order has two directions");

  const std::string slug = slugify(decoded);
  fuzz::expect(slugify(slug) == slug, "a slug is its own slug");
  fuzz::expect(slug.empty() || isValidUrl("http://host/" + slug), "a slug can stand in a URL");
  isValidUrl(decoded);
  HttpTransport::validate({200, decoded}, false, decoded);
  return 0;
}
