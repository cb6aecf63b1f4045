
const STRETCH = 25;     // messages that are built at a time
const MESSAGE_HEIGHT = 76;  // pixels, on average
const DAY_FORMAT = new Intl.DateTimeFormat('en-GB', { dateStyle: 'full', timeZone: 'UTC' });
const MONTH_FORMAT = new Intl.DateTimeFormat('en-GB', { month: 'long', year: 'numeric', timeZone: 'UTC' });

/// "2016-05" or "2016-05-01" in words; as it is when it is no date.
function dayInWords(day, format = DAY_FORMAT) {
  const date = new Date(/^\d{4}-\d\d$/.test(day) ? day + '-01' : day);
  return /^\d{4}-/.test(day) && !Number.isNaN(date.getTime()) ? format.format(date) : day;
}

/// The list of the messages.
class Conversation {
  /// @param messages all of them. @param folder where the recovery puts attachments.
  constructor(messages, folder) {
    this.messages = messages;
    this.folder = folder;
    this.query = '';
    this.current = -1;  // the message that the search is at
    this.oldestFirst = false;
    this.element = make('div', 'messages');
    this.list = new LongList({
      parent: this.element, tag: 'section', size: STRETCH, height: MESSAGE_HEIGHT,
      fill: (stretch, first, end) => {
        for (let place = first; place < end; ++place) stretch.append(...this.elementsAt(place));
      },
    });
  }

  show() { this.list.show(this.messages.count); }

  /// The message at a place of the list, and back.
  placed(place) { return this.oldestFirst ? this.messages.count - 1 - place : place; }

  /// Changes the order; the message at the top of the screen stays in view.
  order(oldestFirst) {
    if (oldestFirst === this.oldestFirst) return;
    const top = this.topMessage();
    this.oldestFirst = oldestFirst;
    this.show();
    if (top >= 0) this.reveal(top, 'start');
  }

  /// Marks a query in the messages, and the message that the search is at.
  mark(query, current) {
    if (query === this.query && current === this.current) return;
    this.query = query;
    this.current = current;
    this.list.refresh();
  }

  /// Scrolls to a message, and returns its element.
  reveal(at, block) {
    const stretch = this.list.stretchOf(this.placed(at));
    const message = stretch.querySelector(`[data-at="${at}"]`);
    message.scrollIntoView({ block, behavior: 'instant' });
    return message;
  }

  /// As reveal, for a reader who goes on from there: the keyboard and assistive tools are there as well.
  enter(at) {
    const message = this.reveal(at, 'start');
    message.tabIndex = -1;
    message.focus({ preventScroll: true });
  }

  /// When a message was written, in words; empty if that isn't known.
  when(at) {
    const date = this.messages.date(at);
    return date && `${dayInWords(this.messages.day(at))}, ${date.slice(-8)} UTC`;
  }

  /// The first message on the screen; -1 at the top of the page.
  topMessage() {
    if (scrollY === 0) return -1;
    const bar = document.querySelector('.tools');
    const top = bar ? bar.getBoundingClientRect().bottom : 0;
    for (const message of this.element.querySelectorAll('.message'))
      if (message.getBoundingClientRect().bottom > top + 4) return Number(message.dataset.at);
    return -1;
  }

  /// The elements of a message: the day, if it begins there, and the message.
  elementsAt(place) {
    const { messages } = this;
    const at = this.placed(place);
    const before = place > 0 ? this.placed(place - 1) : -1;
    const newDay = before < 0 || messages.day(before) !== messages.day(at);
    const newRun = newDay || messages.isMine(before) !== messages.isMine(at) || messages.party(before) !== messages.party(at);
    const message = this.messageElement(at, newRun);
    return newDay && messages.day(at) ? [make('h2', 'day', dayInWords(messages.day(at))), message] : [message];
  }

  messageElement(at, newRun) {
    const { messages } = this;
    const [date, party, text] = [messages.date(at), messages.party(at), messages.text(at)];
    const whole = this.when(at);
    const spoken = make('span', 'unseen', makeText('bdi', '', party), (whole && ', ' + whole) + ': ');
    const bubble = make('div', messages.kind(at));
    if (messages.isDeleted(at)) bubble.append(make('span', 'mark', 'Deleted'));
    const content = makeText('span', EMOJI.test(text) ? 'text emoji' : 'text', '');
    appendRich(content, text, this.query, this.folder);
    bubble.append(content);
    const line = make('div', 'line', bubble);
    if (date) {
      const time = make('time', '', date.slice(-8, -3));
      time.dateTime = date.replace(' ', 'T') + 'Z';
      time.title = whole;
      time.setAttribute('aria-hidden', 'true');
      line.append(time);
    }
    const message = make('div', 'message' + (messages.isMine(at) ? ' mine' : '') + (newRun ? ' run' : '') +
                                (at === this.current ? ' current' : ''), spoken);
    message.dataset.at = at;
    if (newRun && !messages.isMine(at)) {
      const name = makeText('div', 'party', party);
      name.setAttribute('aria-hidden', 'true');
      message.append(name);
    }
    message.append(line);
    return message;
  }
}

/// The messages as dense lines for paper. @param head elements in front of them.
function paperOf(messages, places, head) {
  const paper = make('div', '', ...head);
  paper.id = 'paper';
  let day = '';
  for (const at of places) {
    if (messages.day(at) !== day) {
      day = messages.day(at);
      if (day) paper.append(make('h2', 'day', dayInWords(day)));
    }
    const entry = make('p', 'entry' + (messages.isMine(at) ? ' mine' : ''), make('time', '', messages.date(at).slice(-8, -3)), ' ',
                       makeText('b', '', messages.party(at)), messages.isDeleted(at) ? ' (deleted) ' : ' ');
    entry.append(makeText('bdi', '', messages.text(at).replaceAll(ATTACHMENT, '[Attachment]')));
    paper.append(entry);
  }
  return paper;
}
