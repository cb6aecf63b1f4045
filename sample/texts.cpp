#include "sample/texts.h"

#include <QStringList>

namespace orvandel {

namespace {

const char* const kMessages[] = {
    "Hi!",
    "Hey, wie geht’s?",
    "Good morning ☀️",
    "Guten Morgen! Kaffee? ☕️",
    "On my way, 10 min",
    "Bin gleich da",
    "ok",
    "👍",
    "😂😂😂",
    "👨‍👩‍👧‍👦 ❤️ 🏳️‍🌈 🇩🇪",
    "Did you see this? https://www.example.com/articles/2015/a-walk-in-the-hills?ref=phone&page=2#top",
    "http://example.org",
    "Übermorgen größere Wanderung, übrigens über Österreich – schöne Grüße!",
    "Können wir später telefonieren?",
    "Rindfleischetikettierungsüberwachungsaufgabenübertragungsgesetz",
    "Donaudampfschifffahrtsgesellschaftskapitänsmützenabzeichen 😅",
    "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"
    "aaaaa",
    "שלום! מה שלומך היום?",
    "مرحبا، كيف الحال؟ نلتقي الساعة 5 في المقهى",
    "Meet at קפה ירוק at 18:30, okay?",
    "今晚一起吃饭吗？",
    "写真ありがとう！とてもきれいですね。",
    "내일 봐요~",
    "Увидимся в пятницу",
    "Einkaufsliste:\n- Milch\n- Brot\n- 6 Eier\n- Käse (Gouda)",
    "Train 14:02 → 17:48\nCoach 7, seat 34\nPlatform 3",
    "Happy birthday!!! 🎉🎂\n\nMay all your wishes come true.",
    "Line one\r\nline two\r\nline three",
    "He said \"no\", she said 'yes' & then <nobody> spoke; 100% true; C:\\temp\\new",
    "The code is 482913. Don't share it with anyone.",
    "Your parcel arrives tomorrow between 9:00 and 12:00. Track it: https://track.example.net/p/8F3K-22",
    "Tab\there, and a trailing space ",
    "Ça va? Déjà vu à l’hôtel… naïve façade, señor!",
    "Call me at +49 30 901820 or 0151 23456789",
    "Price: 12,50 € / $13.20 / £9.99 / ¥1500",
    "∑ x² ≠ ∞ … ½ × ¾ = ⅜ ✓",
    "lol",
    "?",
    "Wer kommt alles am Samstag?",
    "Ich bringe Nudelsalat mit. Und Grillkohle. Und vielleicht die Kinder.",
    "Sorry, can't talk right now.",
    "Thanks a lot! Really. You saved my day, and probably my week as well. When I got to the station the "
    "ticket machine "
    "was broken, the counter closed, and the train about to leave. Without your screenshot I would still be "
    "standing "
    "there, looking at pigeons.",
    "Combining: e\xCC\x81 vs é, A\xCC\x8A vs Å",
    "𝔘𝔫𝔦𝔠𝔬𝔡𝔢 beyond the first plane 🀄️ 𠜎",
    "CSV; with, separators\tand \"quotes\"",
};

const char* const kOpenings[] = {"Shall we", "Wollen wir", "Can we", "Let's", "Do you want to", "On va"};
const char* const kDeeds[] = {"go to the lake",      "ins Kino gehen",   "eat at Mario's", "fix the bike",
                              "die Fotos anschauen", "faire une balade", "cook something", "zum Markt gehen"};
const char* const kTimes[] = {"tonight?",
                              "morgen?",
                              "on Sunday at 3?",
                              "nächste Woche?",
                              "demain?",
                              "after work? 🙂",
                              "when it stops raining ☔️"};

struct NoteRow {
  const char *title, *body, *snippet;
};

const NoteRow kNotes[] = {
    {"Shopping list", "<div>Milk</div><div>Bread</div><div>Eggs &amp; cheese</div>",
     "Milk Bread Eggs & cheese"},
    {"Wi-Fi at the cottage", "Network: Waldhaus<br>Password: <b>not here</b><br>Router is under the stairs",
     "Network: Waldhaus"},
    {"Fish & Chips <best>",
     "<div>Fish &amp; Chips &lt;best&gt; in town</div><div>Ask for Tom&#39;s &quot;special&quot;</div>",
     "Fish & Chips <best> in town"},
    {"Zürich Reise",
     "<div>Zürich &ndash; Bücher, Käse, Größe 42</div><div><br></div><div>Rückfahrt 17:03</div>",
     "Zürich – Bücher, Käse, Größe 42"},
    {"会议记录", "<div>会议记录</div><div>一、预算</div><div>二、时间表&nbsp;（草案）</div>", "一、预算"},
    {"買い物", "<div>牛乳</div><div>パン</div><div>りんご三つ</div>", "牛乳"},
    {"Only a title", nullptr, nullptr},
    {nullptr, "<div>Only a body, nobody gave this one a name</div>",
     "Only a body, nobody gave this one a name"},
    {"Poem",
     "<html><head></head><body><p>Over the hill<br/>the evening stands still,<br/>&nbsp;&nbsp;and so do "
     "I.</p></body></html>",
     "Over the hill"},
    {"Ideas", "<ul><li>paint the door</li><li>learn to juggle</li><li>write &#8220;the&#8221; book</li></ul>",
     "paint the door"},
    {"שלום", "<div dir=\"rtl\">רשימת קניות</div>", "רשימת קניות"},
    {"Empty body", "", ""},
    {"Links", "<div><a href=\"https://example.com/?a=1&amp;b=2\">https://example.com/?a=1&amp;b=2</a></div>",
     "https://example.com/?a=1&b=2"},
    {"Numbers &#x26; signs", "<div>1 &lt; 2 &gt; 0, 5 &times; 5 = 25, 100 &euro;, &#x1F600; &#233;</div>",
     "1 < 2 > 0, 5 × 5 = 25, 100 €"},
    {"A very long title that goes on and on, because whoever wrote it took the first paragraph of the note "
     "for a title "
     "and the device did not mind at all",
     "<div>Plain line one\nline two of the same div</div><div>tail</div>", "Plain line one"},
};

QString text(const char* value) {
  return value ? QString::fromUtf8(value) : QString();
}

}  // namespace

QString messageText(SeededRandom& random) {
  if (random.chance(65)) return text(random.pick(kMessages));
  const QString opening = text(random.pick(kOpenings));
  const QString deed = text(random.pick(kDeeds));
  return opening + ' ' + deed + ' ' + text(random.pick(kTimes));
}

std::vector<NoteText> sampleNotes() {
  std::vector<NoteText> notes;
  for (const NoteRow& row : kNotes) notes.push_back({text(row.title), text(row.body), text(row.snippet)});
  return notes;
}

}  // namespace orvandel
