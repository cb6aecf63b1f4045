
/// A value that the browser may keep between visits; where it doesn't allow that, nothing is kept.
const kept = {
  get(name) {
    try {
      return localStorage.getItem('conversation.' + name);
    } catch {
      return null;
    }
  },
  set(name, value) {
    try {
      localStorage.setItem('conversation.' + name, value);
    } catch {
      // as if it had never been chosen
    }
  },
};

/// A button with a sign, which its label names.
function signButton(className, label, sign, act) {
  const button = makeButton(className, sign, act);
  button.setAttribute('aria-label', label);
  button.title = label;
  return button;
}

/// A dialog with a heading, which its own button, Escape and a click beside it close.
function dialogOf(heading, ...content) {
  const title = make('h2', '', heading);
  title.id = 'title-' + heading.replace(/\W/g, '');
  const dialog = make('dialog', '');
  const head = make('div', 'dialog-head', title, signButton('', 'Close', '×', () => dialog.close()));
  dialog.append(head, ...content);
  dialog.setAttribute('aria-labelledby', title.id);
  dialog.addEventListener('click', (event) => { if (event.target === dialog) dialog.close(); });
  return dialog;
}

const SPOKEN = 200;  // characters of a hit that are read out

/// The search over all messages: a box, the count, and buttons to the hits before and behind.
class Search {
  constructor(conversation) {
    this.conversation = conversation;
    this.found = [];
    this.step = 0;  // the hit that is shown, as a place in the list
    this.box = make('input', '');
    this.box.type = 'search';
    this.box.placeholder = 'Search';
    this.box.setAttribute('aria-label', 'Search the messages');
    this.count = make('output', 'count');
    this.count.setAttribute('aria-live', 'polite');
    this.buttons = [signButton('icon', 'Previous hit', '↑', () => this.move(-1)), signButton('icon', 'Next hit', '↓', () => this.move(1))];
    this.hitText = make('span', 'unseen');
    this.hitText.setAttribute('role', 'status');
    this.element = make('div', 'search', this.box, this.count, ...this.buttons, this.hitText);
    this.element.setAttribute('role', 'search');
    this.box.addEventListener('focus', () => conversation.messages.prepareSearch());
    this.box.addEventListener('input', () => this.start());
    this.box.addEventListener('keydown', (event) => {
      if (event.isComposing) return;
      if (event.key === 'Enter') this.move(event.shiftKey ? -1 : 1);
      if (event.key === 'Escape') this.clear();
    });
    this.tell();
  }

  /// The message of a hit. Hits are counted in the order on the screen.
  hit(step) { return this.found[this.conversation.oldestFirst ? this.found.length - 1 - step : step]; }

  /// Searches anew, and goes to the first hit behind the top of the screen.
  start() {
    const { messages } = this.conversation;
    const top = this.conversation.topMessage();
    this.found = messages.find(this.box.value);
    const place = this.conversation.placed(Math.max(top, 0));
    this.step = top < 0 ? 0 : this.found.findIndex((_, step) => this.conversation.placed(this.hit(step)) >= place);
    this.step = Math.max(this.step, 0);
    this.go();
  }

  clear() {
    this.box.value = '';
    this.start();
  }

  move(by) {
    if (!this.found.length) return;
    this.step = (this.step + by + this.found.length) % this.found.length;
    this.go();
  }

  /// After a change of the order: the same message is a hit with another number.
  turn() {
    if (this.found.length) this.step = this.found.length - 1 - this.step;
    this.tell();
  }

  go() {
    const at = this.found.length ? this.hit(this.step) : -1;
    this.conversation.mark(this.box.value, at);
    if (at >= 0) this.conversation.reveal(at, 'center');
    this.hitText.textContent = at < 0 ? '' : this.describe(at);
    this.tell();
  }

  /// What a screen reader says of a hit.
  describe(at) {
    const { messages } = this.conversation;
    return `${messages.party(at)}, ${this.conversation.when(at)}: ${messages.text(at).slice(0, SPOKEN)}`;
  }

  tell() {
    for (const one of this.buttons) one.disabled = !this.found.length;
    this.count.textContent = !this.box.value ? '' : this.found.length ? `${this.step + 1} of ${this.found.length}` : 'Not found';
  }
}

/// The dialog that leads to a month or a day.
function jumpDialog(conversation, { first, last }) {
  const { messages } = conversation;
  const go = (wanted) => {
    // The first message of that time or, without one, the next that is later.
    let best = -1;
    for (let at = messages.count - 1; at >= 0 && best < 0; --at) if (messages.day(at) >= wanted) best = at;
    if (best < 0) best = 0;
    // From the latest to the earliest, a day or month begins with its last message.
    const time = messages.day(best).startsWith(wanted) ? wanted : messages.day(best);
    if (!conversation.oldestFirst)
      while (best > 0 && messages.day(best - 1).startsWith(time)) --best;
    dialog.close();
    conversation.enter(best);
  };
  const day = make('input', '');
  Object.assign(day, { type: 'date', min: first, max: last, value: last });
  const form = make('form', 'jump-day', make('label', '', 'Day ', day), make('button', '', 'Go'));
  form.addEventListener('submit', (event) => {
    event.preventDefault();
    if (day.value) go(day.value);
  });
  const list = make('div', 'months');
  const dialog = dialogOf('Go to a day or month', form, list);
  dialog.fill = () => {
    let year = '';
    let months;
    list.replaceChildren();
    for (const [month, count] of messages.months()) {
      if (month.slice(0, -3) !== year) {
        year = month.slice(0, -3);
        months = make('ul', '');
        list.append(make('h3', '', year), months);
      }
      months.append(make('li', '', makeButton('', `${dayInWords(month, MONTH_FORMAT)} (${count})`, () => go(month))));
    }
  };
  return dialog;
}

/// The dialog that asks what to print.
function printDialog(conversation, search, print) {
  const { messages } = conversation;
  const choices = make('div', 'choices');
  const dialog = dialogOf('Print', choices);
  dialog.fill = () => {
    const all = Array.from({ length: messages.count }, (_, place) => conversation.placed(place));
    const first = conversation.topMessage();
    const top = messages.day(first < 0 ? conversation.placed(0) : first).slice(0, -3);
    const offers = [['The whole conversation', all]];
    if (top) offers.push([dayInWords(top, MONTH_FORMAT), all.filter((at) => messages.day(at).slice(0, -3) === top)]);
    if (search.found.length) offers.push(['What the search found', search.found.map((_, step) => search.hit(step))]);
    choices.replaceChildren(...offers.map(([name, places]) => makeButton('', `${name} (${counted(places.length, 'message')})`, () => {
      dialog.close();
      print(places);
    })));
  };
  return dialog;
}

/// The bar above the messages, with its dialogs.
function barOf(conversation, facts, search, print) {
  const jump = jumpDialog(conversation, facts);
  const paper = printDialog(conversation, search, print);
  const order = makeButton('order', '', () => {
    conversation.order(!conversation.oldestFirst);
    kept.set('order', conversation.oldestFirst ? 'oldest' : 'newest');
    search.turn();
    name();
  });
  const name = () => { order.textContent = conversation.oldestFirst ? 'Oldest first' : 'Newest first'; };
  name();
  order.title = 'Change the order';
  const opener = (text, dialog) => makeButton('', text, () => {
    dialog.fill();
    dialog.showModal();
  });
  const buttons = make('div', 'buttons', opener('Go to…', jump), order, opener('Print…', paper));
  return [make('div', 'tools', search.element, buttons), jump, paper];
}
