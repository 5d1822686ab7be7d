#include "Core/Backup/MessagesExport.h"
#include "Support/Browser.h"
#include "Support/SampleMessages.h"
#include "Support/TemporaryFolder.h"

#include <chrono>
#include <gmock/gmock.h>

namespace brimvale {

namespace {

using MessagesExport::Conversation;
using MessagesExport::Message;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using testing::TemporaryFolder;

Date moment(int day, int hour) {
    using namespace std::chrono;
    return sys_days(May / day / 2024) + hours(hour);
}

/// A page by which a script finds out what became of the texts: it clicks the last button, and leaves a line
/// for each thing it sees in the document's title.
std::string withProbe(std::string page) {
    const std::string probe = R"(<script>
addEventListener('load', () => {
  const buttons = [...document.querySelectorAll('.chat')], panes = [...document.querySelectorAll('.pane')];
  const shown = () => panes.filter(p => getComputedStyle(p).display !== 'none').map(p => p.id).join();
  const active = () => buttons.filter(b => b.classList.contains('active')).map(b => b.dataset.target).join();
  const before = shown() + '/' + active();
  buttons.at(-1).querySelector('.avatar').click();
  const after = shown() + '/' + active();
  for (const one of document.querySelectorAll('.bubble, .chat b')) one.click();
  const handlers = [...document.querySelectorAll('*')].filter(
    e => [...e.attributes].some(a => a.name.startsWith('on'))).length;
  const foreign = document.querySelectorAll('img, iframe, svg, object, link, a, form').length;
  const texts = [...document.querySelectorAll('.bubble')].map(b => b.textContent);
  const names = [...document.querySelectorAll('.pane header')].map(h => h.textContent);
  document.title = ['before ' + before, 'after ' + after, 'scripts ' + document.scripts.length,
    'handlers ' + handlers, 'foreign ' + foreign, 'messages ' + texts.length,
    'same ' + (texts.join() === names.join())].join('; ');
});
</script>)";
    return page.insert(page.find("</body>"), probe);
}

class PageInMemory final : public TextSink {
public:
    void write(std::string_view piece) override { text += piece; }
    std::string text;
};

std::string htmlOf(const std::vector<Conversation> &conversations, const StopFlag &cancelled = {}) {
    PageInMemory page;
    MessagesExport::writePage(page, conversations, cancelled);
    return page.text;
}

} // namespace

TEST(TranscriptPage, HostileTextsAreShownButNeverRun) {
    const TemporaryFolder folder;
    // Each text is the name of a conversation and its only message.
    std::vector<Conversation> conversations;
    for (const std::string &text : testing::hostileTexts())
        conversations.push_back({text, {{text, false, moment(1, 12), false, text}}});
    const std::string count = std::to_string(conversations.size());
    const std::string last = "pane-" + std::to_string(conversations.size() - 1);

    const std::string path = folder.writeFile("page.html", withProbe(htmlOf(conversations)));
    const auto document = testing::documentAfterLoading(path, folder);
    if (!document)
        GTEST_SKIP() << "there is no browser here";
    EXPECT_THAT(*document,
                HasSubstr("<title>before pane-0/pane-0; after " + last + "/" + last +
                          "; scripts 2; handlers 0; foreign 0; messages " + count + "; same true</title>"));
    EXPECT_THAT(*document, Not(HasSubstr("data-harmed")));
}

TEST(TranscriptPage, EscapesNamesAndTexts) {
    for (const std::string &text : testing::hostileTexts()) {
        const std::string page = htmlOf({{text, {{text, true, moment(1, 12), true, text}}}});
        EXPECT_EQ(page.find(text), std::string::npos) << text;
        EXPECT_THAT(page, Not(HasSubstr("<img"))) << text;
    }
    const std::string page = htmlOf({{"&<>\"'", {{"a\nb&c", false, {}, false, ""}}}});
    EXPECT_THAT(page, HasSubstr("<header>&amp;&lt;&gt;&quot;&#39;</header>"));
    EXPECT_THAT(page, HasSubstr("a<br>b&amp;c"));
}

TEST(TranscriptPage, GroupsMessagesByLocalDay) {
    const std::string answer = htmlOf({{"élan",
                                        {{"late", false, moment(1, 21), false, "SMS"},
                                         {"after midnight", true, moment(1, 22), false, "SMS"},
                                         {"", true, moment(2, 5), true, "iMessage"}}},
                                       {"🇩🇪 Kickers", {}}});
    const std::vector<std::string> pieces = {
        "class=\"chat active\" data-target=\"pane-0\"><span class=\"avatar\">É</span>",
        "<span class=\"when\">2 May 2024</span>",
        "class=\"chat\" data-target=\"pane-1\"><span class=\"avatar\">🇩🇪</span>",
        "<span>Wednesday, 1 May 2024</span>",
        "<div class=\"row\"><div class=\"bubble sms\">late</div>",
        "<span>Thursday, 2 May 2024</span>",
        "<div class=\"row me\"><div class=\"bubble sms\">after midnight</div>",
        "<div class=\"row me\"><div class=\"bubble\"><i class=\"att\">",
        "<section class=\"pane\" id=\"pane-1\">"};
    std::size_t position = 0;
    for (const std::string &piece : pieces) {
        const std::size_t found = answer.find(piece, position);
        ASSERT_NE(found, std::string::npos) << piece << " in " << answer.substr(position);
        position = found;
    }
    EXPECT_EQ(answer.find("daysep\"><span>", answer.find("after midnight")), std::string::npos);
}

TEST(TranscriptPage, StopsAtOnce) {
    const StopFlag cancelled;
    cancelled.set();
    EXPECT_EQ(htmlOf({{"Team", {{"text", true, moment(1, 12), false, "SMS"}}}}, cancelled).find("text</div>"),
              std::string::npos);
}

TEST(TranscriptPage, WorksWithoutConversations) {
    const std::string page = htmlOf({});
    EXPECT_THAT(page, StartsWith("<!doctype html>\n<html lang=\"en\">"));
    EXPECT_THAT(page, HasSubstr("\n.clip,.att{display:block;"));
    EXPECT_THAT(page, HasSubstr("<div class=\"hdr\">0 messages<br>Exported by Brimvale</div>"));
    EXPECT_THAT(page, ::testing::EndsWith("</html>\n"));
}

} // namespace brimvale
