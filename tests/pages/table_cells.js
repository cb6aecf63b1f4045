// Checks the cells of tables: their texts, links and initials.

'use strict';

const assert = require('assert');
const { TITLE } = require('./conversation');
const { assertReadable, tableRow, pageOf } = require('./rows');
const { check } = require('./stage');
const { contact, tablePage, callPage, readCells } = require('./table');

async function checkCells(stage) {
  await check('Line feeds of notes show', async () => {
    await stage.show(tablePage('Notes.html', [['List', '2016-05-01 10:00:00', 'Milk\nBread\n  Eggs\n\nEnd'], ['One', '', 'line']]), async (tab) => {
      assert.strictEqual((await readCells(tab))[0][2], 'Milk\nBread\n  Eggs\n\nEnd');
      const [five, one] = await tab.evaluate(`Array.from(document.querySelectorAll('.content'), (cell) => cell.offsetHeight).slice(1)`);
      assert.ok(five > 2.5 * one, `five lines take ${five}, one takes ${one}`);
    });
  });
  await check('Breaks between phones are lines, and texts in all other columns', async () => {
    await stage.show(tablePage('contacts.html', [['A<br />B', '+49 1<br />+49 2', 'a@b\nc@d', '', '', '', '']]), async (tab) => {
      assert.deepStrictEqual((await readCells(tab))[0].slice(0, 3), ['A<br />B', '+49 1\n+49 2', 'a@b\nc@d']);
      assert.strictEqual(await tab.evaluate(`document.querySelector('td.lines').innerText`), '+49 1\n+49 2');
    });
  });
  const notes = [
    [['a</td><td>b', '2016-05-01 10:00:00', 'c</td><td>d</td></tr>\n\t<tr><td>e'], ['f', '', 'g']],
    [['a', '', '</td></tr>\n\t<tr><td>only one'], ['f', '', 'g</td></tr>\n\t<tr><td>and</td><td>two']],
    [['', '2016-05-01 10:00:00', ''], ['a</td><td>x</td><td>b', '-0044-03-15 10:00:00', '</td><td>'], ['a</td><td>b', '2016-05-01 10:00:00', '']],
  ];
  for (const [at, records] of notes.entries()) {
    await check(`Texts that look like cells and rows stay in their row (${at + 1})`, async () => {
      await stage.show(tablePage('Notes.html', records), async (tab) => assert.deepStrictEqual(await readCells(tab), records));
    });
  }
  await check('What looks like the end of a row before the first one is kept in it', async () => {
    const page = pageOf('Notes.html', { title: TITLE }, ['\t<tr><td>stray</td></tr>\r\n', tableRow(['f', '', 'g'])]);
    await stage.show(page, async (tab) => assert.deepStrictEqual(await readCells(tab), [['stray</td></tr>\n\t<tr><td>f', '', 'g']]));
  });
  await check('A table without rows says so', async () => {
    await stage.show(tablePage('Notes.html', []), (tab) => assertReadable(tab, ['No rows.', TITLE]));
  });
  await check('Rows of an unknown form are kept as text', async () => {
    for (const odd of ['<p>odd</p>\r\n', '\t<tr><td>odd</td></tr>\r\n'])
      await stage.show(pageOf('Notes.html', { title: TITLE }, [odd]), (tab) => assertReadable(tab, [odd.trim(), 'No rows.']));
  });
  await check('The length of a call is what its row tells', async () => {
    await stage.show(callPage(), async (tab) => assert.deepStrictEqual(
      await tab.evaluate(`Array.from(document.querySelectorAll('tbody td:last-child'), (cell) => cell.textContent)`), ['0', 'Canceled', 'Missed', '0']));
  });
}

/// Lines of contacts, and the links that they become.
const LINES = {
  '+49 (0)30 12-34.56/7': 'tel:+49301234567', '110': 'tel:110', '\u202a+1 555 010\u202c': 'tel:+1555010', '(030) 1': 'tel:0301',
  '1': '', '+': '', '*#06#': '', '12 ext. 3': '', '+49;phone-context=x': '', '++49 30': '', '49+30': '',
  'ann.b+c@example.org': 'mailto:ann.b%2Bc@example.org', 'ann@bücher.example': 'mailto:ann@b%C3%BCcher.example',
  'a@b?cc=all@example.org': '', 'a?subject=x@example.org': 'mailto:a%3Fsubject%3Dx@example.org', 'a@b': '', 'Ann <a@example.org>': '',
  'a@example.org,b@example.org': '', '\ud800@example.org': '',
  'https://example.org/a?b=c#d': 'https://example.org/a?b=c#d', 'HTTP://example.org': 'http://example.org/',
  'http://bücher.example/"><b>': 'http://xn--bcher-kva.example/%22%3E%3Cb%3E', 'https://': '', 'https://[': '', 'http:example.org': '',
  'javascript:alert(1)': '', ' javascript:alert(1)//http://x.example': '', 'data:text/html,x': '', 'file:///etc/passwd': '',
  '+39 (0)6 1234567': 'tel:+39061234567', '+378 (0)549 123456': 'tel:+3780549123456', '+1 (0)393 12345': 'tel:+139312345',
  '030 123 / 040 456': '', '030 123456/040 123456': '', '030 123 - 040 456': '', '030 123456 (040) 456': '', '030 123456  040 456': '', '030 123    040 456': '',
  '555-1234 / 555-1235': '', '030 123456 040 1234567': '', '+49 5361 / 123456': 'tel:+495361123456', '05361/12345': 'tel:0536112345',
  '030 - 12 34 56': 'tel:030123456', '030 123456-0': 'tel:0301234560', '030 123456 / 12': 'tel:03012345612', '01 02 03 04 05': 'tel:0102030405',
  '\u2066+1 555 011\u2069': 'tel:+1555011', '\u200f\u202a+1 555 012\u202c ': 'tel:+1555012', '\u200e+1 555\u200f 013\u200e': 'tel:+1555013',
  '\u202e+1 555 014': '', '\u202e+1 555 015\u202c': '', '+1 \u202e555 016\u202c': '', '\u2067+1 555 017\u2069': '', '\u2068+1 555 018\u2069': '',
  '\u202a+1 555 019': '', '\u202a+1 555 020\u2069': '', '\u202a+1 \u202e555\u202c 021\u202c': '', '\u202a1 2\u202c \u202a3 4\u202c': '',
  '\u202aann@example.org\u202c': 'mailto:ann@example.org', '\u200ebo@example.org': 'mailto:bo@example.org', 'gro.elpmaxe@\u202ebo@example.org': '',
  'ann@1\u200f-\u200f2.example': '', 'https://example.org/\u202emoc.live//:sptth': '', 'https://1\u200f--2.example': '',
  'tel:112': '', 'mailto:x@example.org': '', 'see https://example.org': '', 'www.example.org': '', '': '',
};

async function checkLinks(stage) {
  const lines = Object.keys(LINES);
  await check('Numbers and addresses are links with just that target, and no other text is', async () => {
    const page = tablePage('contacts.html', lines.map((line) => contact('Ann', line, line, line)));
    await stage.showFenced(page, async (tab) => {
      const found = await tab.evaluate(`Array.from(document.querySelectorAll('tbody tr'), (row) =>
        ['lines', 'mails', 'web'].map((kind) => {
          const cell = row.querySelector('.' + kind);
          return [cell.textContent, cell.querySelector('a')?.getAttribute('href') || '', cell.querySelectorAll('*').length];
        }))`);
      lines.forEach((line, at) => {
        const text = line.replace(/[\ud800-\udfff]/, '\ufffd');
        for (const cell of found[at]) assert.deepStrictEqual(cell, [text, LINES[line], LINES[line] ? 1 : 0]);
      });
      assert.strictEqual(await tab.evaluate(`Array.from(document.querySelectorAll('tbody a')).filter((link) => link.title !== link.getAttribute('href')).length`), 0);
      for (const [target, rel] of await tab.evaluate(`Array.from(document.querySelectorAll('a'),
        ({ protocol, target, rel }) => [protocol.startsWith('http') ? target : 'none', rel])`))
        assert.ok(target === 'none' ? rel === '' : target === '_blank' && rel === 'noopener noreferrer', `${target} ${rel}`);
    });
  });
  await check('The characters of a number run from left to right, whatever is around them or between them', async () => {
    const numbers = ['\u200f+49 30 123', '+49\u200f 30\u061c 123', '\u202a+49 30 123\u202c', '\u2066\u200f+49 30 123\u2069', '+49 30 123'];
    await stage.show(tablePage('contacts.html', numbers.map((number) => contact('שלום', '\u202e<br />שלום<br />' + number))), async (tab) => {
      const rows = await tab.evaluate(`Array.from(document.querySelectorAll('tbody a'), (link) => {
        const node = link.firstChild;
        return Array.from(node.data, (character, at) => [character, at]).filter(([character]) => /[+\\d]/.test(character)).map(([, at]) => {
          const range = document.createRange();
          range.setStart(node, at);
          range.setEnd(node, at + 1);
          return range.getBoundingClientRect().left;
        });
      })`);
      assert.strictEqual(rows.length, numbers.length);
      for (const places of rows) assert.deepStrictEqual(places, [...places].sort((one, other) => one - other));
      for (const places of rows) assert.strictEqual(places.length, 8);
    });
  });
  await check('Each of several numbers and addresses is a link of its own', async () => {
    await stage.show(tablePage('contacts.html', [contact('Ann', '+49 1<br />no number<br />+49 2', 'a@b.example\nc@d.example')]), async (tab) => {
      assert.deepStrictEqual(await tab.evaluate(`Array.from(document.querySelectorAll('tbody a'), (link) => [link.href, link.textContent])`),
                             [['tel:+491', '+49 1'], ['tel:+492', '+49 2'], ['mailto:a@b.example', 'a@b.example'], ['mailto:c@d.example', 'c@d.example']]);
      assert.deepStrictEqual((await readCells(tab))[0].slice(1, 3), ['+49 1\nno number\n+49 2', 'a@b.example\nc@d.example']);
    });
  });
  await check('The number of a call is a link, and no other column is', async () => {
    await stage.show(tablePage('CallHistory.html', [['+49 1', '+49 2', '', 'Incoming', '10'], ['Ann', 'ann@example.org', '', '', '']]), async (tab) => {
      assert.deepStrictEqual(await tab.evaluate(`Array.from(document.querySelectorAll('tbody a'), (link) => link.href)`),
                             ['tel:+492', 'mailto:ann@example.org']);
    });
  });
}

async function checkInitials(stage) {
  const names = { 'Ann Berger': 'AB', 'ann': 'A', 'AnnBerger': 'AB', 'Zoë-Marie van Dyk': 'ZV', 'e\u0301mile (work)': 'E\u0301W', '': '?', '***': '*',
                  '👩‍👩‍👧': '👩‍👩‍👧', '👍 Bo': 'B', 'נועה כהן': 'נכ', 'محمد علي': 'م\u200cع', '𝒜nn': '𝒜', '3M': '3', '<b>x': 'B' };
  await check('A contact has its initials in a circle, and they are no part of its text', async () => {
    await stage.show(tablePage('contacts.html', Object.keys(names).map((name) => contact(name, '1'))), async (tab) => {
      assert.deepStrictEqual(await tab.evaluate(`Array.from(document.querySelectorAll('td.who'), (cell) => [cell.textContent, cell.dataset.initials])`),
                             Object.entries(names));
    });
  });
  for (const value of ['light', 'dark']) {
    await check(`Initials are readable on each hue, links and labels on their ground, when ${value}`, async () => {
      const people = Array.from({ length: 200 }, (_, at) => contact('Name ' + at, '+49 1', '', '', 'Firm'));
      await stage.show(tablePage('contacts.html', people), async (tab) => {
        const found = await tab.evaluate(`(() => {
          const light = (colour) => {
            const [red, green, blue] = colour.match(/[0-9.]+/g).map((part) => part / 255).map(
              (part) => (part <= .04045 ? part / 12.92 : ((part + .055) / 1.055) ** 2.4));
            return .2126 * red + .7152 * green + .0722 * blue + .05;
          };
          const ratio = (one, other) => Math.max(light(one) / light(other), light(other) / light(one));
          const paper = getComputedStyle(document.querySelector('table')).backgroundColor;
          const page = getComputedStyle(document.body).backgroundColor;
          const colour = (selector) => getComputedStyle(document.querySelector(selector)).color;
          const circles = Array.from(document.querySelectorAll('td.who'), (cell) => getComputedStyle(cell, '::before'));
          return { circles: circles.map((style) => ratio(style.color, style.backgroundColor)),
                   hues: new Set(circles.map((style) => style.backgroundColor)).size,
                   texts: [ratio(colour('tbody a'), paper), ratio(colour('.count'), page), ratio(colour('tbody td'), paper),
                           ratio(colour('th button'), getComputedStyle(document.querySelector('th')).backgroundColor)] };
        })()`);
        assert.ok(found.circles.length >= 100 && found.hues > 50, `${found.circles.length} circles in ${found.hues} hues`);
        for (const one of [...found.circles, ...found.texts]) assert.ok(one >= 4.5, JSON.stringify(found));
      }, { features: [{ name: 'prefers-color-scheme', value }] });
    });
  }
}

module.exports = { checkCells, checkLinks, checkInitials };
