#include <gmock/gmock.h>

#include "logic/providers/ProviderLab.h"
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

/// Recorded streams of every kind, each in two deliveries, cut at every byte.
struct StreamCuts : ProviderLab {
  std::shared_ptr<Stream> streamIn(ProviderType type, const std::vector<std::string>& deliveries) {
    const auto provider = factory.makeProvider(configOf(type, "m"));
    const auto seen = stream(*provider);
    last().head(200, "text/event-stream");
    for (const auto& delivery : deliveries) {
      if (!delivery.empty()) {
        last().bytes(delivery);
      }
    }
    last().end();
    desktop.queue.settle();
    EXPECT_EQ(seen->completions, 1);
    return seen;
  }
};

std::string deltaEvent(const std::string& content) {
  return R"(data: {"choices":[{"delta":{"content":")" + content + R"("}}]})";
}

TEST_F(StreamCuts, ofTheSharedLineHandlingLoseTheLineThatIsCutAndNothingElse) {
  const std::pair<std::string, std::string> lines[] = {{": note", ""},
                                                       {deltaEvent("one "), "one "},
                                                       {deltaEvent("gr\u00fcn "), "gr\u00fcn "},
                                                       {"data: [DONE]", ""},
                                                       {deltaEvent("late"), "late"}};
  std::string recorded;
  for (const auto& [line, piece] : lines) {
    recorded += line + "\r\n\n";
  }
  for (std::size_t cut = 0; cut <= recorded.size(); ++cut) {
    std::string expected;
    bool hasEnded = false;
    std::size_t start = 0;
    for (const auto& [line, piece] : lines) {
      const bool isWhole = cut <= start || cut >= start + line.size();
      expected += isWhole && !hasEnded ? piece : "";
      hasEnded = hasEnded || (isWhole && line == "data: [DONE]");
      start += line.size() + 3;
    }
    const auto seen = streamIn(ProviderType::openAICompatible, {recorded.substr(0, cut), recorded.substr(cut)});
    EXPECT_EQ(seen->whole, expected) << cut;
  }
}

TEST_F(StreamCuts, ofTheVendorsOwnClientsChangeNothing) {
  const auto openAI = [](const std::string& content) {
    return R"(data: {"id":"1","object":"chat.completion.chunk","created":1.5,"model":"m","system_fingerprint":"f",)"
           R"("choices":[{"index":0,"delta":{"content":")" +
           content + "\"}}]}\r\n\r\n";
  };
  const auto anthropic = [](const std::string& text) {
    return "event: content_block_delta\ndata: {\"type\":\"content_block_delta\",\"index\":0,"
           "\"delta\":{\"type\":\"text_delta\",\"text\":\"" +
           text + "\"}}\n\n";
  };
  const std::pair<ProviderType, std::string> streams[] = {
      {ProviderType::openAI,
       openAI("one ") + openAI("gr\u00fcn ") + openAI("two") + "data: [DONE]\n\n" + openAI("late")},
      {ProviderType::anthropic, "event: message_start\ndata: {\"type\":\"message_start\",\"message\":{}}\n\n" +
                                    anthropic("one ") + anthropic("gr\u00fcn ") + anthropic("two") +
                                    "event: message_stop\ndata: {\"type\":\"message_stop\"}"},
  };
  for (const auto& [type, recorded] : streams) {
    for (std::size_t cut = 0; cut <= recorded.size(); ++cut) {
      const auto seen = streamIn(type, {recorded.substr(0, cut), recorded.substr(cut)});
      EXPECT_EQ(seen->whole, "one gr\u00fcn two") << cut;
      EXPECT_EQ(seen->pieces.size(), 3u) << cut;
    }
  }
  EXPECT_TRUE(desktop.alerts.shown.empty());
}

TEST_F(StreamCuts, ofPlainTextSplitOnlyWhatTheyGoThrough) {
  const std::string recorded = "a\\nb\\tgr\u00fcn";
  for (std::size_t cut = 1; cut < recorded.size(); ++cut) {
    std::string expected = "a\nb\tgr\u00fcn";
    if (recorded[cut - 1] == '\\') {
      expected = text::replacingAll(expected, recorded[cut] == 'n' ? "\n" : "\t", recorded.substr(cut - 1, 2));
    } else if (recorded[cut - 1] == '\xC3') {
      expected = text::replacingAll(expected, "\u00fc", "\uFFFD\uFFFD");
    }
    EXPECT_EQ(streamIn(ProviderType::quillMark, {recorded.substr(0, cut), recorded.substr(cut)})->whole, expected);
  }
}

}  // namespace
}  // namespace quillmark
