
const ROW_HEAD = new RegExp(
  '(?:^|</div>\\n)<div class="date">Date: (-?\\d{4,}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d|) ' +
  '((?:(?!</div>)[^]){0,1000}):</div>\\n<div class="((?:del_)?(?:recv|send)_msg)">', 'g');
const ROW_END = '</div>\n';
const STRETCH = 50;  // messages in a section, which the browser lays out when it comes into view

/// The messages in a text of rows, in its order. `rest` is what stands before the first of them.
function messagesOf(rows) {
  const messages = [];
  let rest = rows;
  let textStart = 0;
  ROW_HEAD.lastIndex = 0;
  for (let head = ROW_HEAD.exec(rows); head; head = ROW_HEAD.exec(rows)) {
    if (messages.length) messages[messages.length - 1].text = rows.slice(textStart, head.index);
    else rest = rows.slice(0, head.index);
    messages.push({ date: head[1], party: head[2], kind: head[3], text: '' });
    textStart = ROW_HEAD.lastIndex;
  }
  if (messages.length) {
    const last = rows.slice(textStart);
    messages[messages.length - 1].text = last.endsWith(ROW_END) ? last.slice(0, -ROW_END.length) : last;
  }
  return { messages, rest };
}

/// The two elements of a message. The words "Date: " and ":" are there to be copied, not to be seen.
function bubbleOf({ date, party, kind, text }) {
  const side = kind.endsWith('send_msg') ? ' mine' : '';
  const line = make('div', 'date' + side, make('span', 'unseen', 'Date: '), make('time', '', date), ' ',
                    makeText('bdi', 'party', party), make('span', 'unseen', ':'));
  return [line, makeText('div', kind, text)];
}

function conversationOf(messages) {
  const main = make('main', '');
  for (let first = 0; first < messages.length; first += STRETCH) {
    const section = make('section', 'stretch');
    for (const message of messages.slice(first, first + STRETCH)) section.append(...bubbleOf(message));
    main.append(section);
  }
  return main;
}

function personOf(text) {
  const parts = /^Name: ([^]*), Phone: ([^]*)$/.exec(text);
  if (!parts) return makeText('p', 'person', text);
  const label = (word, value) => make('span', value ? 'label' : 'unseen', word);
  return make('p', 'person', label('Name: ', parts[1]), makeText('bdi', parts[1] && 'name', parts[1]),
              make('span', 'unseen', ', '), label('Phone: ', parts[2]), makeText('bdi', '', parts[2]));
}

function summaryOf(messages) {
  const deleted = messages.filter((message) => message.kind.startsWith('del_')).length;
  const dates = messages.map((message) => message.date).filter((date) => date).sort();
  const summary = make('p', 'summary', make('span', 'chip', counted(messages.length, 'message')));
  if (deleted) summary.append(make('span', 'chip deleted', deleted + ' deleted'));
  if (dates.length) {
    const first = dates[0].slice(0, 10);
    const last = dates[dates.length - 1].slice(0, 10);
    summary.append(make('span', 'chip', first === last ? first : first + ' to ' + last));
  }
  return summary;
}

whenRead((text, title) => {
  const opening = '</p>\n</header>\n<main>\n';
  const { messages, rest } = messagesOf(rowsOf(text, opening));
  const header = make('header', '', makeText('h1', '', title), personOf(between(text, '</h1>\n<p>', opening)),
                      summaryOf(messages));
  const main = conversationOf(messages);
  if (rest) main.prepend(makeText('pre', 'rest', rest));
  if (!messages.length) main.append(make('p', 'empty', 'No messages.'));
  return [header, main];
});
