#include <gmock/gmock.h>

#include "providers/ServerSentEventsStreamParser.h"

namespace quillmark {
namespace {

using testing::ElementsAre;

/// The events of a stream that arrives in these blocks, each as "type|data|id".
std::vector<std::string> eventsOf(const std::vector<std::string>& blocks) {
  ServerSentEventsStreamParser parser;
  std::vector<std::string> events;
  for (const auto& block : blocks) {
    parser.feed(block, [&](const ServerSentEventsStreamParser::Event& event) {
      events.push_back(event.type + "|" + event.data + "|" + event.lastEventId);
    });
  }
  return events;
}

TEST(EventStream, isReadAsTheStandardSays) {
  const std::pair<std::string, std::vector<std::string>> cases[] = {
      {"data: one\n\ndata:two\rdata:  three\r\n\r\n", {"message|one|", "message|two\n three|"}},
      // A byte order mark further on is part of a field's name.
      {"\xEF\xBB\xBF"
       "data: a\n\n\xEF\xBB\xBF"
       "data: b\n\n",
       {"message|a|"}},
      {": hello\nid: 7\nevent: ping\nretry: 10\ndata\n\ndata: x\n\n", {"ping||7", "message|x|7"}},
      // Without data there is no event, and its type is dropped.
      {"event: lost\n\nid: 3\n\nother: x\n\ndata: y\n\n", {"message|y|3"}},
      {"data: a\xE2\x80\xA8z \xC3\x28 \xF0\x9F\x99\n\n", {"message|a\u2028z \uFFFD( \uFFFD|"}},
      {"data: unfinished\n", {}},
      {std::string("id: a\0b\ndata: x\n\n", 17), {"message|x|"}},
  };
  for (const auto& [stream, events] : cases) {
    EXPECT_EQ(eventsOf({stream}), events);
  }
  ServerSentEventsStreamParser parser;
  for (const auto& [line, expected] :
       {std::pair("retry: x\n", -1), {"retry: 250\n", 250}, {"retry: 1.5\n", 250}, {"retry\n", 250}}) {
    parser.feed(line, [](const auto&) {});
    EXPECT_EQ(parser.retry(), expected) << line;
  }
}

TEST(EventStream, isTheSameWhereverItIsCut) {
  const std::string stream =
      "\xEF\xBB\xBF: note\r\n\r\nevent: message\rdata: gr\xC3\xBCn \xF0\x9F\x99\x82\r\rdata: a\r\ndata: b\r\n\r\nid: "
      "1\n"
      "data\n\n";
  const auto whole = eventsOf({stream});
  ASSERT_THAT(whole, ElementsAre("message|gr\u00FCn \U0001F642|", "message|a\nb|", "message||1"));
  std::vector<std::string> bytes;
  for (std::size_t cut = 0; cut < stream.size(); ++cut) {
    EXPECT_EQ(eventsOf({stream.substr(0, cut), stream.substr(cut)}), whole) << cut;
    bytes.push_back(stream.substr(cut, 1));
  }
  EXPECT_EQ(eventsOf(bytes), whole);
}

}  // namespace
}  // namespace quillmark
