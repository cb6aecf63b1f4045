// Hostile texts in the window.

#include "tests/ui/chat_view_hostile.h"

using namespace orvandel;

namespace {

struct HostileText {
  const char* pszName;
  std::string strText;
};

void PrintTo(const HostileText& one, std::ostream* pStream) {
  *pStream << one.pszName;
}

class ChatHostile : public ChatHostileTest, public testing::WithParamInterface<HostileText> {};

TEST_P(ChatHostile, DoesNothingAndTheNextIsShown) {
  ShowHostile(GetParam().strText);

  ExpectGoesOn();
  ExpectNothingHappened();
}

// Escapes from the script's string.
INSTANTIATE_TEST_SUITE_P(Scripts, ChatHostile,
                         testing::ValuesIn(std::vector<HostileText>{
                             {"Alert", R"(");alert('x');(")"},
                             {"Confirm", R"(");confirm('x');(")"},
                             {"Prompt", R"(");prompt('x','y');(")"},
                             {"Print", R"(");window.print();(")"},
                             {"Loop", R"(");while(true){};(")"},
                             {"LoopAfterMarkup", R"(</p></div>");for(;;);//)"},
                             {"LoopAfterEscapedBackslash", R"(\\");for(;;);(")"},
                             {"LoopAfterLine", "\n;for(;;);//"},
                             {"LoopAfterReturn", "\r;for(;;);//"},
                             {"LoopAfterLineSeparator", "\xe2\x80\xa8;for(;;);//"},
                             {"LoopAfterParagraphSeparator", "\xe2\x80\xa9;for(;;);//"},
                             {"Recursion", R"(");(function f(){f();f()})();(")"},
                             {"Memory", R"(");var s='x';for(;;)s+=s;(")"},
                             {"Timer", R"(");setInterval('for(;;);',1);(")"},
                             {"Promise", R"(");Promise.resolve().then(function(){for(;;);});(")"},
                             {"Expression", R"("+alert('x')+")"},
                             {"Request",
                              R"(");var x=new XMLHttpRequest();x.open('GET','HTTP',false);x.send();(")"},
                             {"Socket", R"(");new WebSocket('WS:');(")"},
                             {"Window", R"(");window.open('HTTP');(")"},
                             {"Location", R"(");location='HTTP';(")"},
                             {"Emptying", R"(");document.documentElement.innerHTML='';(")"},
                         }),
                         NameOf<HostileText>);

// Scripts in markup.
INSTANTIATE_TEST_SUITE_P(
    Handlers, ChatHostile,
    testing::ValuesIn(std::vector<HostileText>{
        {"Element", "<script>for(;;);</script>"},
        {"ElementFromServer", "<script src='HTTPa.js'></script>"},
        {"OnError", "<img src='x' onerror='for(;;);'>"},
        {"OnErrorAlert", "<img src='x' onerror='alert(1)'>"},
        {"OnLoad", "<svg onload='for(;;);'></svg><body onload='for(;;);'>"},
        {"OnToggle", "<details open ontoggle='for(;;);'>x</details>"},
        {"OnFocus", "<input autofocus onfocus='for(;;);'>"},
        {"OnAnimation",
         "<style>@-webkit-keyframes a{}p{-webkit-animation:a 1ms}</style>"
         "<b style='-webkit-animation:a 1ms' onwebkitanimationend='for(;;);'>x</b>"},
        {"OnMedia", "<video src='x' onerror='for(;;);'><source onerror='for(;;);'></video>"},
        {"FrameScript", "<iframe src='javascript:for(;;);'></iframe>"},
        {"FrameScriptParent", "<iframe src='javascript:parent.alert(1)'></iframe>"},
        {"FrameText", "<iframe srcdoc='<script>for(;;);</script>'></iframe>"},
        {"FrameData", "<iframe src='data:text/html,<script>for(;;);</script>'></iframe>"},
        {"ObjectData", "<object data='data:text/html,<script>for(;;);</script>'></object>"},
        {"HexEscape", R"(\x3cimg src=x onerror=\x22for(;;);\x22\x3e)"},
        {"UnicodeEscape", R"(\u003cimg src=x onerror=\u0022for(;;);\u0022\u003e)"},
        {"OctalEscape", R"(\74img src=x onerror=\42for(;;);\42\76)"},
        {"EscapedEnd", R"(\x22);for(;;);(\x22)"},
        {"UnicodeEscapedEnd", R"(\u0022);for(;;);(\u0022)"},
        {"TrailingBackslash", "x\\"},
        {"BrokenEscape", R"(\u00)"},
        {"SvgScript", "<svg><script>for(;;);</script><set attributeName='onload' to='for(;;);'/></svg>"},
        {"Style", "<style>p{behavior:url(HTTP);-moz-binding:url(HTTP)}</style>"},
        {"RefreshScript", "<meta http-equiv='refresh' content='0;url=javascript:for(;;);'>"},
        {"Nul", std::string("a\0<script>for(;;);</script>\0b", 29)},
    }),
    NameOf<HostileText>);

// Requests, to the network and to files.
INSTANTIATE_TEST_SUITE_P(
    Requests, ChatHostile,
    testing::ValuesIn(std::vector<HostileText>{
        {"Image", "<img src='HTTPa.png'>"},
        {"ImageFile", "<img src='FILE'>"},
        {"ImageSet",
         "<img srcset='HTTPa.png 1x, HTTPb.png 2x'><picture><source srcset='HTTPa.png'></picture>"},
        {"ImageWithoutScheme", "<base href='HTTP'><img src='a.png'>"},
        {"InputImage", "<input type='image' src='HTTPa.png'>"},
        {"Background", "<table background='HTTPa.png'><td background='HTTPb.png'>x</table>"},
        {"Import", "<style>@import 'HTTPa.css'; @import url(FILE);</style>"},
        {"StyleUrl", "<b style='background:url(HTTPa.png)'>x</b><style>p{background:url(HTTPa.png)}</style>"},
        {"StyleFont", "<style>@font-face{font-family:f;src:url(HTTPa.ttf)}p{font-family:f}</style>x"},
        {"StyleSheet", "<link rel='stylesheet' href='HTTPa.css'><link rel='stylesheet' href='FILE'>"},
        {"StyleContent", "<style>p:before{content:url(HTTPa.png)}p{cursor:url(HTTPb.cur),auto}</style>x"},
        {"Prefetch",
         "<link rel='prefetch' href='HTTPa'><link rel='dns-prefetch' href='HTTP'><link "
         "rel='subresource' href='HTTPb'><link rel='icon' href='HTTPi.ico'>"},
        {"Video", "<video autoplay src='HTTPa.mp4' poster='HTTPa.png'></video>"},
        {"VideoFile", "<video autoplay src='FILE'></video><audio autoplay src='FILE'></audio>"},
        {"Audio", "<audio autoplay src='HTTPa.mp3'><source src='HTTPb.mp3'><track src='HTTPa.vtt'></audio>"},
        {"Embed", "<embed src='HTTPa.swf' type='application/x-shockwave-flash'>"},
        {"EmbedFile", "<embed src='FILE'>"},
        {"Object", "<object data='HTTPa.swf' type='application/x-shockwave-flash'></object>"},
        {"ObjectFile", "<object data='FILE' type='text/html'></object>"},
        {"ObjectWidget", "<object type='application/x-qt-plugin' classid='QWidget'></object>"},
        {"Applet", "<applet code='a.class' codebase='HTTP'></applet>"},
        {"Frame", "<iframe src='HTTP'></iframe>"},
        {"FrameFile", "<iframe src='FILE'></iframe>"},
        {"FrameSet", "<frameset><frame src='HTTP'></frameset>"},
        {"Refresh", "<meta http-equiv='refresh' content='0;url=HTTP'>"},
        {"RefreshFile", "<meta http-equiv='refresh' content='0;url=FILE'>"},
        {"RefreshBlank", "<meta http-equiv='refresh' content='0;url=about:blank'>"},
        {"RefreshSelf", "<meta http-equiv='refresh' content='0'>"},
        {"Svg",
         "<svg xmlns:xlink='http://www.w3.org/1999/xlink'><image xlink:href='HTTPa.png' width='9' "
         "height='9'/><use xlink:href='HTTPa.svg#a'/><use xlink:href='FILE#a'/></svg>"},
        {"Manifest", "<html manifest='HTTPa.manifest'>x</html>"},
        {"Policy",
         "<meta http-equiv='Content-Security-Policy' content='default-src *'><img src='HTTPa.png'>"},
        {"PolicyReport",
         "<meta http-equiv='Content-Security-Policy' content='default-src *; report-uri HTTPr'>"
         "<img src='HTTPa.png'>"},
    }),
    NameOf<HostileText>);

// Markup that could hide later content.
INSTANTIATE_TEST_SUITE_P(
    Markup, ChatHostile,
    testing::ValuesIn(std::vector<HostileText>{
        {"SecondContent", "<div id='content'>x</div>"},
        {"UnclosedComment", "<!-- x"},
        {"UnclosedTag", "<a href='"},
        {"PlainText", "<plaintext>"},
        {"UnclosedTextArea", "<textarea>"},
        {"UnclosedScript", "<script>"},
        {"ClosedBody", "</p></div></body></html>"},
        {"NamedLikeTheLookup", "<img name='getElementById'>"},
        {"NamedLikeTheLookupBehindAQuotedEnd", "<img title='>' name=getElementById>"},
        {"NamedLikeTheBodyBehindAQuotedEnd", "<form title='>' name=body></form>"},
        {"ColourBehindAQuotedEnd", "<input title='>' type=color autofocus>"},
        {"FormNamedLikeTheLookup", "<form name='getElementById'></form>"},
        {"ObjectLikeTheLookup", "<object id='getElementById'></object>"},
        {"NamedLikeTheBody", "<form name='body'></form>"},
        {"NamedLikeTheDocument", "<iframe name='document'></iframe><a id='document'>x</a>"},
        {"Megabyte", std::string(1024 * 1024, 'x')},
        {"LongWordOfEntities",
         [] {
           std::string strText;
           for (int i = 0; i < 100000; ++i) strText += "&amp;";
           return strText;
         }()},
        {"LargeNumbers",
         "<table><td colspan='2147483647' rowspan='2147483647'>x</table><textarea "
         "cols='2000000000' rows='2000000000'></textarea><ol start='2147483647'><li>x</ol>"},
    }),
    NameOf<HostileText>);

}  // namespace
