
const ROW_START = '\t<tr><td>';
const CELL_BREAK = '</td><td>';
const ROW_END = '</td></tr>\n';
const LINE_BREAK = '<br />';
const DATE = /^(-?\d{4,}-\d\d-\d\d \d\d:\d\d:\d\d)?$/;
const ORDERS = ['none', 'ascending', 'descending'];
const collator = new Intl.Collator(undefined, { numeric: true, sensitivity: 'base' });

/// The columns by the cells of the page's head: their names, and what is special of their texts.
function columnsOf(text) {
  const heads = between(text, '<thead>\n<tr>', '</tr>\n').matchAll(/<th(?: class="(\w+)")?>([^<]*)<\/th>/g);
  return Array.from(heads, ([, kind, name]) => ({ name, kind }));
}

/// Puts the parts of a row into the columns. A text that holds a cell break makes too many parts; they are
/// joined again, around the date where there is one, else in the last column.
function fit(parts, columns) {
  const surplus = parts.length - columns.length;
  if (surplus <= 0) return parts;
  const dateColumn = columns.findIndex((column) => column.kind === 'when');
  let before = 0;
  if (dateColumn > 0) {
    const date = parts.findIndex((part, at) => at >= dateColumn && at <= dateColumn + surplus && DATE.test(part));
    before = Math.max(date - dateColumn, 0);
  }
  const joined = [parts.slice(0, before + 1).join(CELL_BREAK), ...parts.slice(before + 1)];
  const last = columns.length - 1;
  return [...joined.slice(0, last), joined.slice(last).join(CELL_BREAK)];
}

/// The rows as lists of texts, one for each column. `rest` is what doesn't look like a row.
function recordsOf(rows, columns) {
  if (!rows.startsWith(ROW_START) || !rows.endsWith(ROW_END)) return { records: [], rest: rows };
  const whole = [];
  let early = '';
  for (const part of rows.slice(ROW_START.length, -ROW_END.length).split(ROW_END + ROW_START)) {
    if (part.split(CELL_BREAK).length >= columns.length) {
      whole.push(early + part);
      early = '';
    } else if (whole.length) {  // too short for a row: a text that looks like the end of one, mostly the last
      whole[whole.length - 1] += ROW_END + ROW_START + part;
    } else {
      early += part + ROW_END + ROW_START;
    }
  }
  return { records: whole.map((row) => fit(row.split(CELL_BREAK), columns)), rest: early };
}

function rowOf(cells, columns) {
  const row = make('tr', '');
  row.setAttribute('role', 'row');
  cells.forEach((text, at) => {
    const { kind, name } = columns[at];
    const cell = makeText('td', kind, kind === 'lines' ? text.replaceAll(LINE_BREAK, '\n') : text);
    cell.setAttribute('role', 'cell');
    cell.dataset.label = name;
    row.append(cell);
  });
  return row;
}

/// Appends any number of elements. `append(...elements)` would put each of them on the stack, which is full
/// with some 120,000.
function appendAll(parent, elements) {
  const fragment = document.createDocumentFragment();
  for (const element of elements) fragment.append(element);
  parent.append(fragment);
}

/// Lets a head cell sort the rows by its column: up, down, and back to how they came.
function makeSortable(cell, button, at, table) {
  button.addEventListener('click', () => {
    const order = ORDERS[(ORDERS.indexOf(cell.getAttribute('aria-sort')) + 1) % ORDERS.length];
    for (const other of cell.parentNode.children) other.setAttribute('aria-sort', 'none');
    cell.setAttribute('aria-sort', order);
    const sign = order === 'descending' ? -1 : 1;
    const sorted = order === 'none' ? table.rows : [...table.rows].sort(
      (one, other) => sign * collator.compare(one.cells[at], other.cells[at]));
    appendAll(table.body, sorted.map((row) => row.element));
  });
}

function headOf(columns, table) {
  const row = make('tr', '');
  row.setAttribute('role', 'row');
  columns.forEach(({ name, kind }, at) => {
    const button = make('button', '', name);
    button.type = 'button';
    const cell = make('th', kind, button);
    cell.scope = 'col';
    cell.setAttribute('role', 'columnheader');
    cell.setAttribute('aria-sort', 'none');
    makeSortable(cell, button, at, table);
    row.append(cell);
  });
  const head = make('thead', '', row);
  head.setAttribute('role', 'rowgroup');
  return head;
}

/// The box that shows only the rows with all words typed into it, and the count beside it.
function filterOf(table) {
  const box = make('input', '');
  box.type = 'search';
  box.placeholder = 'Filter';
  box.setAttribute('aria-label', 'Show only rows with these words');
  const count = make('output', 'count');
  count.setAttribute('aria-live', 'polite');
  const apply = () => {
    const words = box.value.toLowerCase().split(/\s+/).filter((word) => word);
    let shown = 0;
    for (const row of table.rows) {
      const hit = words.every((word) => row.search.includes(word));
      row.element.hidden = !hit;
      if (hit) ++shown;
    }
    const total = counted(table.rows.length, 'row');
    count.textContent = words.length ? shown + ' of ' + total : total;
  };
  box.addEventListener('input', apply);
  apply();
  return make('div', 'tools', box, count);
}

whenRead((text, title) => {
  const columns = columnsOf(text);
  const { records, rest } = recordsOf(rowsOf(text, '</thead>\n<tbody>\n'), columns);
  const body = make('tbody', '');
  body.setAttribute('role', 'rowgroup');
  const table = {
    body,
    rows: records.map((cells) => ({ cells, search: cells.join('\n').toLowerCase(), element: rowOf(cells, columns) })),
  };
  appendAll(body, table.rows.map((row) => row.element));
  const grid = make('table', 'columns-' + columns.length, headOf(columns, table), body);
  grid.setAttribute('role', 'table');
  const main = make('main', '', filterOf(table), grid);
  if (rest) main.prepend(makeText('pre', 'rest', rest));
  if (!records.length) main.append(make('p', 'empty', 'No rows.'));
  return [make('header', '', makeText('h1', '', title)), main];
});
