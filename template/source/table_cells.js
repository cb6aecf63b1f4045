
/// What is special of the columns. track: its width in the grid; share: its part of the width on paper; breaks: its
/// lines are apart by LINE_BREAK; links: its lines may be numbers and addresses.
const KINDS = {
  text: { track: 'minmax(0, 3fr)', share: 3 },
  short: { track: 'minmax(6.8rem, 1.6fr)', share: 1.6 },
  who: { track: 'minmax(0, 3.2fr)', share: 3 },
  number: { track: 'minmax(0, 3fr)', share: 3, links: true },
  when: { track: 'minmax(6rem, 12.7rem)', share: 2.2 },
  lines: { track: 'minmax(0, 3fr)', share: 3, breaks: true, links: true },
  mails: { track: 'minmax(0, 3.6fr)', share: 3.6, links: true },
  web: { track: 'minmax(0, 3.2fr)', share: 3.2, links: true },
  content: { track: 'minmax(0, 8fr)', share: 8 },
};

/// The columns that aren't of kind "text". Those of names are of kind "who" in contacts alone.
const KIND_OF = {
  Number: 'number', Date: 'when', Type: 'short', Length: 'short', Content: 'content', Phones: 'lines', Mail: 'mails',
  Web: 'web', Social: 'short',
};

const EMBEDDING = /[\u202a-\u202e\u2066-\u2069]/;  // changes the order in which text is shown
/// One embedding from left to right around a line, as address books put numbers in.
const ENCLOSED = [
  /^([\s\u061c\u200e\u200f]*\u202a)([^]*)(\u202c[\s\u061c\u200e\u200f]*)$/,
  /^([\s\u061c\u200e\u200f]*\u2066)([^]*)(\u2069[\s\u061c\u200e\u200f]*)$/,
];
const NUMBER = /^\+?[\d\s().\/-]{2,40}$/;
const MAIL = /^[\p{L}\p{N}.!#$%&'*+/=?^_`|{}~-]+@[\p{L}\p{N}-]+(\.[\p{L}\p{N}-]+)+$/u;
const WEB = /^https?:\/\/[^\s\p{Bidi_Control}]+$/iu;

const isNumber = (text) => NUMBER.test(text) && /\d.*\d/.test(text);

const digitsOf = (text) => text.replace(/\D/g, '');

/// Whether a text of digits is more than one number, such as "030 123 / 040 456": too long for one, or what follows a
/// separator is neither the rest of a number behind its area code nor an extension.
function holdsSeveral(text) {
  const parts = text.split(/\/|\s-|-\s|\s{2}|(?=\()/).map(digitsOf).filter((part) => part);
  return digitsOf(text).length > 17 || parts.slice(1).some((part, at) => (
    part.startsWith('0') ? parts[at].length > 5 && part.length > 2 : parts[at].length > 6 && part.length > 6));
}

/// The target of a telephone number; empty when there are several in the text.
function dialled(text) {
  if (holdsSeveral(text)) return '';
  if (!text.startsWith('+')) return 'tel:' + digitsOf(text);
  // "+49 (0)30": the zero isn't dialled from abroad, but in Italy and San Marino it is a part of the number.
  const keepsZero = /^(39|378)/.test(digitsOf(text));
  return 'tel:+' + digitsOf(keepsZero ? text : text.replace('(0)', ''));
}

/// Where a text leads: the number is dialled, the address written to, or the page opened. Empty for any other text, and
/// for one that is shown in another order than it has. Marks of a direction have no effect on how a number is shown.
function targetOf(line) {
  if (EMBEDDING.test(line)) return '';
  const number = line.replace(/\p{Bidi_Control}/gu, '').trim();
  if (isNumber(number)) return dialled(number);
  const text = line.replaceAll('\u200e', '').trim();
  if (MAIL.test(text)) return 'mailto:' + text.split('@').map(encodeURIComponent).join('@');
  return WEB.test(text) ? webAddress(text) : '';
}

function webAddress(text) {
  try {
    const { protocol, href } = new URL(text);
    return ['http', 'https'].includes(protocol.slice(0, -1)) ? href : '';
  } catch {  // not an address after all
    return '';
  }
}

/// The line as what to append: a link when it leads somewhere, else its text. An embedding stays outside the link, which
/// is one itself.
function linked(line) {
  const enclosed = ENCLOSED.map((form) => form.exec(line)).find((found) => found);
  const [before, text, after] = enclosed ? enclosed.slice(1) : ['', line, ''];
  const target = targetOf(text);
  if (!target) return [line];
  const link = make('a', '');
  link.textContent = text;
  link.href = target;
  link.title = target;
  if (WEB.test(target)) {
    link.target = '_blank';
    link.rel = 'noopener noreferrer';
  }
  return [before, link, after];
}

function appendLinked(cell, text) {
  text.split('\n').forEach((line, at) => cell.append(...(at ? ['\n'] : []), ...linked(line)));
}

const graphemes = globalThis.Intl?.Segmenter && new Intl.Segmenter(undefined, { granularity: 'grapheme' });

/// The first of what a reader takes for letters, such as "é" written as two characters.
function firstLetter(text) {
  const [first] = graphemes ? graphemes.segment(text) : text;
  return first.segment ?? first;
}

/// The first letters of the first two words; of a name without any, the first sign. The recovery puts first and last
/// names together without a blank, so a capital after a small letter begins a word as well.
function initialsOf(name) {
  const words = name.match(/[\p{L}\p{N}](?:(?!(?<=\p{Ll})\p{Lu})\S)*/gu) || [name.trim() || '?'];
  const letters = words.slice(0, 2).map((word) => firstLetter(word).toLocaleUpperCase());
  return letters.join(/\p{Script=Arabic}/u.test(letters[0]) ? '\u200c' : '');  // kept from running into one
}

/// A hue for a name, the same on each visit.
function hueOf(name) {
  let hue = 0;
  for (const letter of name) hue = (hue * 31 + letter.codePointAt(0)) % 360;
  return hue;
}

/// A cell of RFC 4180. A spreadsheet runs a text that begins with one of these signs as a formula, and a stranger wrote
/// the text; an apostrophe before it prevents that. So it does behind a tab and at the start of a line, where pasting begins
/// another cell. Telephone numbers begin with a plus sign too and stay as they are.
function csvCell(text) {
  const inner = text.replace(/(?<=[\t\r\n])[=+\-@][^\t\r\n]*/g, (part) => (isNumber(part) ? part : "'" + part));
  const safe = /^[=+\-@\t\r]/.test(text) && !text.split('\n').every(isNumber) ? "'" + inner : inner;
  return /[",;\t\r\n]/.test(safe) ? '"' + safe.replaceAll('"', '""') + '"' : safe;
}

function csvOf(rows, shown, columns) {
  const lines = [columns.map(({ name }) => csvCell(name)).join()];
  for (const row of shown) lines.push(columns.map(({ at }) => csvCell(rows.cell(row, at))).join());
  return lines.join('\r\n') + '\r\n';
}

/// Puts a text on the clipboard. Not every browser gives a page from a disk the newer way. @return whether it is there.
async function copyText(text) {
  try {
    await navigator.clipboard.writeText(text);
    return true;
  } catch {
    const box = make('textarea', 'unseen');
    box.value = text;
    const focused = document.activeElement;
    document.body.append(box);
    box.select();
    const copied = document.execCommand('copy');
    box.remove();
    focused?.focus();
    return copied;
  }
}
