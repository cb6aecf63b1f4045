// Checks the pages of tables: contacts, calls and notes.

'use strict';

const assert = require('assert');
const { check } = require('./stage');
const { CALLS, contact, tablePage, callPage, numbered, readCells, readShown, readHead, countText, tabKey, arrowDown } = require('./table');
const { checkCells, checkLinks, checkInitials } = require('./table_cells');
const { checkForms, checkPaper, checkLargeTable } = require('./table_forms');

async function checkFilter(stage) {
  await check('The filter box shows the rows with all of its words', async () => {
    await stage.show(callPage(), async (tab) => {
      await tab.clickOn('input[type=search]');
      await tab.type('incoming 2016-05');
      assert.deepStrictEqual(await readShown(tab), ['Zoë', 'Émile']);
      assert.strictEqual(await countText(tab), '2 of 4 rows');
      for (const letter of 'XYZ') await tab.press(letter, 'Key' + letter, letter.charCodeAt(0), letter);
      assert.deepStrictEqual(await readShown(tab), []);
      await tab.evaluate(`document.querySelector('input').select()`);
      await tab.press('Delete', 'Delete', 46);
      assert.strictEqual((await readShown(tab)).length, 4);
    });
  });
  const rows = [contact('Otto', '+49 1<br />+49 2', 'td@tr.example'), contact('İpek <td>', '+49 3'), contact('a<br />b', '12'),
                contact('Row', '', 'a</td><td', '', 'x'), contact('ΟΔΟΣΗ')];
  const searches = { 't': ['Otto', 'İpek <td>', 'Row'], 'td': ['Otto', 'İpek <td>', 'Row'], 'tr': ['Otto'], '<td>': ['İpek <td>'],
                     '</td>': ['Row'], 'br': ['a<br />b'], '<br': ['a<br />b'], '1 2': ['Otto', 'a<br />b'], 'ipek': ['İpek <td>'],
                     'İPEK 3': ['İpek <td>'], '49+': [], '/>': ['a<br />b'], 'x': ['Otto', 'Row'], 'd><': ['Row'],
                     'ΟΔΟΣ': ['ΟΔΟΣΗ'], 'οδος': ['ΟΔΟΣΗ'] };
  for (const [words, names] of Object.entries(searches)) {
    await check(`The words "${words}" are looked for in texts, and not in the marks between them`, async () => {
      await stage.show(tablePage('contacts.html', rows), async (tab) => {
        await tab.clickOn('input[type=search]');
        await tab.type(words);
        assert.deepStrictEqual(await readShown(tab), names);
      });
    });
  }
  await check('The keyboard alone limits the filter to a column', async () => {
    const records = [['Ann', '1', '', 'Incoming', '0'], ['Incoming', '2', '', 'Outgoing', '1'], ['Bo', '10', '', 'Outgoing', '0']];
    await stage.show(tablePage('CallHistory.html', records), async (tab) => {
      await tab.clickOn('input[type=search]');
      await tab.type('incoming');
      assert.deepStrictEqual(await readShown(tab), ['Ann', 'Incoming']);
      await tabKey(tab, 1);
      assert.deepStrictEqual(await tab.evaluate(`Array.from(document.activeElement.options, (option) => option.text)`),
                             ['All columns', 'Name', 'Number', 'Type', 'Length']);
      await arrowDown(tab);
      assert.deepStrictEqual(await readShown(tab), ['Incoming']);
      await arrowDown(tab);
      assert.deepStrictEqual([await readShown(tab), await countText(tab)], [[], '0 of 3 rows']);
      await arrowDown(tab);
      assert.deepStrictEqual(await readShown(tab), ['Ann']);
      await tab.evaluate(`(document.querySelector('input').focus(), document.querySelector('input').select())`);
      await tab.type('0');
      await tabKey(tab, 1);
      await arrowDown(tab);
      assert.deepStrictEqual(await readShown(tab), ['Ann', 'Bo']);
    });
  });
  await check('The top of the table comes into view when the rows change', async () => {
    await stage.show(tablePage('CallHistory.html', numbered(1000)), async (tab) => {
      await tab.evaluate('scrollTo(0, 20000)');
      await tab.evaluate(`(document.querySelector('input').value = 'name', document.querySelector('input').dispatchEvent(new Event('input')))`);
      const [bar, row] = await tab.evaluate(`['.tools', 'tbody tr'].map((selector) => document.querySelector(selector).getBoundingClientRect())
        .map((box) => box.bottom)`);
      assert.ok(row > bar && row < 250, `the first row ends ${row} from the top`);
    });
  });
}

async function checkOrder(stage) {
  const orders = [['ascending', ['anna', 'Berta', 'Émile', 'Zoë']], ['descending', ['Zoë', 'Émile', 'Berta', 'anna']],
                  ['none', ['Zoë', 'anna', 'Émile', 'Berta']]];
  await check('A click on a head cell sorts up, then down, then as it was', async () => {
    await stage.show(callPage(), async (tab) => {
      for (const [order, names] of orders) {
        await tab.clickOn('th:nth-child(1) button');
        assert.deepStrictEqual(await readShown(tab), names);
        assert.strictEqual(await tab.evaluate(`document.querySelector('th').ariaSort`), order);
      }
      await tab.clickOn('th:nth-child(2) button');
      assert.deepStrictEqual(await readShown(tab), ['Berta', 'Émile', 'Zoë', 'anna']);
      await tab.clickOn('th:nth-child(3) button');
      assert.deepStrictEqual(await readShown(tab), ['Berta', 'anna', 'Émile', 'Zoë']);
      assert.deepStrictEqual(await tab.evaluate(`Array.from(document.querySelectorAll('th'), (cell) => cell.ariaSort)`),
                             ['none', 'none', 'ascending', 'none', 'none']);
    });
  });
  await check('The keyboard alone reaches the head cells and sorts', async () => {
    await stage.show(callPage(), async (tab) => {
      await tab.clickOn('input[type=search]');
      await tabKey(tab, 3);  // over the column and the copy
      await tab.press('Enter', 'Enter', 13, '\r');
      assert.deepStrictEqual(await readShown(tab), orders[0][1]);
      await tab.press(' ', 'Space', 32, ' ');
      assert.deepStrictEqual(await readShown(tab), orders[1][1]);
    });
  });
  await check('Numbers sort as the browser sorts texts, and rows with equal texts stay as they are', async () => {
    const signs = ' +-.,:/()#*0123456789';
    let seed = 1;
    const random = (below) => (seed = seed * 48271 % 2147483647) % below;
    const texts = Array.from({ length: 600 }, (_, at) => (at % 7 === 0 ? ['Zoë', 'zoe', 'anna', '1a', '+1a', ' b', ''][random(7)]
      : Array.from({ length: random(6) }, () => signs[random(signs.length)]).join('')));
    const page = tablePage('CallHistory.html', texts.map((text, at) => ['Name ' + at, text, '', 'Incoming', '0']));
    await stage.show(page, async (tab) => {
      for (const sign of [1, -1]) {
        await tab.clickOn('th:nth-child(2) button');
        const places = (await readCells(tab)).map(([name]) => Number(name.slice(5)));
        assert.deepStrictEqual(places, await tab.evaluate(`(() => {
          const texts = ${JSON.stringify(texts)};
          const { compare } = new Intl.Collator(undefined, { numeric: true, sensitivity: 'base' });
          return Array.from(texts.keys()).sort((one, other) => ${sign} * compare(texts[one], texts[other]));
        })()`));
      }
    });
  });
  for (const width of [1200, 390]) {
    await check(`Head cells and filter box stay in view at a width of ${width}`, async () => {
      await stage.show(tablePage('CallHistory.html', numbered(200)), async (tab) => {
        const tops = await tab.evaluate(`(scrollTo(0, 3000), ['.tools', 'th'].map(
          (selector) => Math.round(document.querySelector(selector).getBoundingClientRect().top)))`);
        assert.strictEqual(tops[0], 0);
        assert.ok(tops[1] > 20 && tops[1] < 100, `the head is ${tops[1]} from the top`);
        assert.ok(await tab.evaluate('scrollY') > 2000);
      }, { width });
    });
  }
}

async function checkColumns(stage) {
  const people = [contact('Ann', '+49 1'), contact('Bo', '+49 2', 'bo@example.org')];
  await check('Columns that are empty in all rows are folded away until they are asked for', async () => {
    await stage.show(tablePage('contacts.html', people), async (tab) => {
      assert.deepStrictEqual(await readHead(tab), ['Name', 'Phones', 'Mail']);
      assert.deepStrictEqual(await tab.evaluate(`Array.from(document.querySelector('tbody tr').cells, (cell) => cell.textContent)`),
                             ['Ann', '+49 1', '']);
      await tab.clickOn('input[type=search]');
      await tabKey(tab, 2);
      assert.strictEqual(await tab.evaluate('document.activeElement.parentNode.textContent'), 'Show empty columns');
      await tab.press(' ', 'Space', 32, ' ');
      assert.deepStrictEqual(await readHead(tab), ['Name', 'Phones', 'Mail', 'Address', 'Web', 'Social', 'Company']);
      assert.deepStrictEqual(await tab.evaluate(`Array.from(document.querySelectorAll('tbody tr')[1].cells, (cell) => cell.textContent)`), people[1]);
      await tab.press(' ', 'Space', 32, ' ');
      assert.deepStrictEqual(await readHead(tab), ['Name', 'Phones', 'Mail']);
    });
  });
  await check('A table whose columns all hold something, and one of empty rows, have no switch and all columns', async () => {
    for (const records of [CALLS, [['', '', '', '', '']], []]) {
      await stage.show(tablePage('CallHistory.html', records), async (tab) => {
        assert.strictEqual((await readHead(tab)).length, 5);
        assert.strictEqual(await tab.evaluate(`document.querySelector('.switch')`), null);
      });
    }
  });
}

// Copying

const KEEP_COPY = `addEventListener('copy', (event) => { window.copied = event.target.value; })`;
const copy = async (tab) => {
  await tab.clickOn('.copy');
  await tab.evaluate(`new Promise((resolve) => {
    const look = () => (document.querySelector('.copied').textContent ? resolve() : setTimeout(look, 10));
    look();
  })`);
  return tab.evaluate(`document.querySelector('.copied').textContent`);
};

async function checkCopy(stage) {
  await check('A copy holds the rows and columns that are shown, in their order', async () => {
    await stage.browser.send('Browser.grantPermissions', { permissions: ['clipboardReadWrite', 'clipboardSanitizedWrite'] });
    await stage.show(callPage(), async (tab) => {
      await tab.clickOn('input[type=search]');
      await tab.type('incoming');
      await tab.clickOn('th:nth-child(1) button');
      assert.strictEqual(await copy(tab), '3 rows copied');
      assert.strictEqual(await tab.evaluate('navigator.clipboard.readText()'), [
        'Name,Number,Date,Type,Length', 'Berta,,2016-04-01 10:00:00,Incoming,0', 'Émile,+49 30 1,2016-05-02 10:00:00,Incoming,Missed',
        'Zoë,+49 30 2,2016-05-03 10:00:00,Incoming,0', ''].join('\r\n'));
      await tab.clickOn('th:nth-child(1) button');
      assert.strictEqual(await tab.evaluate(`document.querySelector('.copied').textContent`), '', 'after a change of the rows');
    });
  });
  const odd = [
    ['a,b', '"a,b"'], ['say "hi"', '"say ""hi"""'], ['=1+1', "'=1+1"], ['+SUM(A1)', "'+SUM(A1)"], ['-1+cmd', "'-1+cmd"],
    ['@A1', "'@A1"], ['\tx', `"'\tx"`], ['+49 (0)30/12-34', '+49 (0)30/12-34'], ['=HYPERLINK("x")', `"'=HYPERLINK(""x"")"`],
    ['שלום', 'שלום'], [' x ', ' x '], ['-', "'-"],
    ['a\t=1+1', `"a\t'=1+1"`], ['a\n=1+1', `"a\r\n'=1+1"`], ['+12\n*A1', `"'+12\r\n*A1"`], ['+1 2\n@A1\t-A1', `"'+1 2\r\n'@A1\t'-A1"`],
    ['a\t+49 30', '"a\t+49 30"'], ['a;b', '"a;b"'], ['a=b', 'a=b'],
  ];
  await check('Where a browser has no clipboard for pages, the copy is the same, and formulas are texts', async () => {
    const without = `${KEEP_COPY}; Object.defineProperty(navigator, 'clipboard', { value: undefined })`;
    await stage.show(tablePage('contacts.html', odd.map(([text]) => contact(text, '+49 1<br />+49 2'))), async (tab) => {
      assert.strictEqual(await copy(tab), '19 rows copied');
      assert.deepStrictEqual((await tab.evaluate('window.copied')).split('\n').join('\r\n').replaceAll('\r\r', '\r'),
                             ['Name,Phones', ...odd.map(([, cell]) => `${cell},"+49 1\r\n+49 2"`), ''].join('\r\n'));
      assert.strictEqual(await tab.evaluate('document.activeElement.className'), 'copy');
      assert.strictEqual(await tab.evaluate(`document.querySelector('textarea')`), null);
    }, { atStart: without });
  });
  await check('A copy that fails is not called done', async () => {
    const without = `Object.defineProperty(navigator, 'clipboard', { value: undefined }); Document.prototype.execCommand = () => false`;
    await stage.show(callPage(), async (tab) => assert.match(await copy(tab), /not allowed/), { atStart: without });
  });
}

async function checkTables(stage) {
  for (const part of [checkFilter, checkOrder, checkColumns, checkCopy, checkCells, checkLinks, checkInitials, checkForms, checkPaper])
    await part(stage);
}

module.exports = { checkTables, checkLargeTable };
