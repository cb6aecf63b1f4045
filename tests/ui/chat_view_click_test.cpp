// Clicks on untrusted content in a chat.

#include "tests/ui/chat_view_hostile.h"

using namespace orvandel;

namespace {

struct Clickable {
  const char* pszName;
  std::string strText;
};

void PrintTo(const Clickable& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class ChatClick : public ChatHostileTest, public testing::WithParamInterface<Clickable> {};

TEST_P(ChatClick, OpensNothing) {
  ShowHostile(GetParam().strText);

  ClickGo(Messages());
  ClickGo(Chats());

  ExpectGoesOn();
  ExpectNothingHappened();
}

INSTANTIATE_TEST_SUITE_P(
    On, ChatClick,
    testing::ValuesIn(std::vector<Clickable>{
        {"Link", "<a id='go' href='HTTP'>link</a>"},
        {"LinkToFile", "<a id='go' href='FILE'>link</a>"},
        {"LinkInNewWindow", "<a id='go' target='_blank' href='HTTP'>link</a>"},
        {"LinkToFileInNewWindow", "<a id='go' target='_blank' href='FILE'>link</a>"},
        {"LinkToScript", "<a id='go' href='javascript:for(;;);'>link</a>"},
        {"LinkToScriptInNewWindow", "<a id='go' target='_blank' href='javascript:for(;;);'>link</a>"},
        {"LinkToBlank", "<a id='go' href='about:blank'>link</a>"},
        {"LinkWithPing", "<a id='go' ping='HTTP' href='HTTPa'>link</a>"},
        {"LinkToDownload", "<a id='go' download='x' href='HTTPa'>link</a>"},
        {"LinkToMail", "<a id='go' href='mailto:a@b'>link</a>"},
        {"Handler", "<b id='go' onclick='for(;;);' onmousedown='alert(1)' onmousemove='alert(2)'>text</b>"},
        {"Form", "<form action='HTTP'><input id='go' type='submit' value='send'></form>"},
        {"FormByPost",
         "<form action='HTTP' method='post'><input name='a' value='b'><input id='go' "
         "type='submit' value='send'></form>"},
        {"FormToFile", "<form action='FILE'><input id='go' type='submit' value='send'></form>"},
        {"FormInNewWindow", "<form action='HTTP' target='_blank'><button id='go'>send</button></form>"},
        {"FormToBlank", "<form action='about:blank'><button id='go'>send</button></form>"},
        {"FormToSelf", "<form><button id='go'>send</button></form>"},
        {"FormToScript", "<form action='javascript:for(;;);'><button id='go'>send</button></form>"},
        {"FormByMail", "<form action='mailto:a@b'><button id='go'>send</button></form>"},
        {"File", "<input id='go' type='file'>"},
        {"Files", "<input id='go' type='file' multiple>"},
        {"FileByLabel", "<label id='go' for='f'>choose</label><input id='f' type='file' multiple>"},
    }),
    NameOf<Clickable>);

using ChatClicks = ChatHostileTest;

TEST_F(ChatClicks, ReachTheClickedElement) {
  ShowHostile("<input type='checkbox' id='go'>");

  ClickGo(Messages());

  EXPECT_TRUE(WaitFor([&] { return Ask(Messages(), "document.querySelector('#go').checked").toBool(); }));
}

}  // namespace
