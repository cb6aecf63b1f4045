
const ROW_START = '\t<tr><td>';
const CELL_BREAK = '</td><td>';
const ROW_END = '</td></tr>\n';
const ROW_BREAK = ROW_END + ROW_START;
const LINE_BREAK = '<br />';
const DATE = /^(-?\d{4,}-\d\d-\d\d \d\d:\d\d:\d\d)?$/;

/// The columns by the cells of the page's head: their names, and what is special of their texts.
function columnsOf(text) {
  const heads = between(text, '<thead>\n<tr>', '</tr>\n').matchAll(/<th>([^<]*)<\/th>/g);
  const names = Array.from(heads, ([, name]) => name);
  return names.map((name, at) => {
    const kind = name === 'Name' && names.includes('Phones') ? 'who' : KIND_OF[name] || 'text';
    return { name, kind, at, ...KINDS[kind] };
  });
}

/// Positions of a mark in a text, asked for from front to back. Each mark is searched for once, however often the
/// answer is "behind the end".
class Marks {
  constructor(text, mark) {
    Object.assign(this, { text, mark, at: text.indexOf(mark) });
  }

  /// Calls use with each position before the end that was not reported yet.
  before(end, use) {
    while (this.at >= 0 && this.at < end) {
      use(this.at);
      this.at = this.text.indexOf(this.mark, this.at + this.mark.length);
    }
  }
}

/// The cells of a table as places in the text that they come from: a row of them costs some bytes, so 200,000 rows take
/// little more room than their text.
class Rows {
  /// @param text  what the page holds between the head of its table and its end.
  constructor(text, columns) {
    Object.assign(this, { text, columns, width: columns.length, ranks: [] });
    const extents = text.startsWith(ROW_START) && text.endsWith(ROW_END) ? this.extents() : [];
    this.count = extents.length / 2;
    this.rest = this.count ? '' : text;
    // Of each row: where its cells start, and where another one would. A cell ends a cell break before the next start.
    this.starts = new Uint32Array(this.count * (this.width + 1));
    const breaks = new Marks(text, CELL_BREAK);
    for (let row = 0; row < this.count; ++row) this.place(row, extents[2 * row], extents[2 * row + 1], breaks);
  }

  /// Starts and ends of the rows, in turn. What is too short for a row is a text that looks like the end of one: it
  /// belongs to the row before it, or to the first one.
  extents() {
    const { text, width } = this;
    const found = [];
    const last = text.length - ROW_END.length;
    const breaks = new Marks(text, CELL_BREAK);
    let early = -1;
    for (let start = ROW_START.length; start <= last;) {
      const next = text.indexOf(ROW_BREAK, start);
      const end = next < 0 ? last : next;
      let cells = 1;
      breaks.before(end, () => ++cells);
      if (cells >= width) {
        found.push(early < 0 ? start : early, end);
        early = -1;
      } else if (found.length) found[found.length - 1] = end;
      else if (early < 0) early = start;
      start = end + ROW_BREAK.length;
    }
    return found;
  }

  /// Notes where the cells of a row start. A text that holds a cell break makes too many; they are joined again, around
  /// the date where there is one, else in the last column.
  place(row, start, end, breaks) {
    const { width } = this;
    const parts = [start];
    breaks.before(end, (at) => { if (at >= start) parts.push(at + CELL_BREAK.length); });
    const surplus = parts.length - width;
    parts.push(end + CELL_BREAK.length);
    let joined = 0;
    const dateColumn = this.columns.findIndex((column) => column.kind === 'when');
    if (surplus && dateColumn > 0) {
      const date = parts.findIndex((from, at) => at >= dateColumn && at <= dateColumn + surplus &&
        DATE.test(this.text.slice(from, parts[at + 1] - CELL_BREAK.length)));
      joined = Math.max(date - dateColumn, 0);
    }
    const base = row * (width + 1);
    this.starts[base] = start;
    for (let column = 1; column < width; ++column) this.starts[base + column] = parts[joined + column];
    this.starts[base + width] = end + CELL_BREAK.length;
  }

  start(row, column) {
    return this.starts[row * (this.width + 1) + column];
  }

  end(row, column) {
    return this.start(row, column + 1) - CELL_BREAK.length;
  }

  /// The text of a cell, with its lines apart.
  cell(row, column) {
    const text = this.text.slice(this.start(row, column), this.end(row, column));
    return this.columns[column].breaks ? text.replaceAll(LINE_BREAK, '\n') : text;
  }

  isEmpty(column) {
    for (let row = 0; row < this.count; ++row) if (this.end(row, column) > this.start(row, column)) return false;
    return true;
  }

  /// The text to search in: as long as the original, so places are the same in both.
  get lower() {
    return this.lowered ??= folded(this.text);
  }

  /// The rows that hold all words of a text, each in any of its cells or in the column with this number.
  with(words, column = -1) {
    const wanted = folded(words).split(/\s+/).filter((word) => word);
    const hits = new Uint32Array(this.count);  // number of words found, as long as none was missed
    wanted.forEach((word, at) => this.having(word, column, (row) => { if (hits[row] === at) hits[row] = at + 1; }));
    const rows = new Uint32Array(this.count);
    let count = 0;
    for (let row = 0; row < this.count; ++row) if (hits[row] === wanted.length) rows[count++] = row;
    return rows.subarray(0, count);
  }

  /// Calls use with each row that has the word in a cell. It leaps from hit to hit; one in the marks between cells, or
  /// in a column that isn't searched, leads to the next cell that is.
  having(word, column, use) {
    const { lower, starts, count, width } = this;
    const step = width + 1;
    const first = Math.max(column, 0);
    const last = column < 0 ? width - 1 : column;
    const end = count * step;
    for (let row = 0, at = 0; row < end;) {  // row: where its starts are
      at = lower.indexOf(word, Math.max(at, starts[row + first]));
      if (at < 0) return;
      while (row < end && at >= starts[row + last + 1] - CELL_BREAK.length) row += step;
      if (row === end) return;
      let cell = first;
      while (cell < last && at >= starts[row + cell + 1]) ++cell;
      if (at < starts[row + cell]) continue;
      if (this.isWithin(word, at, row, cell)) {
        use(row / step);
        row += step;
      } else if (cell < last) at = starts[row + cell + 1];
      else row += step;
    }
  }

  /// Whether the word at a place of the text is in the cell, and not in the marks behind it or between its lines.
  isWithin(word, at, row, cell) {
    const end = this.starts[row + cell + 1] - CELL_BREAK.length;
    if (at + word.length > end) return false;
    if (!this.columns[cell].breaks) return true;
    return this.lower.slice(this.starts[row + cell], end).replaceAll(LINE_BREAK, '\n').includes(word);
  }

  /// Sorts the numbers of rows by a column. Equal ones stay as they are.
  sort(rows, column, descending) {
    const ranks = this.ranks[column] ??= this.ranksOf(column);
    // Rank and place in one number, which sorts faster than anything with a function.
    const keys = Float64Array.from(rows, (row, at) => (
      (descending ? this.count - ranks[row] : ranks[row]) * rows.length + at));
    return Uint32Array.from(keys.sort(), (key) => rows[key % rows.length]);
  }

  /// The place of each row when sorted by a column; equal texts have equal ones. Each text is compared once, as there
  /// are mostly far fewer than rows.
  ranksOf(column) {
    const numbers = new Map();
    const ranks = Uint32Array.from({ length: this.count }, (_, row) => {
      const text = this.cell(row, column);
      let number = numbers.get(text);
      if (number === undefined) numbers.set(text, number = numbers.size);
      return number;
    });
    const order = placesOf([...numbers.keys()]);
    return ranks.map((number) => order[number]);
  }
}
