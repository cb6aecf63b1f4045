// Pages of tables, and what they show.

'use strict';

const { TITLE } = require('./conversation');
const { tableRow, pageOf } = require('./rows');

const TABLES = { 'CallHistory.html': 5, 'Notes.html': 3, 'contacts.html': 7 };
const CALLS = [
  ['Zoë', '+49 30 2', '2016-05-03 10:00:00', 'Incoming', '0'], ['anna', '+49 30 10', '2016-05-01 10:00:00', 'Outgoing', 'Canceled'],
  ['Émile', '+49 30 1', '2016-05-02 10:00:00', 'Incoming', 'Missed'], ['Berta', '', '2016-04-01 10:00:00', 'Incoming', '0'],
];
/// A contact without address and social profile.
const contact = (name, phones = '', mails = '', web = '', company = '') => [name, phones, mails, '', web, '', company];

const tablePage = (template, records) => pageOf(template, { title: TITLE }, records.map(tableRow));
const callPage = () => tablePage('CallHistory.html', CALLS);
const numbered = (count) => Array.from({ length: count }, (_, at) => ['Name ' + at, '', '2016-05-01 10:00:00', 'Incoming', '0']);

/// The texts of all cells. Has all columns shown and all rows built first, as for printing.
const readCells = (tab) => tab.evaluate(`(() => {
  const box = document.querySelector('.switch input');
  if (box && !box.checked) box.click();
  dispatchEvent(new Event('beforeprint'));
  return Array.from(document.querySelectorAll('tbody tr'), (row) => Array.from(row.cells, (cell) => cell.textContent));
})()`);
const readShown = (tab) => tab.evaluate(
  `Array.from(document.querySelectorAll('tbody tr')).filter((row) => row.offsetHeight).map((row) => row.cells[0].textContent)`);
const readHead = (tab) => tab.evaluate(
  `Array.from(document.querySelectorAll('th')).filter((cell) => cell.offsetHeight).map((cell) => cell.textContent)`);
const countText = (tab) => tab.evaluate(`document.querySelector('.count').textContent`);
const tabKey = async (tab, times) => { for (let at = 0; at < times; ++at) await tab.press('Tab', 'Tab', 9); };
const arrowDown = (tab) => tab.press('ArrowDown', 'ArrowDown', 40);

module.exports = { TABLES, CALLS, contact, tablePage, callPage, numbered, readCells, readShown, readHead, countText, tabKey, arrowDown };
