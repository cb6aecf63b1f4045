
const DATE_MARK = '<div class="date">Date: ';
const ROW_END = '</div>\n';
const DATE = /-?\d{4,}-\d\d-\d\d \d\d:\d\d:\d\d|/y;
const KINDS = ['recv_msg', 'del_recv_msg', 'send_msg', 'del_send_msg'];
const BUBBLE_MARKS = KINDS.map((kind) => `:</div>\n<div class="${kind}">`);
const HEAD_END = new RegExp(`:</div>\\n<div class="(${KINDS.join('|')})">`);
const SHORTEST_ROW = DATE_MARK.length + 1 + BUBBLE_MARKS[0].length + ROW_END.length;

/// The messages in a text of rows, in its order. Of each, only the places of its parts in the text are kept, since a
/// conversation may have hundreds of thousands.
class Messages {
  constructor(rows) {
    this.rows = rows;
    this.count = 0;
    const most = Math.ceil(rows.length / SHORTEST_ROW);
    this.kinds = new Uint8Array(most);
    for (const name of ['dateStarts', 'partyStarts', 'textStarts', 'textEnds']) this[name] = new Uint32Array(most);
    this.read();
    /// What precedes the first message: not in the form of a row.
    this.rest = this.count ? rows.slice(0, Math.max(this.dateStarts[0] - DATE_MARK.length - ROW_END.length, 0)) : rows;
  }

  read() {
    const { rows } = this;
    // Where the next row may start; the end without one.
    const next = (from) => {
      const at = rows.indexOf(ROW_END + DATE_MARK, from);
      return at < 0 ? rows.length : at + ROW_END.length;
    };
    let textStart = 0;
    for (let at = rows.startsWith(DATE_MARK) ? 0 : next(0), following; at < rows.length; at = following) {
      following = next(at + DATE_MARK.length);
      const head = this.readHead(at + DATE_MARK.length, following < rows.length ? following - ROW_END.length : rows.length);
      if (!head) continue;
      if (this.count > 1) this.textEnds[this.count - 2] = at - ROW_END.length;
      textStart = head;
    }
    if (!this.count) return;
    const end = rows.endsWith(ROW_END) ? rows.length - ROW_END.length : rows.length;
    this.textEnds[this.count - 1] = end < textStart ? rows.length : end;
  }

  /// Reads what comes between the words "Date: " and the text, at most to `limit`. Returns where the text starts; 0 when it
  /// isn't the head of a message. A name may contain anything but the start of another row.
  readHead(start, limit) {
    const { rows } = this;
    DATE.lastIndex = start;
    DATE.test(rows);
    const partyStart = DATE.lastIndex + 1;
    if (rows[partyStart - 1] !== ' ') return 0;
    const head = rows.slice(partyStart, limit);
    const mark = HEAD_END.exec(head);
    if (!mark) return 0;
    const at = this.count++;
    this.kinds[at] = KINDS.indexOf(mark[1]);
    this.dateStarts[at] = start;
    this.partyStarts[at] = partyStart;
    this.textStarts[at] = partyStart + mark.index + mark[0].length;
    return this.textStarts[at];
  }

  /// "2016-05-01 09:12:33", or empty.
  date(at) { return this.rows.slice(this.dateStarts[at], this.partyStarts[at] - 1); }
  /// "2016-05-01", or empty.
  day(at) { return this.date(at).slice(0, -9); }
  party(at) { return this.rows.slice(this.partyStarts[at], this.textStarts[at] - BUBBLE_MARKS[this.kinds[at]].length); }
  text(at) { return this.rows.slice(this.textStarts[at], this.textEnds[at]); }
  kind(at) { return KINDS[this.kinds[at]]; }
  isMine(at) { return this.kinds[at] > 1; }
  isDeleted(at) { return this.kinds[at] % 2 === 1; }

  /// Does what the first search would wait for: all texts in one, folded, with the places where they start.
  prepareSearch() {
    if (this.searched !== undefined) return;
    const texts = Array.from({ length: this.count }, (_, at) => this.text(at));
    let start = 0;
    this.searchedStarts = Uint32Array.from(texts, (text) => (start += text.length + 1) - text.length - 1);
    this.searched = folded(texts.join('\0'));
  }

  /// The messages whose text contains the query, ascending.
  find(query) {
    const wanted = folded(query);
    if (!wanted || wanted.includes('\0')) return [];
    this.prepareSearch();
    const found = [];
    for (let at = 0; at < this.count; ++at) {
      const place = this.searched.indexOf(wanted, this.searchedStarts[at]);
      if (place < 0) break;
      at = this.searchedAt(place, at);
      found.push(at);
    }
    return found;
  }

  /// The message that a place of the searched text is of. @param low that message or one before.
  searchedAt(place, low) {
    let high = low + 1;
    for (let step = 1; high < this.count && this.searchedStarts[high] <= place; step *= 2) {
      low = high;
      high = Math.min(high + step, this.count);
    }
    while (high - low > 1) {
      const middle = (low + high) >> 1;
      if (this.searchedStarts[middle] <= place) low = middle;
      else high = middle;
    }
    return low;
  }

  /// Pairs of a month, "2016-05", and how many messages are of it; the latest first.
  months() {
    const counts = new Map();
    for (let at = 0; at < this.count; ++at) {
      const month = this.day(at).slice(0, -3);
      if (month) counts.set(month, (counts.get(month) || 0) + 1);
    }
    return [...counts].sort(([one], [other]) => (one < other ? 1 : -1));
  }

  /// What is known of all messages together: how many are deleted, their first and last day (empty without dates),
  /// whether the dates descend, whether all of the owner are of "Me", and all others of one person.
  survey() {
    const facts = { deleted: 0, first: '', last: '', descend: true, ownerIsMe: true, oneSender: true };
    let before = '';
    let sender;
    for (let at = 0; at < this.count; ++at) {
      const date = this.date(at);
      const party = this.party(at);
      if (this.isDeleted(at)) ++facts.deleted;
      if (date && (!facts.first || date < facts.first)) facts.first = date;
      if (date > facts.last) facts.last = date;
      if (at && date > before) facts.descend = false;
      before = date;
      if (this.isMine(at)) facts.ownerIsMe &&= party === 'Me';
      else facts.oneSender &&= party === (sender ??= party);
    }
    facts.first = facts.first.slice(0, -9);
    facts.last = facts.last.slice(0, -9);
    return facts;
  }

  /// Whether a text or name may contain the form of a row, so that one message shows as several. Rows aren't escaped, so
  /// a text that imitates them exactly can't be told from them; but the exporter writes them from the latest to the
  /// earliest, the owner's messages as those of "Me", and, with `isOneSender`, all others as those of one person.
  isDoubtful({ descend, ownerIsMe, oneSender }, isOneSender) {
    if (!descend || !ownerIsMe || isOneSender && !oneSender) return true;
    let marks = 0;
    for (let at = this.rows.indexOf('<div class="'); at >= 0; at = this.rows.indexOf('<div class="', at + 1)) ++marks;
    return marks !== 2 * this.count;
  }
}
