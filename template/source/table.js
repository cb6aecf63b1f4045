
const ORDERS = ['none', 'ascending', 'descending'];
const STRETCH = 100;      // rows
const LINE = 24;          // pixels, to estimate the height of a row
const LEAST_TABLE = 46;   // the width in rem below which no table has columns side by side
const LEAST_SHARE = 3.4;  // and that for each share of a column

/// The page: rows, what the reader chose to see of them, and the elements for it.
class TablePage {
  constructor(columns, rows) {
    Object.assign(this, { columns, rows, words: '', within: -1, sorted: -1, descending: false });
    this.empty = columns.filter(({ at }) => rows.isEmpty(at));
    if (this.empty.length === columns.length) this.empty = [];
    this.count = make('output', 'count');
    this.copied = make('output', 'copied');
    this.head = this.makeHead();
    this.table = make('table', '', this.head);
    this.table.setAttribute('role', 'table');
    this.list = new LongList({
      parent: this.table, tag: 'tbody', size: STRETCH, height: 48,
      fill: (stretch, first, end) => {
        stretch.setAttribute('role', 'rowgroup');
        for (let at = first; at < end; ++at) stretch.append(this.makeRow(at));
      },
    });
    this.fold(true);
    addEventListener('resize', () => this.arrange());
    addEventListener('beforeprint', () => this.list.whole(true));
    addEventListener('afterprint', () => this.list.whole(false));
  }

  /// Shows the columns, without those that are empty in all rows if folded.
  fold(isFolded) {
    this.shown = this.columns.filter((column) => !isFolded || !this.empty.includes(column));
    this.table.classList.toggle('wide', this.shown.length > 5);
    this.table.style.setProperty('--tracks', this.shown.map(({ track }) => track).join(' '));
    this.shares = this.shown.reduce((sum, { share }) => sum + share, 0);
    for (const { at, share } of this.columns) {
      const cell = this.head.rows[0].cells[at];
      cell.hidden = !this.shown.includes(this.columns[at]);
      cell.style.setProperty('--share', 100 * share / this.shares + '%');
    }
    this.arrange();
    this.list.refresh();
  }

  /// Puts the texts of a row below each other where there is no room for them in columns. Notes always are.
  arrange() {
    const rem = parseFloat(getComputedStyle(document.documentElement).fontSize);
    const cards = this.columns.some(({ kind }) => kind === 'content');
    const stacked = !cards && innerWidth < rem * Math.max(LEAST_TABLE, LEAST_SHARE * this.shares);
    this.table.classList.toggle('cards', cards);
    this.table.classList.toggle('stacked', stacked);
    this.list.height = LINE * (cards ? 6 : stacked ? this.shown.length + 1.5 : 2);
  }

  /// Shows the rows with the words, in the order chosen.
  update() {
    const found = this.rows.with(this.words, this.within);
    this.view = this.sorted < 0 ? found : this.rows.sort(found, this.sorted, this.descending);
    const total = counted(this.rows.count, 'row');
    this.count.textContent = this.words.trim() ? found.length + ' of ' + total : total;
    this.table.setAttribute('aria-rowcount', found.length + 1);
    this.copied.textContent = '';
    this.list.show(found.length);
    const top = this.table.getBoundingClientRect().top + scrollY - this.tools.offsetHeight;
    if (scrollY > top) scrollTo(0, top);
  }

  makeRow(at) {
    const row = make('tr', '');
    row.setAttribute('role', 'row');
    row.setAttribute('aria-rowindex', at + 2);  // the head is the first
    for (const column of this.shown) row.append(this.makeCell(column, this.rows.cell(this.view[at], column.at)));
    return row;
  }

  makeCell({ name, kind, links }, text) {
    const cell = makeText('td', kind, links ? '' : text);
    if (links) appendLinked(cell, text);
    cell.setAttribute('role', 'cell');
    cell.dataset.label = name;
    if (kind === 'who') {
      cell.dataset.initials = initialsOf(text);
      cell.style.setProperty('--hue', hueOf(text));
    }
    return cell;
  }

  makeHead() {
    const row = make('tr', '');
    row.setAttribute('role', 'row');
    row.setAttribute('aria-rowindex', 1);
    for (const column of this.columns) {
      const cell = make('th', column.kind, makeButton('', column.name, () => this.sortBy(column.at, cell)));
      cell.scope = 'col';
      cell.setAttribute('role', 'columnheader');
      cell.setAttribute('aria-sort', 'none');
      row.append(cell);
    }
    const head = make('thead', '', row);
    head.setAttribute('role', 'rowgroup');
    return head;
  }

  /// Sorts up, then down, then back to how the rows came.
  sortBy(column, cell) {
    const order = ORDERS[(ORDERS.indexOf(cell.getAttribute('aria-sort')) + 1) % ORDERS.length];
    for (const other of cell.parentNode.children) other.setAttribute('aria-sort', 'none');
    cell.setAttribute('aria-sort', order);
    this.sorted = order === 'none' ? -1 : column;
    this.descending = order === 'descending';
    this.update();
  }

  /// The bar above the table: the box for words and the column that they are looked for in, the count, and what can be
  /// done with the rows shown.
  makeTools() {
    const box = make('input', '');
    box.type = 'search';
    box.placeholder = 'Filter';
    box.setAttribute('aria-label', 'Show only rows with these words');
    const within = make('select', '', new Option('All columns', -1));
    for (const { name, at } of this.columns) if (!this.isEmpty(at)) within.append(new Option(name, at));
    within.setAttribute('aria-label', 'Column to look in');
    for (const control of [box, within]) {
      control.addEventListener('input', () => {
        this.words = box.value;
        this.within = Number(within.value);
        this.update();
      });
    }
    this.count.setAttribute('aria-live', 'polite');
    this.tools = make('div', 'tools', box, within, this.count, this.copied);
    return [this.tools, this.makeActions()];
  }

  isEmpty(at) {
    return this.empty.includes(this.columns[at]);
  }

  makeActions() {
    const copy = makeButton('copy', 'Copy as CSV', async () => {
      const done = await copyText(csvOf(this.rows, this.view, this.shown));
      this.copied.textContent = done ? counted(this.view.length, 'row') + ' copied' : 'Copying was not allowed';
    });
    const actions = make('div', 'tools actions', copy);
    if (this.empty.length) {
      const box = make('input', '');
      box.type = 'checkbox';
      box.addEventListener('change', () => this.fold(!box.checked));
      actions.prepend(make('label', 'switch', box, 'Show empty columns'));
    }
    return actions;
  }
}

whenRead((text, title) => {
  const columns = columnsOf(text);
  const rows = new Rows(rowsOf(text, '</thead>\n<tbody>\n'), columns);
  const page = new TablePage(columns, rows);
  const main = make('main', '', ...page.makeTools(), page.table);
  if (rows.rest) main.prepend(makeText('pre', 'rest', rows.rest));
  if (!rows.count) main.append(make('p', 'empty', 'No rows.'));
  page.update();
  setTimeout(() => rows.lower, 200);  // so that the first key is answered as fast as the others
  return { elements: [make('header', '', makeText('h1', '', title)), main], title };
});
