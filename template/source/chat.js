
/// The person that a page is about: { name, phone }, both may be empty; null when the text has another form.
function personIn(text) {
  const parts = /^Name: ([^]*), Phone: ([^]*)$/.exec(text);
  return parts && { name: parts[1], phone: parts[2] };
}

function personOf(text) {
  const person = personIn(text);
  if (!person) return makeText('p', 'person', text);
  const part = (label, value) =>
    make('span', value ? '' : 'unseen', make('span', 'label', label), makeText('bdi', label === 'Name: ' ? 'name' : '', value));
  return make('p', 'person', part('Name: ', person.name), make('span', 'unseen', ', '), part('Phone: ', person.phone));
}

function summaryOf(messages, { deleted, first, last }) {
  const summary = make('p', 'summary', make('span', 'chip', counted(messages.count, 'message')));
  if (deleted) summary.append(make('span', 'chip deleted', deleted + ' deleted'));
  if (first) {
    const chip = make('span', 'chip', first === last ? first : first + ' to ' + last);
    summary.append(chip, make('span', 'chip', 'Times in UTC'));
  }
  return summary;
}

function noticesOf(messages, facts, { attachments, oneSender }) {
  const notices = [];
  if (messages.isDoubtful(facts, oneSender !== undefined)) {
    notices.push('A text or name in this conversation contains what this page puts between messages. What looks like several ' +
                 'messages may be a single one, whose writer imitates others.');
  }
  if (messages.rows.includes(ATTACHMENT))
    notices.push(`Attachments are in the folder "${attachments}" of the recovery, if they were recovered.`);
  return notices.map((text, at) => make('p', at || !text.startsWith('A text or name') ? 'hint' : 'notice doubtful', text));
}

/// Puts the messages on paper while the browser prints: all, or those that were chosen, below a copy of the header and of
/// what has no form of a row.
function preparePrinting(conversation, header, rest) {
  let chosen = null;
  addEventListener('beforeprint', () => {
    const { messages } = conversation;
    const places = chosen || Array.from({ length: messages.count }, (_, place) => conversation.placed(place));
    document.getElementById('paper')?.remove();
    document.body.append(paperOf(messages, places, [header, ...rest].map((element) => element.cloneNode(true))));
  });
  addEventListener('afterprint', () => {
    chosen = null;
    document.getElementById('paper')?.remove();
  });
  return (places) => {
    chosen = places;
    print();
  };
}

whenRead((text, title) => {
  const opening = '</p></header><main>\n\n';
  const messages = new Messages(rowsOf(text, opening));
  const personText = between(text, '</h1>\n<p>', opening);
  const person = personIn(personText);
  const who = person ? (person.name && person.name !== 'Unknown' ? person.name : person.phone || person.name) : personText;
  const facts = messages.survey();
  const header = make('header', '', makeText('h1', '', title), personOf(personText), summaryOf(messages, facts),
                      ...noticesOf(messages, facts, document.body.dataset));
  const conversation = new Conversation(messages, document.body.dataset.attachments);
  conversation.oldestFirst = kept.get('order') === 'oldest';
  const main = make('main', '', conversation.element);
  const rest = messages.rest ? [makeText('pre', 'rest', messages.rest)] : [];
  main.prepend(...rest);
  if (!messages.count) main.append(make('p', 'empty', 'No messages.'));
  const print = preparePrinting(conversation, header, rest);
  const bar = messages.count ? barOf(conversation, facts, new Search(conversation), print) : [];
  return { elements: [header, ...bar, main], title: who ? `${who} – ${title}` : title, shown: () => conversation.show() };
});
